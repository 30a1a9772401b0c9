// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every code and word of a printer, and every fault of the link, in words that a person
// understands.

#ifndef PANEL_WORDS_H
#define PANEL_WORDS_H

#include "localfile.h"
#include "notice.h"
#include "printerstatus.h"

namespace zypanel
{

enum class LinkFault {
    NoAnswer, ///< a first attempt ended without a connection
    TimedOut,
    Lost,
    LostWhileSending,
    LostWhileCancelling,
    Stalled,
    CancelUnconfirmed,
    Silent, ///< connected, but status requests stay unanswered
};

enum class Command { Pause, Stop, SetParameters };

/// ZySslEchoClient::transError(); @p wifiState is the refusal's "wifistate", 0 when it has none.
Notice transferErrorNotice(int code, int wifiState = 0);
/// ZySslEchoClient::printErrorCode().
Notice printAnswerNotice(int code, const QString &file);
/// ZySslEchoClient::finish().
Notice checkStateNotice(int checkState, const QString &file);
/// The "status" of a reply to PRINT_PAUSE, PRINT_STOP or PRINT_PARA_SET.
Notice commandResultNotice(Command command, const QString &word);
Notice linkFaultNotice(LinkFault fault, const QString &printer);
Notice fileFaultNotice(FileFault fault, const QString &name);

/// Of GET_PRINT_STATUS's "printStatus".
PrinterStatus::State stateOfWord(const QString &word);
/// A heading, for example "Printing".
QString stateTitle(PrinterStatus::State state);
/// A whole sentence for the log.
Notice stateNotice(PrinterStatus::State state, const QString &file);

/// What a print parameter is called; the key itself for one that is not known.
QString parameterTitle(const QString &key);

} // namespace zypanel

#endif // PANEL_WORDS_H
