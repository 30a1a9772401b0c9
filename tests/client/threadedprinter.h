// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer in a thread, so that its own events cannot wake a client that has gone to sleep.

#ifndef THREADEDPRINTER_H
#define THREADEDPRINTER_H

#include "scriptedprinter.h"

#include <QThread>

namespace zytest
{

/// Answers transfers by itself. Its functions run in the printer's thread, and the caller waits.
class ThreadedPrinter
{
public:
    ThreadedPrinter();
    ~ThreadedPrinter();

    QUrl url() const { return m_url; }
    int connectionCount() const;
    int chunkCount() const;
    void answerTransfers(const TransferRules &rules);

    /// For connections: its signals come from another thread.
    ScriptedPrinter &printer() const { return *m_printer; }

private:
    Q_DISABLE_COPY(ThreadedPrinter)

    template <typename Function> void inItsThread(Function function) const
    {
        QMetaObject::invokeMethod(m_printer, function, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    ScriptedPrinter *m_printer;
    QUrl m_url;
};

} // namespace zytest

#endif // THREADEDPRINTER_H
