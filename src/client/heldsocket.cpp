// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's socket, held so that slots may do as they like while Qt is inside it.

#include "heldsocket.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>

#include <utility>

namespace zyws
{

struct HeldSocket::State {
    QWebSocket *const socket = new QWebSocket(QString(), QWebSocketProtocol::Version13);
    int emissions = 0;
    int occupations = 0; ///< frame reader and close(), on the stack
    bool isReleased = false;
    std::function<void()> whenIdle;
    QVector<QPointer<QTcpSocket>> replaced;
};

/// Stands around Qt's frame reader. Qt 5 runs it in an event posted to the socket, Qt 6 within the
/// system's notice of data to read.
class HeldSocket::ReaderFilter : public QObject
{
public:
    explicit ReaderFilter(const std::shared_ptr<State> &state)
        : QObject(state->socket), m_state(state)
    {
    }

    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        if (event->type() != (QT_VERSION_MAJOR < 6 ? QEvent::MetaCall : QEvent::SockAct))
            return false;
        occupy(m_state, [receiver, event] { receiver->event(event); });
        return true;
    }

    /// Stands around the notices for @p tcp as well, which exist once it is connected.
    void watch(QTcpSocket *tcp)
    {
        const auto filterNotices = [this, tcp] {
            const auto notices = tcp->findChildren<QSocketNotifier *>();
            for (QSocketNotifier *notice : notices)
                notice->installEventFilter(this);
        };
        filterNotices();
        connect(tcp, &QTcpSocket::connected, this, filterNotices);
    }

private:
    std::shared_ptr<State> m_state;
};

HeldSocket::Emission::Emission(std::shared_ptr<State> state) : m_state(std::move(state))
{
    ++m_state->emissions;
}

HeldSocket::Emission::~Emission()
{
    if (--m_state->emissions > 0)
        return;
    const auto replaced = std::exchange(m_state->replaced, {});
    for (const QPointer<QTcpSocket> &tcp : replaced) {
        if (tcp)
            tcp->deleteLater();
    }
    if (m_state->isReleased)
        m_state->socket->deleteLater();
}

HeldSocket::HeldSocket() : m_state(std::make_shared<State>())
{
    m_filter = new ReaderFilter(m_state);
    m_state->socket->installEventFilter(m_filter);
}

HeldSocket::~HeldSocket()
{
    m_state->isReleased = true;
    m_state->whenIdle = nullptr;
    if (m_state->emissions == 0)
        delete m_state->socket;
}

QWebSocket &HeldSocket::socket() const
{
    return *m_state->socket;
}

void HeldSocket::open(const QUrl &url)
{
    const auto before = socket().findChildren<QTcpSocket *>();
    socket().open(url);
    const auto sockets = socket().findChildren<QTcpSocket *>();
    for (QTcpSocket *tcp : sockets) {
        if (!before.contains(tcp))
            m_filter->watch(tcp);
    }
    if (m_state->emissions == 0)
        return;
    // Qt has asked for their deferred deletion, which a nested event loop would carry out.
    for (QTcpSocket *tcp : before) {
        QCoreApplication::removePostedEvents(tcp, QEvent::DeferredDelete);
        m_state->replaced.append(tcp);
    }
}

void HeldSocket::close()
{
    occupy(m_state, [socket = m_state->socket] {
        socket->close(QWebSocketProtocol::CloseCodeNormal, QString());
    });
}

void HeldSocket::whenIdle(std::function<void()> action)
{
    if (m_state->occupations == 0)
        action();
    else
        m_state->whenIdle = std::move(action);
}

void HeldSocket::outsideReader(const std::function<void()> &emission)
{
    const auto state = m_state; // the owner may be gone afterwards
    const int occupations = std::exchange(state->occupations, 0);
    emission();
    state->occupations = occupations;
}

/// @p state by value: the owner may be gone when @p work or what waited for its end returns.
void HeldSocket::occupy(std::shared_ptr<State> state, const std::function<void()> &work)
{
    const Emission emission(state);
    ++state->occupations;
    work();
    if (--state->occupations > 0)
        return;
    if (const auto action = std::exchange(state->whenIdle, nullptr))
        action();
}

} // namespace zyws
