// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print: what the printer is doing, layers, and the buttons to start, pause and stop.

#include "printbox.h"

#include "confirmation.h"
#include "formatting.h"
#include "layerplot.h"
#include "theme.h"
#include "words.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

namespace zypanel
{

using Link = PrinterControl::Link;
using zysession::PrinterStatus;

PrintBox::PrintBox(QWidget *parent)
    : QGroupBox(tr("Print"), parent), m_title(new QLabel), m_job(new QLabel),
      m_remaining(new QLabel), m_layers(new QProgressBar), m_plot(new LayerPlot),
      m_file(new QComboBox), m_start(new QPushButton(tr("&Start print"))),
      m_pause(new QPushButton(tr("Pa&use"))), m_stop(new QPushButton(tr("Sto&p…")))
{
    m_clock.start();
    buildLabels();
    buildButtons();
    layOut();
    showStatus({});
}

void PrintBox::buildLabels()
{
    m_title->setObjectName(QStringLiteral("stateTitle"));
    QFont large = scaledFont(m_title->font(), 1.6);
    large.setBold(true);
    m_title->setFont(large);
    m_job->setObjectName(QStringLiteral("jobLabel"));
    m_remaining->setObjectName(QStringLiteral("remainingLabel"));
    m_remaining->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    // Printers' texts are not ours: never read as markup.
    for (QLabel *label : {m_title, m_job, m_remaining})
        label->setTextFormat(Qt::PlainText);
    m_layers->setObjectName(QStringLiteral("layerProgress"));
    m_layers->setAccessibleName(tr("Layers printed"));
}

void PrintBox::buildButtons()
{
    m_file->setObjectName(QStringLiteral("printFile"));
    m_file->setEditable(true);
    m_file->setInsertPolicy(QComboBox::NoInsert);
    m_file->setAccessibleName(tr("File on the printer"));
    m_file->lineEdit()->setAccessibleName(m_file->accessibleName());
    m_file->lineEdit()->setPlaceholderText(tr("Name of a file on the printer"));
    m_start->setObjectName(QStringLiteral("startPrint"));
    m_pause->setObjectName(QStringLiteral("pausePrint"));
    m_stop->setObjectName(QStringLiteral("stopPrint"));
    connect(m_file, &QComboBox::editTextChanged, this, &PrintBox::updateButtons);
    connect(m_start, &QPushButton::clicked, this, &PrintBox::start);
    connect(m_pause, &QPushButton::clicked, this, &PrintBox::pauseRequested);
    connect(m_stop, &QPushButton::clicked, this, &PrintBox::askToStop);
}

void PrintBox::layOut()
{
    auto *heading = new QHBoxLayout;
    heading->addWidget(m_title);
    heading->addWidget(m_remaining, 1);

    auto *fileLabel = new QLabel(tr("File on pr&inter"));
    fileLabel->setBuddy(m_file);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(fileLabel);
    buttons->addWidget(m_file, 1);
    buttons->addWidget(m_start);
    buttons->addWidget(m_pause);
    buttons->addWidget(m_stop);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(heading);
    layout->addWidget(m_job);
    layout->addWidget(m_layers);
    layout->addWidget(m_plot, 1);
    layout->addLayout(buttons);
}

void PrintBox::showLink(Link link)
{
    m_link = link;
    updateTitle();
    updateButtons();
}

void PrintBox::showStatus(const PrinterStatus &status)
{
    m_status = status;
    if (m_history.add(status, m_clock.elapsed()))
        m_plot->showHistory(m_history);
    if (m_file->currentText().isEmpty() && !status.filename.isEmpty())
        addFile(status.filename);
    updateTitle();
    updateJob();
    updateButtons();
}

void PrintBox::addFile(const QString &name)
{
    const int known = m_file->findText(name);
    if (known < 0)
        m_file->insertItem(0, name);
    m_file->setCurrentIndex(known < 0 ? 0 : known);
}

void PrintBox::updateTitle()
{
    const bool isUnknown = m_status.parameters.isEmpty();
    const bool isOffline = m_link != Link::Open;
    m_title->setText(isOffline       ? tr("Not connected")
                         : isUnknown ? tr("Asking the printer…")
                                     : stateTitle(m_status.state));
    QPalette colors = palette();
    const Severity severity = stateNotice(m_status.state, QString()).severity;
    if (isOffline || isUnknown)
        colors.setColor(QPalette::WindowText, quietTextColor(palette()));
    else if (severity != Severity::Info)
        colors.setColor(QPalette::WindowText, severityColor(severity, palette()));
    m_title->setPalette(colors);
}

void PrintBox::updateJob()
{
    QStringList parts;
    if (!m_status.filename.isEmpty())
        parts.append(m_status.filename);
    if (!m_status.layerThickness.isEmpty())
        parts.append(tr("layers of %1").arg(lengthText(m_status.layerThickness)));
    if (!m_status.resin.isEmpty())
        parts.append(m_status.resin);
    m_job->setText(parts.isEmpty() ? tr("No job") : parts.join(QStringLiteral("   ·   ")));
    const bool hasRemaining = m_status.hasJob() && !m_status.remainingTime.isEmpty();
    m_remaining->setText(hasRemaining ? tr("%1 left").arg(timeText(m_status.remainingTime))
                                      : QString());
    m_layers->setRange(0, qMax(1, m_status.layerCount));
    m_layers->setValue(qMin(m_status.layer, m_status.layerCount));
    m_layers->setFormat(m_status.layerCount > 0
                            ? tr("Layer %1 of %2").arg(m_status.layer).arg(m_status.layerCount)
                            : QString());
}

void PrintBox::updateButtons()
{
    const bool isReady = m_link == Link::Open || m_link == Link::Silent;
    const bool canContinue = m_status.canContinue();
    const bool canStart = !m_status.hasJob() && !m_file->currentText().trimmed().isEmpty();
    m_start->setText(canContinue ? tr("Co&ntinue") : tr("&Start print"));
    m_start->setEnabled(isReady && (canStart || canContinue));
    m_pause->setEnabled(isReady && m_status.canPause());
    m_stop->setEnabled(isReady && m_status.canStop());
}

/// The protocol has no command to go on after a pause: the paused job is started again.
void PrintBox::start()
{
    Q_EMIT startRequested(m_status.canContinue() ? m_status.filename
                                                 : m_file->currentText().trimmed());
}

void PrintBox::askToStop()
{
    confirm(this,
            {tr("Stop the print"), tr("Stop printing %1?").arg(m_status.filename),
             tr("A stopped print cannot be continued; what is on the build plate is lost."),
             tr("&Stop the print"), tr("&Keep printing")},
            [this] { Q_EMIT stopRequested(); });
}

void PrintBox::changeEvent(QEvent *event)
{
    QGroupBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateTitle();
}

} // namespace zypanel
