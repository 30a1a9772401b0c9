// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// SIGINT, SIGTERM and their like as Qt signals.

#ifndef UNIXSIGNALS_H
#define UNIXSIGNALS_H

#include <QObject>

#include <initializer_list>

namespace zyapp
{

/**
 * Takes the named signals away from their default action for the rest of the process's life and
 * emits received() on the event loop instead. Make it before any thread starts, so that no thread
 * is left in which the default action still applies. A hangup that is ignored already (nohup) stays
 * ignored.
 */
class UnixSignals : public QObject
{
    Q_OBJECT

public:
    explicit UnixSignals(std::initializer_list<int> signalNumbers, QObject *parent = nullptr);
    ~UnixSignals() override;

Q_SIGNALS:
    void received(int signalNumber);

private:
    void read();

    int m_descriptor;
};

} // namespace zyapp

#endif // UNIXSIGNALS_H
