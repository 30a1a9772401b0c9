// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel for one printer, as a widget for any slicing application.

#include "printerpanel.h"

#include "connectionbar.h"
#include "eventlog.h"
#include "noticestrip.h"
#include "parameterform.h"
#include "printbox.h"
#include "printercontrol.h"
#include "transferbox.h"
#include "upload.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QMimeData>
#include <QUrl>

namespace zypanel
{

namespace
{

/// The one local file that is being dragged; empty otherwise.
QString draggedFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

PrinterPanel::PrinterPanel(QWidget *parent)
    : QWidget(parent), m_control(new PrinterControl(this)), m_upload(new Upload(this)),
      m_connection(new ConnectionBar), m_strip(new NoticeStrip), m_transfer(new TransferBox),
      m_print(new PrintBox), m_parameters(new ParameterForm), m_log(new EventLog)
{
    setAcceptDrops(true);
    layOut();
    wireConnection();
    wireTransfer();
    wirePrint();
}

PrinterPanel::~PrinterPanel()
{
    // Before the widgets that their signals go to.
    delete m_upload;
    delete m_control;
}

/// The order of creation is the tab order: connection, sending, parameters, print, events.
void PrinterPanel::layOut()
{
    auto *events = new QGroupBox(tr("Events"));
    auto *eventsLayout = new QVBoxLayout(events);
    eventsLayout->addWidget(m_log);

    auto *layout = new QGridLayout(this);
    layout->addWidget(m_connection, 0, 0, 1, 2);
    layout->addWidget(m_strip, 1, 0, 1, 2);
    layout->addWidget(m_transfer, 2, 0);
    layout->addWidget(m_parameters, 2, 1);
    layout->addWidget(m_print, 3, 0);
    layout->addWidget(events, 3, 1);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 2);
    layout->setRowStretch(3, 1);
}

void PrinterPanel::wireConnection()
{
    connect(m_connection, &ConnectionBar::connectRequested, this,
            [this](const zysession::Printer &printer, const QString &token) {
                m_control->connectTo(printer, token);
            });
    connect(m_connection, &ConnectionBar::disconnectRequested, this,
            &PrinterPanel::disconnectFromPrinter);
    connect(m_connection, &ConnectionBar::tokenChanged, m_control, &PrinterControl::setToken);
    connect(m_connection, &ConnectionBar::noticed, this, &PrinterPanel::showNotice);
    connect(m_control, &PrinterControl::noticed, this, &PrinterPanel::showNotice);
    connect(m_control, &PrinterControl::linkChanged, m_connection, &ConnectionBar::showLink);
    connect(m_control, &PrinterControl::linkChanged, m_transfer, &TransferBox::showLink);
    connect(m_control, &PrinterControl::linkChanged, m_print, &PrintBox::showLink);
    connect(m_control, &PrinterControl::linkChanged, this, &PrinterPanel::updateApplicable);
    connect(m_strip, &NoticeStrip::actionTriggered, m_upload, &Upload::resume);
}

void PrinterPanel::wireTransfer()
{
    connect(m_transfer, &TransferBox::sendRequested, this,
            [this](const QString &path, const QString &name) {
                m_upload->send(m_control->printer(), path, name);
            });
    connect(m_transfer, &TransferBox::cancelRequested, m_upload, &Upload::cancel);
    connect(m_transfer, &TransferBox::resumeRequested, m_upload, &Upload::resume);
    connect(m_transfer, &TransferBox::discardRequested, m_upload, &Upload::forget);
    connect(m_upload, &Upload::noticed, this, &PrinterPanel::showNotice);
    connect(m_upload, &Upload::stateChanged, m_transfer, &TransferBox::showUpload);
    connect(m_upload, &Upload::stateChanged, this, &PrinterPanel::updateApplicable);
    connect(m_upload, &Upload::progressed, m_transfer, &TransferBox::showProgress);
    connect(m_upload, &Upload::stored, m_print, &PrintBox::addFile);
}

void PrinterPanel::wirePrint()
{
    connect(m_print, &PrintBox::startRequested, m_control, &PrinterControl::startPrint);
    connect(m_print, &PrintBox::pauseRequested, m_control, &PrinterControl::pausePrint);
    connect(m_print, &PrintBox::stopRequested, m_control, &PrinterControl::stopPrint);
    connect(m_control, &PrinterControl::statusChanged, m_print, &PrintBox::showStatus);
    connect(m_control, &PrinterControl::statusChanged, m_parameters,
            [this](const zysession::PrinterStatus &status) {
                m_parameters->showValues(status.parameters);
            });
    connect(m_control, &PrinterControl::parametersSettled, m_parameters,
            &ParameterForm::showValues);
    connect(m_parameters, &ParameterForm::applyRequested, m_control,
            &PrinterControl::setParameters);
}

void PrinterPanel::connectTo(const QString &nameOrAddress)
{
    m_connection->setAddress(nameOrAddress);
    m_connection->requestConnection();
}

void PrinterPanel::disconnectFromPrinter()
{
    m_upload->interrupt();
    m_control->disconnectFromPrinter();
}

void PrinterPanel::setToken(const QString &token)
{
    m_connection->setToken(token);
    m_control->setToken(token);
}

void PrinterPanel::setFile(const QString &path)
{
    m_transfer->setFile(path);
}

void PrinterPanel::chooseFile()
{
    m_transfer->chooseFile();
}

bool PrinterPanel::isTransferring() const
{
    return m_upload->isUnderWay();
}

/// Everything goes to the log; the strip keeps what asks for attention until something good comes.
void PrinterPanel::showNotice(const Notice &notice)
{
    m_log->append(notice);
    const bool canResume = m_upload->state() == Upload::State::Interrupted;
    m_strip->offerAction(canResume ? tr("Resume no&w") : QString());
    if (notice.severity == Severity::Error || notice.severity == Severity::Warning)
        m_strip->showNotice(notice);
    else if (notice.severity == Severity::Good)
        m_strip->hide();
}

void PrinterPanel::updateApplicable()
{
    m_parameters->setApplicable(m_control->isOpen());
    if (m_upload->state() != Upload::State::Interrupted)
        m_strip->offerAction({});
}

void PrinterPanel::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_transfer->takesFile() || draggedFile(event->mimeData()).isEmpty())
        return;
    m_transfer->showDrag(true);
    event->acceptProposedAction();
}

void PrinterPanel::dragLeaveEvent(QDragLeaveEvent *event)
{
    Q_UNUSED(event)
    m_transfer->showDrag(false);
}

void PrinterPanel::dropEvent(QDropEvent *event)
{
    m_transfer->showDrag(false);
    setFile(draggedFile(event->mimeData()));
    event->acceptProposedAction();
}

} // namespace zypanel
