// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel for one printer, as a widget for any slicing application.

#include "printerpanel.h"

#include "confirmation.h"
#include "connectionbar.h"
#include "eventlog.h"
#include "formatting.h"
#include "noticestrip.h"
#include "parameterform.h"
#include "printbox.h"
#include "printercontrol.h"
#include "transferbox.h"
#include "upload.h"

#include <QAbstractScrollArea>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollArea>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

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
      m_scroll(new QScrollArea), m_columns(new QHBoxLayout), m_left(new QVBoxLayout),
      m_right(new QVBoxLayout), m_connection(new ConnectionBar), m_strip(new NoticeStrip),
      m_transfer(new TransferBox), m_print(new PrintBox(*m_control)),
      m_parameters(new ParameterForm), m_log(new EventLog)
{
    setAcceptDrops(true);
    layOut();
    leaveDropsToThePanel();
    wireConnection();
    wireTransfer();
    wirePrint();
}

PrinterPanel::~PrinterPanel()
{
    // Before the widgets that their signals go to.
    delete m_upload;
    // After the widget that asks it.
    delete m_print;
    delete m_control;
}

/// The order of creation is the tab order: connection, sending, print, parameters, events.
void PrinterPanel::layOut()
{
    auto *events = new QGroupBox(tr("Events"));
    auto *eventsLayout = new QVBoxLayout(events);
    eventsLayout->addWidget(m_log);

    m_left->addWidget(m_transfer, 1);
    m_left->addWidget(m_print, 2);
    m_right->addWidget(m_parameters);
    m_right->addWidget(events, 1);
    m_columns->addLayout(m_left, 3);
    m_columns->addLayout(m_right, 2);

    auto *content = new QWidget;
    auto *rows = new QVBoxLayout(content);
    rows->addWidget(m_connection);
    rows->addWidget(m_strip);
    rows->addLayout(m_columns, 1);

    m_scroll->setObjectName(QStringLiteral("panelScroll"));
    m_scroll->setWidget(content);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_scroll);
}

/// A field would insert a dropped file as text.
void PrinterPanel::leaveDropsToThePanel()
{
    for (QLineEdit *field : findChildren<QLineEdit *>())
        field->setAcceptDrops(false);
    for (QAbstractScrollArea *area : findChildren<QAbstractScrollArea *>()) {
        area->setAcceptDrops(false);
        area->viewport()->setAcceptDrops(false);
    }
}

QSize PrinterPanel::sizeHint() const
{
    return m_scroll->widget()->sizeHint();
}

/// Below this the columns, and the two halves of the connection bar, stand one below the other.
int PrinterPanel::wideWidth() const
{
    const int columns
        = m_left->minimumSize().width() + m_columns->spacing() + m_right->minimumSize().width();
    const QMargins margins = m_scroll->widget()->layout()->contentsMargins();
    return std::max(columns, m_connection->wideWidth()) + margins.left() + margins.right()
        + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}

void PrinterPanel::resizeEvent(QResizeEvent *event)
{
    const bool isNarrow = width() < wideWidth();
    m_columns->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_connection->setNarrow(isNarrow);
    QWidget::resizeEvent(event);
}

void PrinterPanel::wireConnection()
{
    connect(m_connection, &ConnectionBar::connectRequested, this,
            [this](const zysession::Printer &printer) {
                m_control->connectTo(printer, m_connection->token());
            });
    connect(m_connection, &ConnectionBar::disconnectRequested, this,
            &PrinterPanel::askToDisconnect);
    connect(m_connection, &ConnectionBar::tokenChanged, m_control, &PrinterControl::setToken);
    connect(m_connection, &ConnectionBar::printerSaved, this,
            [this](const zysession::Printer &printer) {
                m_control->rename(printer);
                updateHeadline();
            });
    connect(m_connection, &ConnectionBar::noticed, this, &PrinterPanel::showNotice);
    connect(m_control, &PrinterControl::noticed, this, &PrinterPanel::showNotice);
    connect(m_control, &PrinterControl::certificateUnknown, this, &PrinterPanel::askToTrust);
    connect(m_control, &PrinterControl::printerChanged, this, &PrinterPanel::changePrinter);
    connect(m_control, &PrinterControl::linkChanged, this, &PrinterPanel::onLinkChanged);
}

void PrinterPanel::wireTransfer()
{
    connect(m_transfer, &TransferBox::sendRequested, this,
            [this](const QString &path, const QString &name) {
                commitToken();
                m_upload->send(m_control->printer(), path, name);
            });
    connect(m_transfer, &TransferBox::cancelRequested, m_upload, &Upload::cancel);
    connect(m_transfer, &TransferBox::resumeRequested, this, &PrinterPanel::resumeUpload);
    connect(m_transfer, &TransferBox::discardRequested, m_upload, &Upload::forget);
    connect(m_transfer, &TransferBox::fileChosen, this, [this] { m_strip->clear(Topic::Upload); });
    connect(m_upload, &Upload::noticed, this, &PrinterPanel::showNotice);
    connect(m_upload, &Upload::stateChanged, this, &PrinterPanel::onUploadChanged);
    connect(m_upload, &Upload::resumed, m_transfer, &TransferBox::showResumed);
    connect(m_upload, &Upload::reading, m_transfer, &TransferBox::showReading);
    connect(m_upload, &Upload::progressed, m_transfer, &TransferBox::showProgress);
    connect(m_upload, &Upload::progressed, this, &PrinterPanel::updateHeadline);
    connect(m_upload, &Upload::stored, m_print, &PrintBox::addFile);
}

void PrinterPanel::wirePrint()
{
    connect(m_print, &PrintBox::startRequested, this, [this](const QString &name) {
        commitToken();
        m_control->startPrint(name);
    });
    connect(m_print, &PrintBox::pauseRequested, this, [this] {
        commitToken();
        m_control->pausePrint();
    });
    connect(m_print, &PrintBox::stopRequested, this, [this] {
        commitToken();
        m_control->stopPrint();
    });
    connect(m_parameters, &ParameterForm::applyRequested, this,
            [this](const zysession::Parameters &parameters) {
                commitToken();
                m_control->setParameters(parameters);
            });
    connect(m_control, &PrinterControl::statusChanged, this,
            [this](const zysession::PrinterStatus &status) {
                m_print->showStatus(status);
                m_parameters->showValues(status.parameters);
                updateHeadline();
            });
    connect(m_control, &PrinterControl::checkingChanged, m_print, &PrintBox::refresh);
    connect(m_control, &PrinterControl::parametersSettled, m_parameters,
            &ParameterForm::showValues);
}

/// A token that was typed and followed by a shortcut.
void PrinterPanel::commitToken()
{
    m_control->setToken(m_connection->token());
}

void PrinterPanel::changePrinter()
{
    if (m_upload->job().printer.url != m_control->printer().url) {
        m_upload->interrupt();
        m_upload->forget();
    }
    m_print->forget();
    m_parameters->forget();
    m_strip->clearAll();
}

void PrinterPanel::onLinkChanged()
{
    if (m_trustQuestion)
        m_trustQuestion->close();
    m_connection->showLink(m_control->link(), m_control->printer());
    m_transfer->setConnected(m_control->isOpen());
    m_parameters->setApplicable(m_control->isOpen());
    m_print->refresh();
    updateHeadline();
}

void PrinterPanel::onUploadChanged()
{
    if (m_upload->state() == Upload::State::Offered)
        m_strip->clear(Topic::Upload);
    m_transfer->showUpload(m_upload->state());
    updateHeadline();
    const bool isNow = isTransferring();
    if (std::exchange(m_wasTransferring, isNow) == isNow)
        return;
    if (m_question)
        m_question->close();
    Q_EMIT transferringChanged(isNow);
}

void PrinterPanel::resumeUpload()
{
    if (m_control->link() == PrinterControl::Link::Closed) {
        const zysession::Printer printer = m_upload->job().printer;
        m_connection->setPrinter(printer);
        m_control->connectTo(printer, m_connection->token());
    }
    commitToken();
    m_upload->resume(m_connection->token());
}

void PrinterPanel::connectTo(const QString &nameOrAddress)
{
    m_connection->setAddress(nameOrAddress);
    m_connection->requestConnection();
}

void PrinterPanel::setCertificate(const QString &nameOrAddress, const QString &authorities,
                                  const QString &fingerprint)
{
    m_connection->setCertificate(nameOrAddress, authorities, fingerprint);
}

void PrinterPanel::askToDisconnect()
{
    if (!isTransferring()) {
        disconnectFromPrinter();
        return;
    }
    m_question
        = confirm(this,
                  {tr("Disconnect"), tr("A file is still being sent. Disconnect?"),
                   tr("It can be resumed afterwards."), tr("&Disconnect"), tr("&Go on sending")},
                  [this] { disconnectFromPrinter(); });
}

/// What comes from the printer proves nothing, so the default is not to trust it.
void PrinterPanel::askToTrust(const QString &fingerprint)
{
    const zysession::Printer printer = m_control->printer();
    const auto half = fingerprint.size() / 2;
    const QString lines = fingerprint.left(half) + QLatin1String(":\n") + fingerprint.mid(half + 1);
    const QString remembered = printer.name.isEmpty()
        ? tr("It is remembered until the panel is closed, or with the printer once that is saved.")
        : tr("It is remembered with the saved printer.");
    m_trustQuestion = confirm(
        this,
        {tr("Unknown certificate"),
         tr("Nothing here knows the certificate of %1. Trust it?").arg(m_control->printerName()),
         tr("Its SHA-256 fingerprint:\n\n%1\n\nTrust it only if that is the fingerprint that the "
            "printer, or who runs it, names.")
                 .arg(lines)
             + QLatin1Char(' ') + remembered,
         tr("&Trust and remember"), tr("&Cancel")},
        [this, printer, fingerprint] {
            m_control->connectTo(m_connection->trust(printer, fingerprint), m_connection->token());
        });
    m_trustQuestion->setTextInteractionFlags(Qt::TextSelectableByMouse);
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
    if (m_transfer->takesFile())
        m_transfer->setFile(path);
}

void PrinterPanel::chooseFile()
{
    if (m_transfer->takesFile())
        m_transfer->chooseFile();
}

bool PrinterPanel::isTransferring() const
{
    return m_upload->isUnderWay();
}

/// Everything goes to the log; the strip keeps what is wrong.
void PrinterPanel::showNotice(const Notice &notice)
{
    m_log->append(notice);
    m_strip->showNotice(notice);
    const bool isOfWork = notice.topic == Topic::Upload || notice.topic == Topic::Print
        || notice.topic == Topic::Connection;
    const bool isEnd = notice.severity == Severity::Error
        || (notice.topic != Topic::Connection && notice.severity != Severity::Info);
    if (isOfWork && isEnd)
        Q_EMIT attentionWanted(notice);
}

void PrinterPanel::updateHeadline()
{
    QString headline;
    if (m_control->link() != PrinterControl::Link::Closed)
        headline = m_control->printerName();
    const int percentage = isTransferring() ? m_transfer->percentage() : m_print->percentage();
    if (percentage >= 0 && !headline.isEmpty())
        headline = tr("%1 % – %2").arg(percentage).arg(shortened(headline));
    if (std::exchange(m_headline, headline) != headline)
        Q_EMIT headlineChanged(headline);
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
