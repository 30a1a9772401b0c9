// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Ctrl-C and SIGTERM: the first is a signal of Qt's, the second ends the program at once.

#ifndef INTERRUPTION_H
#define INTERRUPTION_H

#include <QObject>

class QSocketNotifier;

namespace zyslicer
{

/// One per process.
class Interruption : public QObject
{
    Q_OBJECT

public:
    explicit Interruption(QObject *parent = nullptr);
    ~Interruption() override;

Q_SIGNALS:
    void interrupted();

private:
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace zyslicer

#endif // INTERRUPTION_H
