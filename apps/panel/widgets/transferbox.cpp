// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing a file and sending it: name on the printer, progress, rate, time left, cancel, resume.

#include "transferbox.h"

#include "confirmation.h"
#include "drophint.h"
#include "elidedlabel.h"
#include "formatting.h"

#include <zyfilesender.h>

#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>

namespace zypanel
{

using State = Upload::State;
using FileFault = ZySendResult::FileFault;

namespace
{

constexpr int progressSteps = 1000;
constexpr int tickInterval = 1000; // ms
constexpr int noRateAfter = 3000; // ms without an acknowledgement

} // namespace

TransferBox::TransferBox(QWidget *parent)
    : QGroupBox(tr("Send a model"), parent), m_hint(new DropHint), m_path(new QLineEdit),
      m_choose(new QPushButton(tr("Ch&oose…"))), m_name(new QLineEdit),
      m_progress(new QProgressBar), m_detail(new ElidedLabel), m_send(new QPushButton(tr("S&end"))),
      m_resume(new QPushButton(tr("R&esume"))), m_cancel(new QPushButton)
{
    buildFields();
    buildButtons();
    layOut();
    updateDetail();
    updateButtons();
}

void TransferBox::buildFields()
{
    m_path->setObjectName(QStringLiteral("filePath"));
    m_path->setAccessibleName(tr("File to send"));
    m_name->setObjectName(QStringLiteral("fileName"));
    m_name->setAccessibleName(tr("Name on the printer"));
    m_progress->setObjectName(QStringLiteral("transferProgress"));
    m_progress->setRange(0, progressSteps);
    m_progress->setAccessibleName(tr("Sent"));
    m_detail->setObjectName(QStringLiteral("transferDetail"));
    m_tick.setInterval(tickInterval);
    connect(&m_tick, &QTimer::timeout, this, &TransferBox::updateDetail);
    connect(m_path, &QLineEdit::textChanged, this, &TransferBox::checkFile);
    connect(m_path, &QLineEdit::textEdited, this,
            [this](const QString &path) { m_name->setText(QFileInfo(path).fileName()); });
    // What became of the last one is over with the next.
    connect(m_path, &QLineEdit::textChanged, this, [this] {
        if (takesFile())
            showUpload(State::Idle);
        Q_EMIT fileChosen();
    });
}

void TransferBox::buildButtons()
{
    m_choose->setObjectName(QStringLiteral("chooseFile"));
    m_send->setObjectName(QStringLiteral("send"));
    m_resume->setObjectName(QStringLiteral("resume"));
    m_resume->setToolTip(tr("Send only what is missing on the printer"));
    m_resume->setAccessibleDescription(m_resume->toolTip());
    m_cancel->setObjectName(QStringLiteral("cancel"));
    connect(m_choose, &QPushButton::clicked, this, &TransferBox::chooseFile);
    connect(m_send, &QPushButton::clicked, this,
            [this] { Q_EMIT sendRequested(m_path->text(), m_name->text()); });
    connect(m_resume, &QPushButton::clicked, this, &TransferBox::resumeRequested);
    connect(m_cancel, &QPushButton::clicked, this, &TransferBox::askToCancel);
}

void TransferBox::layOut()
{
    auto *fileRow = new QHBoxLayout;
    fileRow->addWidget(m_path, 1);
    fileRow->addWidget(m_choose);

    auto *form = new QFormLayout;
    auto *fileLabel = new QLabel(tr("&File"));
    fileLabel->setBuddy(m_path);
    form->addRow(fileLabel, fileRow);
    auto *nameLabel = new QLabel(tr("Na&me on printer"));
    nameLabel->setBuddy(m_name);
    form->addRow(nameLabel, m_name);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_detail, 1);
    buttons->addStretch(0);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_resume);
    buttons->addWidget(m_send);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_hint, 1);
    layout->addLayout(form);
    layout->addWidget(m_progress);
    layout->addLayout(buttons);
}

void TransferBox::setFile(const QString &path)
{
    m_path->setText(path);
    m_name->setText(QFileInfo(path).fileName());
    m_path->end(false);
    // The same path may stand for another file by now.
    checkFile();
}

void TransferBox::checkFile()
{
    m_fault = ZyFileSender::checkFile(m_path->text()).fileFault();
    m_hint->showFile(m_path->text(), m_fault);
    m_path->setToolTip(m_path->text());
    updateButtons();
}

bool TransferBox::event(QEvent *event)
{
    // Back from another program, in which the file may have been made or mended.
    if (event->type() == QEvent::WindowActivate && takesFile())
        checkFile();
    return QGroupBox::event(event);
}

bool TransferBox::takesFile() const
{
    return !Upload::isUnderWay(m_state) && m_state != State::Interrupted;
}

void TransferBox::chooseFile()
{
    const QString folder = QFileInfo(m_path->text()).absolutePath();
    auto *dialog = new QFileDialog(this, tr("Choose a sliced model"), folder);
    dialog->setObjectName(QStringLiteral("fileDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &TransferBox::setFile);
    dialog->open();
}

void TransferBox::showDrag(bool isDragging)
{
    m_hint->setActive(isDragging);
}

void TransferBox::setConnected(bool isConnected)
{
    m_isConnected = isConnected;
    updateButtons();
}

void TransferBox::showUpload(State state)
{
    m_state = state;
    if (state == State::Offered) {
        m_clock.start();
        m_rate = {};
        m_from = 0;
        m_received = 0;
        m_total = 0;
        m_lastProgress = 0;
        m_progress->setValue(0);
    }
    if (m_question && state != State::Offered && state != State::Sending)
        m_question->close();
    if (state == State::Sending)
        m_tick.start();
    else
        m_tick.stop();
    updateDetail();
    updateButtons();
}

void TransferBox::showReading(qint64 done, qint64 total)
{
    if (m_state == State::Offered)
        m_detail->setText(tr("Reading the file: %1 of %2").arg(sizeText(done), sizeText(total)));
}

void TransferBox::showResumed(qint64 from)
{
    m_from = from;
    m_rate.start(m_clock.elapsed(), from);
}

void TransferBox::showProgress(qint64 received, qint64 total)
{
    m_received = received;
    m_total = total;
    m_lastProgress = m_clock.elapsed();
    m_rate.add(m_lastProgress, received);
    m_progress->setValue(static_cast<int>(static_cast<double>(received) / static_cast<double>(total)
                                          * progressSteps));
    updateDetail();
}

int TransferBox::percentage() const
{
    if (!Upload::isUnderWay(m_state) || m_total == 0)
        return -1;
    return static_cast<int>(m_received * 100 / m_total);
}

void TransferBox::updateDetail()
{
    m_detail->setText(detailText());
}

QString TransferBox::detailText() const
{
    switch (m_state) {
    case State::Idle:
        break;
    case State::Offered:
        return tr("Waiting for the printer…");
    case State::Sending:
        return sendingText();
    case State::Checking:
        return tr("The printer is checking the file…");
    case State::Cancelling:
        return tr("Cancelling…");
    case State::Interrupted:
        return m_total > 0
            ? tr("Interrupted at %1 of %2").arg(sizeText(m_received), sizeText(m_total))
            : tr("Interrupted before the start");
    case State::Sent:
        return tr("Sent: %1").arg(summaryText(m_total - m_from, m_lastProgress));
    case State::Cancelled:
        return tr("Cancelled");
    case State::Failed:
        return tr("Not sent");
    }
    return {};
}

QString TransferBox::sendingText() const
{
    const qint64 still = m_clock.elapsed() - m_lastProgress;
    if (still > noRateAfter)
        return tr("%1 of %2, no acknowledgement for %3")
            .arg(sizeText(m_received), sizeText(m_total), durationText(still / 1000));
    return progressText(m_received, m_total, m_rate.bytesPerSecond(), m_rate.secondsLeft(m_total));
}

void TransferBox::updateButtons()
{
    const bool isRunning = m_state == State::Offered || m_state == State::Sending;
    const bool isInterrupted = m_state == State::Interrupted;
    const bool isBusy = Upload::isUnderWay(m_state);
    m_path->setEnabled(takesFile());
    m_choose->setEnabled(m_path->isEnabled());
    m_name->setEnabled(m_path->isEnabled());
    m_send->setEnabled(!isBusy && m_isConnected && m_fault == FileFault::None);
    m_send->setVisible(!isInterrupted);
    m_resume->setVisible(isInterrupted);
    m_cancel->setText(isInterrupted ? tr("Disc&ard") : tr("C&ancel"));
    m_cancel->setVisible(isBusy || isInterrupted);
    m_cancel->setEnabled(isRunning || isInterrupted);
    m_progress->setEnabled(!isInterrupted);
    m_progress->setVisible(isBusy || isInterrupted || m_state == State::Sent);
    m_detail->setVisible(m_state != State::Idle);
}

void TransferBox::askToCancel()
{
    if (m_state == State::Interrupted) {
        Q_EMIT discardRequested();
        return;
    }
    m_question
        = confirm(this,
                  {tr("Cancel sending"), tr("Cancel sending %1?").arg(shortened(m_name->text())),
                   tr("The printer deletes what it has received, so that it cannot be resumed."),
                   tr("&Cancel sending"), tr("&Go on sending")},
                  [this] { Q_EMIT cancelRequested(); });
}

} // namespace zypanel
