// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing a file and sending it: name on the printer, progress, rate, time left, cancel, resume.

#include "transferbox.h"

#include "confirmation.h"
#include "drophint.h"
#include "formatting.h"

#include <zyfilesender.h>

#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

namespace zypanel
{

using Link = PrinterControl::Link;
using State = Upload::State;
using FileFault = ZySendResult::FileFault;

namespace
{

constexpr int progressSteps = 1000;

} // namespace

TransferBox::TransferBox(QWidget *parent)
    : QGroupBox(tr("Send a model"), parent), m_hint(new DropHint), m_path(new QLineEdit),
      m_choose(new QPushButton(tr("Ch&oose…"))), m_name(new QLineEdit),
      m_progress(new QProgressBar), m_detail(new QLabel), m_send(new QPushButton(tr("S&end"))),
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
    m_detail->setTextFormat(Qt::PlainText);
    connect(m_path, &QLineEdit::textChanged, this, &TransferBox::checkFile);
    connect(m_path, &QLineEdit::textEdited, this,
            [this](const QString &path) { m_name->setText(QFileInfo(path).fileName()); });
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
    form->addRow(tr("Na&me on printer"), m_name);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_detail, 1);
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
    // The same path may stand for another file by now.
    checkFile();
}

void TransferBox::checkFile()
{
    m_fault = ZyFileSender::checkFile(m_path->text()).fileFault();
    m_hint->showFile(m_path->text(), m_fault);
    updateButtons();
}

bool TransferBox::event(QEvent *event)
{
    // Back from another program, in which the file may have been made or mended.
    if (event->type() == QEvent::WindowActivate && takesFile())
        checkFile();
    return QGroupBox::event(event);
}

QString TransferBox::file() const
{
    return m_path->text();
}

bool TransferBox::takesFile() const
{
    return !Upload::isUnderWay(m_state) && m_state != State::Interrupted;
}

/// open(), since exec() would hold up a transfer under way.
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

void TransferBox::showLink(Link link)
{
    m_link = link;
    updateButtons();
}

void TransferBox::showUpload(State state)
{
    const State before = m_state;
    m_state = state;
    if (state == State::Offered) {
        m_received = 0;
        m_total = 0;
        m_progress->setValue(0);
    }
    if (state == State::Sending && before != state) {
        m_rate = {};
        m_clock.start();
    }
    // A finished bar stays full, a cancelled one would claim what the printer no longer has.
    if (state == State::Cancelled)
        m_progress->setValue(0);
    updateDetail();
    updateButtons();
}

void TransferBox::showProgress(qint64 received, qint64 total)
{
    const bool isFirst = m_total == 0;
    m_received = received;
    m_total = total;
    if (isFirst)
        m_rate.start(m_clock.elapsed(), received);
    else
        m_rate.add(m_clock.elapsed(), received);
    if (total > 0)
        m_progress->setValue(static_cast<int>(static_cast<double>(received)
                                              / static_cast<double>(total) * progressSteps));
    updateDetail();
}

void TransferBox::updateDetail()
{
    switch (m_state) {
    case State::Idle:
    case State::Sent:
    case State::Cancelled:
    case State::Failed:
        m_detail->clear();
        break;
    case State::Checking:
        m_detail->setText(tr("The printer is checking the file…"));
        break;
    case State::Offered:
        m_detail->setText(tr("Waiting for the printer…"));
        break;
    case State::Sending:
        m_detail->setText(progressText(m_received, m_total, m_rate.bytesPerSecond(),
                                       m_rate.secondsLeft(m_total)));
        break;
    case State::Cancelling:
        m_detail->setText(tr("Cancelling…"));
        break;
    case State::Interrupted:
        m_detail->setText(
            m_total > 0 ? tr("Interrupted at %1 of %2").arg(sizeText(m_received), sizeText(m_total))
                        : tr("Interrupted before the start"));
        break;
    }
}

void TransferBox::updateButtons()
{
    const bool isRunning = m_state == State::Offered || m_state == State::Sending;
    const bool isInterrupted = m_state == State::Interrupted;
    const bool isBusy = Upload::isUnderWay(m_state);
    m_path->setEnabled(takesFile());
    m_choose->setEnabled(m_path->isEnabled());
    m_name->setEnabled(m_path->isEnabled());
    m_send->setEnabled(!isBusy && m_link == Link::Open && m_fault == FileFault::None);
    m_send->setVisible(!isInterrupted);
    m_resume->setVisible(isInterrupted);
    m_resume->setEnabled(m_link != Link::Connecting);
    m_cancel->setText(isInterrupted ? tr("Disc&ard") : tr("C&ancel"));
    m_cancel->setVisible(isBusy || isInterrupted);
    m_cancel->setEnabled(isRunning || isInterrupted);
    m_progress->setEnabled(m_state != State::Interrupted);
}

void TransferBox::askToCancel()
{
    if (m_state == State::Interrupted) {
        Q_EMIT discardRequested();
        return;
    }
    confirm(this,
            {tr("Cancel sending"), tr("Cancel sending %1?").arg(m_name->text()),
             tr("The printer deletes what it has received, so that it cannot be resumed."),
             tr("&Cancel sending"), tr("&Go on sending")},
            [this] { Q_EMIT cancelRequested(); });
}

} // namespace zypanel
