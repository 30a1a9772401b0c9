// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The live view for people: state, job, layers, time left, connections, last events.

#ifndef LIVEVIEW_H
#define LIVEVIEW_H

#include "fullscreen.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace zyprinter
{

class Machine;
class PrinterLog;

/// Redrawn several times a second and at every event, in whatever size the terminal has then.
class LiveView : public QObject
{
    Q_OBJECT

public:
    struct Facts {
        QString name;
        QString url;
        QString directory;
        std::function<int()> connections;
    };

    LiveView(const Machine &machine, const PrinterLog &log, Facts facts, QObject *parent = nullptr);

private:
    void draw();
    QStringList head() const;
    QStringList jobLines(int width) const;

    const Machine &m_machine;
    const PrinterLog &m_log;
    const Facts m_facts;
    Screen m_screen;
    QTimer m_timer;
};

} // namespace zyprinter

#endif // LIVEVIEW_H
