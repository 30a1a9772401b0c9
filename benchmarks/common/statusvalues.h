// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's state that both servers report, so that both build the same reply.

#ifndef STATUSVALUES_H
#define STATUSVALUES_H

#include <QString>

namespace zybench::status
{

inline const QString filename = QStringLiteral("gyroid-sphere.zydlp");
inline const QString sliceLayerCount = QStringLiteral("1600");
inline const QString curSliceLayer = QStringLiteral("417");
inline const QString printRemainTime = QStringLiteral("10645");
inline const QString initExposure = QStringLiteral("35");
inline const QString delayLight = QStringLiteral("6.5");
inline const QString printExposure = QStringLiteral("8");
inline const QString printHeight = QStringLiteral("80");
inline const QString eleSpeed = QStringLiteral("60");
inline const QString bottomExposureNum = QStringLiteral("8");
inline const QString layerThickness = QStringLiteral("0.05");
inline const QString resin = QStringLiteral("Standard Grey");

} // namespace zybench::status

#endif // STATUSVALUES_H
