// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Signals for tests, emitted off the stack of what they report.

#ifndef EMITLATER_H
#define EMITLATER_H

#include <QObject>

namespace zytest
{

/// Emits @p signal of @p sender from the event loop, so that a test's slot may do as it likes.
template <typename Sender, typename Signal, typename... Arguments>
void emitLater(Sender *sender, Signal signal, const Arguments &...arguments)
{
    QMetaObject::invokeMethod(
        sender,
        [=] {
            Q_EMIT(sender->*signal)
            (arguments...);
        },
        Qt::QueuedConnection);
}

} // namespace zytest

#endif // EMITLATER_H
