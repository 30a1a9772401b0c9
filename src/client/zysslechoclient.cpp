// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client: construction, connection, close, keep-alive, destruction.

#include "zysslechoclient.h"

#include "certificatecheck.h"
#include "clientlog.h"
#include "deliveryqueue.h"
#include "heldsocket.h"
#include "linkoptions.h"
#include "wakeafterwards.h"

#include <QPointer>
#include <QTimer>

Q_LOGGING_CATEGORY(lcZyClient, "zywebsocket.client", QtDebugMsg)

namespace
{

constexpr int keepAliveInterval = 3000; // ms
constexpr int unansweredTicks = 3;

void logState(QAbstractSocket::SocketState state)
{
    qCDebug(lcZyClient) << "onStateChanged(QAbstractSocket::SocketState state) =" << state;
}

// A separate function, so that a leak checker can suppress exactly this allocation.
Q_NEVER_INLINE QTimer *newKeepAliveTimer()
{
    auto *timer = new QTimer;
    timer->setInterval(keepAliveInterval);
    return timer;
}

} // namespace

ZySslEchoClient::ZySslEchoClient(const QUrl &url, QObject *parent)
    : ZySslEchoClient(url, ZyTlsTrust(), parent)
{
}

ZySslEchoClient::ZySslEchoClient(const QUrl &url, const ZyTlsTrust &trust, QObject *parent)
    : QObject(parent), m_certificateCheck(std::make_unique<zyws::CertificateCheck>(trust)),
      m_heldSocket(std::make_unique<zyws::HeldSocket>()), m_webSocket(m_heldSocket->socket()),
      m_deliveries(std::make_unique<zyws::DeliveryQueue>(this))
{
    connect(&m_webSocket, &QWebSocket::connected, this, &ZySslEchoClient::onConnected);
    open(url);
    m_url = url;
    // Deliberate: never started and never deleted. Deployed hosts count on a connection that no
    // keep-alive ends.
    m_timer = newKeepAliveTimer();
    connect(m_timer, SIGNAL(timeout()), this, SLOT(trying()));
    connect(&m_webSocket, &QWebSocket::pong, this, &ZySslEchoClient::onPong);
    connect(&m_webSocket, &QWebSocket::stateChanged, this, &ZySslEchoClient::onStateChanged);
}

ZySslEchoClient::~ZySslEchoClient()
{
    disconnect(m_disconnectConnection);
    m_heldSocket->close();
    // Deleting the socket would drop what it still has to send, without a change of state.
    if (m_webSocket.state() == QAbstractSocket::ClosingState)
        m_webSocket.abort();
    m_webSocket.disconnect(this);
    // The messages that wait are dropped with the queue, but what is logged is logged.
    while (!m_waitingStates.isEmpty())
        logState(m_waitingStates.dequeue());
}

void ZySslEchoClient::openWithUrl(const QUrl &url)
{
    m_url = url;
    open(url);
}

void ZySslEchoClient::open(const QUrl &url)
{
    m_certificateCheck->prepare(m_webSocket);
    m_heldSocket->open(url);
    m_certificateCheck->watch(m_webSocket);
}

void ZySslEchoClient::close()
{
    m_isSending = false;
    m_isActiveClose = true;
    m_heldSocket->close();
}

QAbstractSocket::SocketState ZySslEchoClient::socketConnectStatus() const
{
    return m_webSocket.state();
}

QAbstractSocket::SocketError ZySslEchoClient::socketError() const
{
    return m_webSocket.error();
}

QString ZySslEchoClient::socketErrorText() const
{
    return m_webSocket.errorString();
}

ZyTlsTrust ZySslEchoClient::tlsTrust() const
{
    return m_certificateCheck->trust();
}

QString ZySslEchoClient::refusedFingerprint() const
{
    return m_certificateCheck->refused();
}

int ZySslEchoClient::closeCode() const
{
    return m_webSocket.closeCode();
}

void ZySslEchoClient::onConnected()
{
    const zyws::WakeAfterwards wakeAfterwards;
    const zyws::HeldSocket::Emission emission(*m_heldSocket);
    zyws::setLinkOptions(m_webSocket);
    // Exactly one connection of each, however often the socket connects.
    disconnect(m_textConnection);
    disconnect(m_disconnectConnection);
    m_textConnection = connect(
        &m_webSocket, &QWebSocket::textMessageReceived, this, [this](const QString &text) {
            m_deliveries->append([this, text] { onTextMessageReceived(text); });
        });
    m_disconnectConnection = connect(&m_webSocket, &QWebSocket::disconnected, this, [this] {
        const zyws::HeldSocket::Emission ending(*m_heldSocket);
        // After the messages that came before it. With none waiting at once, since hosts expect
        // pauseSuccess() inside close(), and disconnected() as soon as the state has changed.
        if (m_deliveries->isEmpty())
            m_heldSocket->whenIdle([this] { onDisConnected(); });
        else
            m_deliveries->append([this] { onDisConnected(); });
    });
#if QT_VERSION_MAJOR >= 6
    // Qt reads within the TCP socket's readyRead(), which does not come again before it returns: a
    // slot that spins the event loop would wait for the printer in vain.
    m_deliveries->append([this] {
        const zyws::WakeAfterwards wakeOnceMore;
        Q_EMIT connected();
    });
#else
    m_heldSocket->outsideReader([this] { Q_EMIT connected(); });
#endif
}

void ZySslEchoClient::onDisConnected()
{
    const zyws::WakeAfterwards wakeAfterwards;
    const QPointer<ZySslEchoClient> self(this);
    if (m_isActiveClose)
        Q_EMIT pauseSuccess(); // deliberate name: hosts wait for it after close()
    else
        Q_EMIT disconnected();
    if (self)
        m_isActiveClose = false;
}

void ZySslEchoClient::onStateChanged(QAbstractSocket::SocketState state)
{
    const zyws::HeldSocket::Emission emission(*m_heldSocket);
    if (m_deliveries->isEmpty()) {
        logState(state);
    } else {
        m_waitingStates.enqueue(state);
        m_deliveries->append([this] { logState(m_waitingStates.dequeue()); });
    }
    if (state == QAbstractSocket::ClosingState && !m_isActiveClose)
        m_heldSocket->close();
}

void ZySslEchoClient::trying()
{
    const int previousCount = m_pingCount++;
    if (!m_isPingPending) {
        m_webSocket.ping(QByteArrayLiteral("ping"));
        m_isPingPending = true;
        return;
    }
    if (!m_isActiveClose && previousCount >= unansweredTicks) {
        m_timer->stop();
        Q_EMIT disconnected();
    }
}

void ZySslEchoClient::onPong(qulonglong elapsedTime, const QByteArray &payload)
{
    Q_UNUSED(elapsedTime)
    Q_UNUSED(payload)
    m_isPingPending = false;
    m_pingCount = 0;
}

void ZySslEchoClient::onSslErrors(const QList<QSslError> &errors)
{
    Q_UNUSED(errors)
    qCDebug(lcZyClient) << "ssl Error!";
    // A trust that was asked for outweighs a host that takes any certificate.
    if (!m_certificateCheck->trust().isRestricted())
        m_webSocket.ignoreSslErrors();
}
