// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's state and print parameters: construction and copying.

#include "printstatuspara.h"

PrintStatusPara::PrintStatusPara()
    : filename(QLatin1String("")), sliceLayerCount(QLatin1String("")),
      curSliceLayer(QLatin1String("")), printRemainTime(QLatin1String("")),
      initExposure(QLatin1String("")), delayLight(QLatin1String("")),
      printExposure(QLatin1String("")), printHeight(QLatin1String("")), eleSpeed(QLatin1String("")),
      bottomExposureNum(QLatin1String("")), layerThickness(QLatin1String("")),
      resin(QLatin1String(""))
{
}

PrintStatusPara::PrintStatusPara(const PrintStatusPara &other) = default;
PrintStatusPara &PrintStatusPara::operator=(const PrintStatusPara &other) = default;
PrintStatusPara::~PrintStatusPara() = default;
