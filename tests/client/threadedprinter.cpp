// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer in a thread, so that its own events cannot wake a client that has gone to sleep.

#include "threadedprinter.h"

namespace zytest
{

ThreadedPrinter::ThreadedPrinter() : m_printer(new ScriptedPrinter), m_url(m_printer->url())
{
    m_printer->answerTransfers();
    m_printer->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_printer, &QObject::deleteLater);
    m_thread.start();
}

ThreadedPrinter::~ThreadedPrinter()
{
    m_thread.quit();
    m_thread.wait();
}

int ThreadedPrinter::connectionCount() const
{
    int count = 0;
    inItsThread([&] { count = m_printer->connectionCount(); });
    return count;
}

int ThreadedPrinter::chunkCount() const
{
    int count = 0;
    inItsThread([&] { count = int(m_printer->chunks().size()); });
    return count;
}

void ThreadedPrinter::answerTransfers(const TransferRules &rules)
{
    inItsThread([&] { m_printer->answerTransfers(rules); });
}

} // namespace zytest
