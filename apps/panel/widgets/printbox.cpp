// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print: what the printer is doing, layers, and the buttons to start, pause and stop.

#include "printbox.h"

#include "confirmation.h"
#include "elidedlabel.h"
#include "formatting.h"
#include "layerplot.h"
#include "theme.h"
#include "words.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

namespace zypanel
{

using zysession::PrinterStatus;

namespace
{

constexpr int tickInterval = 1000; // ms

void paintQuietly(QWidget *label)
{
    const QPalette colors
        = label->parentWidget() ? label->parentWidget()->palette() : label->palette();
    QPalette quiet = colors;
    quiet.setColor(QPalette::WindowText, quietTextColor(colors));
    label->setPalette(quiet);
}

} // namespace

PrintBox::PrintBox(const PrinterControl &control, QWidget *parent)
    : QGroupBox(tr("Print"), parent), m_control(control), m_title(new ElidedLabel),
      m_job(new ElidedLabel), m_material(new ElidedLabel), m_remaining(new ElidedLabel),
      m_layers(new QProgressBar), m_plot(new LayerPlot), m_file(new QComboBox),
      m_start(new QPushButton(tr("&Start print"))), m_pause(new QPushButton),
      m_stop(new QPushButton(tr("Sto&p…")))
{
    m_clock.start();
    m_tick.setInterval(tickInterval);
    connect(&m_tick, &QTimer::timeout, this, &PrintBox::updatePlot);
    buildLabels();
    buildButtons();
    layOut();
    refresh();
}

void PrintBox::buildLabels()
{
    m_title->setObjectName(QStringLiteral("stateTitle"));
    QFont large = scaledFont(m_title->font(), 1.5);
    large.setBold(true);
    m_title->setFont(large);
    m_job->setObjectName(QStringLiteral("jobLabel"));
    paintQuietly(m_material);
    m_remaining->setObjectName(QStringLiteral("remainingLabel"));
    m_remaining->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_remaining->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_layers->setObjectName(QStringLiteral("layerProgress"));
    m_layers->setAccessibleName(tr("Layers printed"));
}

void PrintBox::buildButtons()
{
    m_file->setObjectName(QStringLiteral("printFile"));
    m_file->setEditable(true);
    m_file->setInsertPolicy(QComboBox::NoInsert);
    m_file->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_file->setMinimumContentsLength(8);
    m_file->setAccessibleName(tr("File on the printer"));
    m_file->lineEdit()->setAccessibleName(m_file->accessibleName());
    m_file->lineEdit()->setPlaceholderText(tr("Name of a file on the printer"));
    m_start->setObjectName(QStringLiteral("startPrint"));
    m_pause->setObjectName(QStringLiteral("pausePrint"));
    m_stop->setObjectName(QStringLiteral("stopPrint"));
    connect(m_file, &QComboBox::editTextChanged, this, &PrintBox::updateButtons);
    connect(m_start, &QPushButton::clicked, this,
            [this] { Q_EMIT startRequested(m_file->currentText().trimmed()); });
    connect(m_pause, &QPushButton::clicked, this, &PrintBox::pauseOrContinue);
    connect(m_stop, &QPushButton::clicked, this, &PrintBox::askToStop);
}

void PrintBox::layOut()
{
    auto *heading = new QHBoxLayout;
    heading->addWidget(m_title, 1);
    heading->addWidget(m_pause);
    heading->addWidget(m_stop);

    auto *job = new QHBoxLayout;
    job->addWidget(m_job);
    // Gives way first.
    m_material->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    job->addWidget(m_material, 1);
    job->addWidget(m_remaining);

    auto *fileLabel = new QLabel(tr("File on pr&inter"));
    fileLabel->setBuddy(m_file);
    auto *files = new QHBoxLayout;
    files->addWidget(fileLabel);
    files->addWidget(m_file, 1);
    files->addWidget(m_start);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(heading);
    layout->addLayout(job);
    layout->addWidget(m_layers);
    layout->addWidget(m_plot, 1);
    layout->addStretch(0);
    layout->addLayout(files);
}

void PrintBox::showStatus(const PrinterStatus &status)
{
    m_history.add(status, m_clock.elapsed());
    if (m_file->currentText().isEmpty() && !status.filename.isEmpty())
        addFile(status.filename);
    refresh();
}

void PrintBox::refresh()
{
    updateTitle();
    updateJob();
    updatePlot();
    updateButtons();
    const PrinterStatus &status = m_control.status();
    const bool isAskable = m_control.isOpen() && status.canStop() && status.filename == m_asked;
    if (m_question && !isAskable)
        m_question->close();
}

void PrintBox::forget()
{
    m_history = {};
    m_file->clear();
    refresh();
}

void PrintBox::addFile(const QString &name)
{
    const int known = m_file->findText(name);
    if (known < 0)
        m_file->insertItem(0, name);
    m_file->setCurrentIndex(known < 0 ? 0 : known);
}

int PrintBox::percentage() const
{
    const PrinterStatus &status = m_control.status();
    const double fraction = status.layerFraction();
    return status.hasJob() && fraction >= 0 ? static_cast<int>(fraction * 100) : -1;
}

bool PrintBox::isKnown() const
{
    return !m_control.status().parameters.isEmpty();
}

QString PrintBox::titleText() const
{
    switch (m_control.link()) {
    case Link::Closed:
        return tr("Not connected");
    case Link::Connecting:
        return tr("Connecting…");
    case Link::Lost:
        return tr("Connection lost");
    case Link::Silent:
        return tr("No answer");
    case Link::Open:
        break;
    }
    if (m_control.isChecking())
        return tr("Checking the file");
    return isKnown() ? stateTitle(m_control.status().state) : tr("Asking the printer…");
}

Severity PrintBox::titleSeverity() const
{
    if (m_control.link() == Link::Lost)
        return Severity::Error;
    if (m_control.link() == Link::Silent)
        return Severity::Warning;
    return m_control.isChecking() || !isKnown()
        ? Severity::Info
        : stateNotice(m_control.status().state, QString()).severity;
}

void PrintBox::updateTitle()
{
    m_title->setText(titleText());
    QPalette colors = palette();
    const Severity severity = titleSeverity();
    const bool isQuiet = m_control.link() == Link::Closed || m_control.link() == Link::Connecting;
    if (isQuiet)
        colors.setColor(QPalette::WindowText, quietTextColor(palette()));
    else if (severity != Severity::Info)
        colors.setColor(QPalette::WindowText, severityColor(severity, palette()));
    m_title->setPalette(colors);
}

/// What was known when the printer was last heard.
QString PrintBox::ageText() const
{
    const bool isOld = m_control.link() == Link::Lost || m_control.link() == Link::Silent;
    if (!isOld || !isKnown())
        return {};
    return tr("%1, as of %2")
        .arg(stateTitle(m_control.status().state),
             QLocale().toString(m_control.lastHeard().time(), QLocale::ShortFormat));
}

void PrintBox::updateJob()
{
    const PrinterStatus &status = m_control.status();
    const QString file = m_control.isChecking() ? m_control.fileToPrint() : status.filename;
    m_job->setText(file.isEmpty() ? tr("No job") : file);
    m_job->setVisible(isKnown());
    QStringList material;
    if (!status.layerThickness.isEmpty())
        material.append(tr("layers of %1").arg(lengthText(status.layerThickness)));
    if (!status.resin.isEmpty())
        material.append(status.resin);
    m_material->setText(material.join(QStringLiteral(" · ")));
    m_material->setVisible(!material.isEmpty());

    const QString age = ageText();
    const bool hasRemaining = status.hasJob() && !status.remainingTime.isEmpty();
    m_remaining->setText(!age.isEmpty()     ? age
                             : hasRemaining ? tr("%1 left").arg(timeText(status.remainingTime))
                                            : QString());
    m_remaining->setVisible(!m_remaining->text().isEmpty());
    m_layers->setVisible(status.layerCount > 0);
    m_layers->setEnabled(age.isEmpty());
    m_layers->setRange(0, qMax(1, status.layerCount));
    m_layers->setValue(qMin(status.layer, status.layerCount));
    m_layers->setFormat(tr("Layer %1 of %2").arg(status.layer).arg(status.layerCount));
}

void PrintBox::updatePlot()
{
    const bool isRunning = m_control.status().hasJob() && m_control.link() == Link::Open;
    if (isRunning && !m_tick.isActive())
        m_tick.start();
    // Of a printer that is not heard, nothing is known about the time since.
    if (m_control.link() != Link::Lost && m_control.link() != Link::Silent)
        m_plot->showHistory(m_history, m_clock.elapsed());
    if (!isRunning)
        m_tick.stop();
    m_plot->setVisible(!m_history.points().isEmpty());
}

void PrintBox::updateButtons()
{
    const PrinterStatus &status = m_control.status();
    const bool isOpen = m_control.isOpen();
    m_pause->setText(status.canContinue() ? tr("Co&ntinue") : tr("Pa&use"));
    m_pause->setEnabled(isOpen && (status.canPause() || status.canContinue()));
    m_stop->setEnabled(isOpen && status.canStop());
    m_start->setEnabled(isOpen && !status.hasJob() && !m_control.isChecking()
                        && !m_file->currentText().trimmed().isEmpty());
}

/// The protocol has no command to go on after a pause: the paused job is started again.
void PrintBox::pauseOrContinue()
{
    if (m_control.status().canContinue())
        Q_EMIT startRequested(m_control.status().filename);
    else
        Q_EMIT pauseRequested();
}

void PrintBox::askToStop()
{
    m_asked = m_control.status().filename;
    m_question
        = confirm(this,
                  {tr("Stop the print"), tr("Stop printing %1?").arg(shortened(m_asked)),
                   tr("A stopped print cannot be continued; what is on the build plate is lost."),
                   tr("&Stop the print"), tr("&Keep printing")},
                  [this] { Q_EMIT stopRequested(); });
}

void PrintBox::changeEvent(QEvent *event)
{
    QGroupBox::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    paintQuietly(m_material);
    updateTitle();
}

} // namespace zypanel
