// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keys and words of a printer's replies that the programs read.

#ifndef WIREWORDS_H
#define WIREWORDS_H

#include <QLatin1String>

namespace zysession::wire
{

/// A constant expression with every compiler, which QLatin1String("…") is not.
template <int N> constexpr QLatin1String literal(const char (&text)[N])
{
    return QLatin1String(text, N - 1);
}

inline constexpr QLatin1String cmd = literal("cmd");
inline constexpr QLatin1String status = literal("status");
inline constexpr QLatin1String filename = literal("filename");
inline constexpr QLatin1String version = literal("version");

// The status, each a text.
inline constexpr QLatin1String printStatus = literal("printStatus");
inline constexpr QLatin1String sliceLayerCount = literal("sliceLayerCount");
inline constexpr QLatin1String curSliceLayer = literal("curSliceLayer");
inline constexpr QLatin1String printRemainTime = literal("printRemainTime");
inline constexpr QLatin1String layerThickness = literal("layerThickness");
inline constexpr QLatin1String resin = literal("resin");

/// The parameters that PRINT_PARA_SET carries.
inline constexpr QLatin1String parameters[] = {
    literal("initExposure"), literal("delayLight"), literal("printExposure"),
    literal("printHeight"),  literal("eleSpeed"),   literal("bottomExposureNum"),
};

// Commands.
inline constexpr QLatin1String cancelFile = literal("CANCEL_FILE");
inline constexpr QLatin1String startPrint = literal("START_PRINT");
inline constexpr QLatin1String printPause = literal("PRINT_PAUSE");
inline constexpr QLatin1String printStop = literal("PRINT_STOP");
inline constexpr QLatin1String getPrintStatus = literal("GET_PRINT_STATUS");
inline constexpr QLatin1String printParaSet = literal("PRINT_PARA_SET");

// Answers to START_PRINT.
inline constexpr QLatin1String started = literal("STARTED");
inline constexpr QLatin1String checking = literal("CHECKING");
inline constexpr QLatin1String busy = literal("BUSY");
inline constexpr QLatin1String printTokenError = literal("PRINT_TOKEN_ERROR");

// Answers to other commands. Deliberate spelling: the printer's.
inline constexpr QLatin1String done = literal("CMD_SUCCES");
inline constexpr QLatin1String failed = literal("CMD_FAIL");
/// Also a word of "printStatus".
inline constexpr QLatin1String tokenError = literal("TOKEN_ERROR");

} // namespace zysession::wire

#endif // WIREWORDS_H
