// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs one job per printer, each in a thread of its own.

#ifndef FLEET_H
#define FLEET_H

#include "job.h"

#include <QVector>

class QThread;

namespace zyslicer
{

/**
 * A client's send loop is nested in the handling of its reply, so two clients in one thread would
 * wait for each other; hence a thread with its own event loop for each printer.
 */
class Fleet : public QObject
{
    Q_OBJECT

public:
    explicit Fleet(QObject *parent = nullptr);
    ~Fleet() override;

    void add(const Request &request, const zysession::Printer &printer);
    void start();
    void interrupt();

    /// In the order of add(); complete once ended() has come.
    const QVector<Outcome> &outcomes() const { return m_outcomes; }

Q_SIGNALS:
    void reported(int printer, const zyslicer::Event &event);
    void printerEnded(int printer, const zyslicer::Outcome &outcome);
    void ended();

private:
    void onJobEnded(int printer, const Outcome &outcome);

    struct Member {
        QThread *thread;
        Job *job; ///< lives in the thread and is deleted with its end
    };
    QVector<Member> m_members;
    QVector<Outcome> m_outcomes;
    int m_running = 0;
};

} // namespace zyslicer

#endif // FLEET_H
