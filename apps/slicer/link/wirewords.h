// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keys and words of the printer's replies that the program reads.

#ifndef WIREWORDS_H
#define WIREWORDS_H

#include <QLatin1String>

namespace wire
{

constexpr QLatin1String cmd("cmd");
constexpr QLatin1String status("status");
constexpr QLatin1String errorcode("errorcode");
constexpr QLatin1String wifistate("wifistate");
constexpr QLatin1String filename("filename");
constexpr QLatin1String version("version");
constexpr QLatin1String printStatus("printStatus");
constexpr QLatin1String sliceLayerCount("sliceLayerCount");
constexpr QLatin1String curSliceLayer("curSliceLayer");
constexpr QLatin1String printRemainTime("printRemainTime");
constexpr QLatin1String layerThickness("layerThickness");
constexpr QLatin1String resin("resin");

/// The parameters that PRINT_PARA_SET carries.
constexpr QLatin1String parameters[] = {
    QLatin1String("initExposure"), QLatin1String("delayLight"), QLatin1String("printExposure"),
    QLatin1String("printHeight"),  QLatin1String("eleSpeed"),   QLatin1String("bottomExposureNum"),
};

constexpr QLatin1String startFile("START_FILE");
constexpr QLatin1String startData("START_DATA");
constexpr QLatin1String cancelFile("CANCEL_FILE");
constexpr QLatin1String startPrint("START_PRINT");
constexpr QLatin1String printPause("PRINT_PAUSE");
constexpr QLatin1String printStop("PRINT_STOP");
constexpr QLatin1String getPrintStatus("GET_PRINT_STATUS");
constexpr QLatin1String printParaSet("PRINT_PARA_SET");

// Answers to START_PRINT.
constexpr QLatin1String started("STARTED");
constexpr QLatin1String checking("CHECKING");
constexpr QLatin1String busy("BUSY");
constexpr QLatin1String printTokenError("PRINT_TOKEN_ERROR");

// Answers to PRINT_PAUSE and PRINT_STOP. Deliberate spelling: the printer's.
constexpr QLatin1String done("CMD_SUCCES");
/// Also a word of "printStatus".
constexpr QLatin1String tokenError("TOKEN_ERROR");

/// "errorcode" of a refused START_FILE.
enum TransferRefusal { ServerBusy = 1, FileBusy = 2, TokenRefused = 4 };

/// "wifistate" of a refused START_FILE.
enum RefusalReason { Receiving = 3, CheckingPrintFile = 4, HostRefused = 5, HostRejectedToken = 6 };

} // namespace wire

#endif // WIREWORDS_H
