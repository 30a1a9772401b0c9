// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel for one printer, as a widget for any slicing application.

#include "printerpanel.h"

#include "connectionbar.h"
#include "eventlog.h"
#include "noticestrip.h"
#include "parameterform.h"
#include "printbox.h"
#include "printersession.h"
#include "transferbox.h"

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
    : QWidget(parent), m_session(new PrinterSession(this)), m_connection(new ConnectionBar),
      m_strip(new NoticeStrip), m_transfer(new TransferBox), m_print(new PrintBox),
      m_parameters(new ParameterForm), m_log(new EventLog)
{
    setAcceptDrops(true);
    layOut();
    wireConnection();
    wireTransfer();
    wirePrint();
}

PrinterPanel::~PrinterPanel()
{
    // Before the widgets that its signals go to.
    delete m_session;
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
    connect(m_connection, &ConnectionBar::connectRequested, this, &PrinterPanel::connectTo);
    connect(m_connection, &ConnectionBar::disconnectRequested, this,
            &PrinterPanel::disconnectFromPrinter);
    connect(m_connection, &ConnectionBar::tokenChanged, m_session, &PrinterSession::setToken);
    connect(m_connection, &ConnectionBar::noticed, this, &PrinterPanel::showNotice);
    connect(m_session, &PrinterSession::noticed, this, &PrinterPanel::showNotice);
    connect(m_session, &PrinterSession::linkChanged, m_connection, &ConnectionBar::showLink);
    connect(m_session, &PrinterSession::linkChanged, m_transfer, &TransferBox::showLink);
    connect(m_session, &PrinterSession::linkChanged, m_print, &PrintBox::showLink);
    connect(m_session, &PrinterSession::linkChanged, this, &PrinterPanel::updateApplicable);
    connect(m_strip, &NoticeStrip::actionTriggered, m_session, &PrinterSession::resumeTransfer);
}

void PrinterPanel::wireTransfer()
{
    connect(m_transfer, &TransferBox::sendRequested, m_session, &PrinterSession::send);
    connect(m_transfer, &TransferBox::cancelRequested, m_session, &PrinterSession::cancelTransfer);
    connect(m_transfer, &TransferBox::resumeRequested, m_session, &PrinterSession::resumeTransfer);
    connect(m_transfer, &TransferBox::discardRequested, m_session, &PrinterSession::forgetTransfer);
    connect(m_session, &PrinterSession::transferChanged, m_transfer, &TransferBox::showTransfer);
    connect(m_session, &PrinterSession::transferChanged, m_print, &PrintBox::showTransfer);
    connect(m_session, &PrinterSession::transferChanged, this, &PrinterPanel::updateApplicable);
    connect(m_session, &PrinterSession::transferProgress, m_transfer, &TransferBox::showProgress);
    connect(m_session, &PrinterSession::fileStored, m_print, &PrintBox::addFile);
}

void PrinterPanel::wirePrint()
{
    connect(m_print, &PrintBox::startRequested, m_session, &PrinterSession::startPrint);
    connect(m_print, &PrintBox::pauseRequested, m_session, &PrinterSession::pausePrint);
    connect(m_print, &PrintBox::stopRequested, m_session, &PrinterSession::stopPrint);
    connect(m_session, &PrinterSession::statusChanged, m_print, &PrintBox::showStatus);
    connect(m_session, &PrinterSession::statusChanged, m_parameters,
            [this](const PrinterStatus &status) { m_parameters->showValues(status.parameters); });
    connect(m_session, &PrinterSession::parametersSettled, m_parameters,
            &ParameterForm::showValues);
    connect(m_parameters, &ParameterForm::applyRequested, m_session,
            &PrinterSession::setParameters);
}

void PrinterPanel::connectTo(const QString &nameOrAddress)
{
    SavedPrinters saved;
    const QUrl url = saved.resolve(nameOrAddress);
    m_connection->setAddress(nameOrAddress);
    if (url.isEmpty()) {
        const QString text = SavedPrinters::isName(nameOrAddress.trimmed())
            ? tr("Unknown printer “%1”: no printer is saved under this name. Give an address such "
                 "as ws://192.168.1.20:8080.")
            : tr("“%1” is neither a saved printer nor an address such as "
                 "ws://192.168.1.20:8080.");
        showNotice({Severity::Error, text.arg(nameOrAddress)});
        return;
    }
    saved.setLastUsed(nameOrAddress);
    m_session->connectTo(url, m_connection->token());
}

void PrinterPanel::disconnectFromPrinter()
{
    m_session->disconnectFromPrinter();
}

void PrinterPanel::setToken(const QString &token)
{
    m_connection->setToken(token);
    m_session->setToken(token);
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
    return m_session->isTransferring();
}

/// Everything goes to the log; the strip keeps what asks for attention until something good comes.
void PrinterPanel::showNotice(const Notice &notice)
{
    m_log->append(notice);
    const bool canResume = m_session->transfer() == PrinterSession::Transfer::Interrupted;
    m_strip->offerAction(canResume ? tr("Resume no&w") : QString());
    if (notice.severity == Severity::Error || notice.severity == Severity::Warning)
        m_strip->showNotice(notice);
    else if (notice.severity == Severity::Good)
        m_strip->hide();
}

void PrinterPanel::updateApplicable()
{
    m_parameters->setApplicable(m_session->link() == PrinterSession::Link::Open
                                && !m_session->isTransferring());
    if (m_session->transfer() != PrinterSession::Transfer::Interrupted)
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
