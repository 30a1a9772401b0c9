// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keys and words of the printer's replies that the program reads.

#ifndef WIREWORDS_H
#define WIREWORDS_H

#include <QLatin1String>

namespace wire
{

/// A constant expression with every compiler, which QLatin1String("…") is not.
template <int N> constexpr QLatin1String literal(const char (&text)[N])
{
    return QLatin1String(text, N - 1);
}

constexpr QLatin1String cmd = literal("cmd");
constexpr QLatin1String status = literal("status");
constexpr QLatin1String errorcode = literal("errorcode");
constexpr QLatin1String wifistate = literal("wifistate");
constexpr QLatin1String compress = literal("compress");
constexpr QLatin1String filename = literal("filename");
constexpr QLatin1String version = literal("version");
constexpr QLatin1String printStatus = literal("printStatus");
constexpr QLatin1String sliceLayerCount = literal("sliceLayerCount");
constexpr QLatin1String curSliceLayer = literal("curSliceLayer");
constexpr QLatin1String printRemainTime = literal("printRemainTime");
constexpr QLatin1String layerThickness = literal("layerThickness");
constexpr QLatin1String resin = literal("resin");

/// The parameters that PRINT_PARA_SET carries.
constexpr QLatin1String parameters[] = {
    literal("initExposure"), literal("delayLight"), literal("printExposure"),
    literal("printHeight"),  literal("eleSpeed"),   literal("bottomExposureNum"),
};

constexpr QLatin1String startFile = literal("START_FILE");
constexpr QLatin1String startData = literal("START_DATA");
constexpr QLatin1String cancelFile = literal("CANCEL_FILE");
constexpr QLatin1String startPrint = literal("START_PRINT");
constexpr QLatin1String printPause = literal("PRINT_PAUSE");
constexpr QLatin1String printStop = literal("PRINT_STOP");
constexpr QLatin1String getPrintStatus = literal("GET_PRINT_STATUS");
constexpr QLatin1String printParaSet = literal("PRINT_PARA_SET");

// Answers to START_PRINT.
constexpr QLatin1String started = literal("STARTED");
constexpr QLatin1String checking = literal("CHECKING");
constexpr QLatin1String busy = literal("BUSY");
constexpr QLatin1String printTokenError = literal("PRINT_TOKEN_ERROR");

// Answers to PRINT_PAUSE and PRINT_STOP. Deliberate spelling: the printer's.
constexpr QLatin1String done = literal("CMD_SUCCES");
/// Also a word of "printStatus".
constexpr QLatin1String tokenError = literal("TOKEN_ERROR");

/// "errorcode" of a refused START_FILE.
enum TransferRefusal { ServerBusy = 1, FileBusy = 2, TokenRefused = 4 };

/// "wifistate" of a refused START_FILE.
enum RefusalReason { Receiving = 3, CheckingPrintFile = 4, HostRefused = 5, HostRejectedToken = 6 };

} // namespace wire

#endif // WIREWORDS_H
