// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs one job per printer, all at the same time.

#ifndef FLEET_H
#define FLEET_H

#include "job.h"

#include <memory>
#include <vector>

namespace zyslicer
{

class Fleet : public QObject
{
    Q_OBJECT

public:
    Fleet(const Request &request, const QVector<zysession::Printer> &printers);

    void start();
    void interrupt();

    /// In the order of the printers; complete once ended() has come.
    const QVector<Outcomes> &outcomes() const { return m_outcomes; }

Q_SIGNALS:
    void reported(int printer, const zyslicer::Event &event);
    void printerEnded(int printer, const zyslicer::Outcomes &outcomes);
    void ended();

private:
    void onJobEnded(int printer, const Outcomes &outcomes);

    std::vector<std::unique_ptr<Job>> m_jobs;
    QVector<Outcomes> m_outcomes;
    int m_running;
};

} // namespace zyslicer

#endif // FLEET_H
