// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What comes of a user's wishes, and what a printer does, in the user's words.

#ifndef PANEL_WORDS_H
#define PANEL_WORDS_H

#include "notice.h"

#include <exchange.h>
#include <printerstatus.h>

#include <zysendresult.h>

namespace zypanel
{

enum class PrinterCommand { Print, Continue, Pause, Stop, SetParameters };

/// @p subject: the printed file, or the parameters that the printer did not take.
Notice commandNotice(PrinterCommand command, zysession::Exchange::Ending ending,
                     const QString &subject);
/// @p detail: the system's words, added where the fault has none.
Notice connectionFaultNotice(ZySendResult::ConnectionFault fault, const QString &printer,
                             const QString &detail = QString());
/// @p name: as the file was offered.
Notice sendNotice(const ZySendResult &result, const QString &name, const QString &printer);
Notice fileFaultNotice(ZySendResult::FileFault fault, const QString &name);

/// A heading, for example "Printing".
QString stateTitle(zysession::PrinterStatus::State state);
/// A whole sentence for the log.
Notice stateNotice(zysession::PrinterStatus::State state, const QString &file);

/// What a print parameter is, as people enter it.
struct ParameterTerms {
    QString title; ///< the key itself for one that is not known
    QString unit; ///< empty for a count
    double least = 0;
    double most = 0;
    bool isWhole = false;
};
ParameterTerms parameterTerms(const QString &key);
/// All six keys, in the order in which people read them.
QStringList parameterOrder();

} // namespace zypanel

#endif // PANEL_WORDS_H
