// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The live view for people: state, job, layers, time left, connections, last events.

#include "liveview.h"

#include "displaywidth.h"
#include "errorline.h"
#include "machine.h"
#include "machinereport.h"
#include "modelreader.h"
#include "printerlog.h"

#include <utility>

namespace zyprinter
{

namespace
{

/// @p done says that the last layer is not being exposed any more.
QString layerBar(int layer, int count, bool done, int width)
{
    constexpr int percent = 100;
    const int most = done ? percent : percent - 1;
    const int shown = int(qMin<qint64>(most, qint64(layer) * percent / count));
    const QString figures = QStringLiteral(" %1/%2 %3 %").arg(layer).arg(count).arg(shown);
    const int room = qMax(0, width - int(figures.size()) - 2);
    const int filled = int(qint64(room) * layer / count);
    return QLatin1Char('[') + QString(filled, QLatin1Char('#'))
        + QString(room - filled, QLatin1Char('-')) + QLatin1Char(']') + figures;
}

QString counted(int number, const char *what)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(what),
                                                     QLatin1String(number == 1 ? "" : "s"));
}

} // namespace

LiveView::LiveView(const Machine &machine, const PrinterLog &log, Facts facts, QObject *parent)
    : QObject(parent), m_machine(machine), m_log(log), m_facts(std::move(facts))
{
    constexpr int interval = 200; // ms
    connect(&m_timer, &QTimer::timeout, this, &LiveView::draw);
    connect(&log, &PrinterLog::added, this, &LiveView::draw);
    m_timer.start(interval);
    draw();
}

QStringList LiveView::head() const
{
    return {
        QStringLiteral("%1  %2  %3")
            .arg(m_facts.name, m_facts.url, counted(m_facts.connections(), "connection")),
        QStringLiteral("models in ") + m_facts.directory,
        QString(),
    };
}

QStringList LiveView::jobLines(int width) const
{
    QStringList lines{stateTitle(m_machine.state()).toUpper() + QStringLiteral("  ")
                      + m_machine.job()};
    if (const zymodel::ModelReader *model = m_machine.model()) {
        const auto text
            = [this](PrintParameters::Id id) { return m_machine.parameters().text(id); };
        const bool isDone = m_machine.state() == Machine::State::Completing
            || m_machine.state() == Machine::State::Complete;
        lines += layerBar(m_machine.layer(), model->layerCount(), isDone, width);
        lines += QStringLiteral("time left %1  %2")
                     .arg(clockTime(m_machine.remainingTime()), model->header().resin);
        lines
            += QStringLiteral("exposure %1 s (%2 layers: %3 s)  rest %4 s  lift %5 mm at %6 mm/min")
                   .arg(text(PrintParameters::PrintExposure),
                        text(PrintParameters::BottomExposureNum),
                        text(PrintParameters::InitExposure), text(PrintParameters::DelayLight),
                        text(PrintParameters::PrintHeight), text(PrintParameters::EleSpeed));
    }
    lines += QString();
    return lines;
}

void LiveView::draw()
{
    const QSize size = terminalSize();
    QStringList lines = head() + jobLines(size.width());
    const int room = qMax(0, size.height() - int(lines.size()));
    lines += m_log.recent().mid(qMax(0, int(m_log.recent().size()) - room));
    lines = lines.mid(0, size.height());
    while (lines.size() < size.height())
        lines += QString();
    for (QString &line : lines)
        line = zyapp::clipped(zyapp::onOneLine(line), size.width());
    m_screen.draw(lines);
}

} // namespace zyprinter
