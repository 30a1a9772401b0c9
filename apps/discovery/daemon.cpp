// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection to the Avahi daemon, made anew whenever it is lost.

#include "daemon.h"

#include "qtpoll.h"

#include <QPointer>

#include <csignal>
#include <utility>

#include <avahi-client/client.h>
#include <avahi-common/error.h>

namespace zydiscovery
{

namespace
{

constexpr int retryPause = 2000; // ms

} // namespace

Daemon::Daemon(QObject *parent) : QObject(parent)
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &Daemon::connectToIt);
    m_retry.start(0); // whoever made it has to connect its signals first
}

Daemon::~Daemon()
{
    if (m_client != nullptr)
        avahi_client_free(m_client);
}

QString Daemon::errorText() const
{
    return QStringLiteral("the Avahi daemon says: ")
        + QString::fromUtf8(avahi_strerror(avahi_client_errno(m_client)));
}

void Daemon::connectToIt()
{
    const auto onState = [](AvahiClient *client, AvahiClientState state, void *self) {
        // The first call comes before the client is known, and none may free it.
        auto *daemon = static_cast<Daemon *>(self);
        const auto review = [daemon, client, state] {
            if (client == daemon->m_client)
                daemon->review(state);
        };
        QMetaObject::invokeMethod(daemon, review, Qt::QueuedConnection);
    };
    // libdbus ignores SIGPIPE from its first connection on, though it does not depend on that; a
    // program whose output is a closed pipe does.
    struct sigaction before {
    };
    sigaction(SIGPIPE, nullptr, &before);
    m_client = avahi_client_new(qtPoll(), AVAHI_CLIENT_NO_FAIL, onState, this, nullptr);
    sigaction(SIGPIPE, &before, nullptr);
    if (m_client == nullptr)
        giveUp(QStringLiteral("the system's D-Bus does not answer"));
}

void Daemon::review(int state)
{
    switch (state) {
    case AVAHI_CLIENT_S_RUNNING:
        m_isLost = false;
        Q_EMIT running();
        break;
    case AVAHI_CLIENT_CONNECTING:
        lose(QStringLiteral("no Avahi daemon answers"));
        break;
    case AVAHI_CLIENT_FAILURE:
        giveUp(avahi_client_errno(m_client) == AVAHI_ERR_DISCONNECTED
                   ? QStringLiteral("the Avahi daemon has ended")
                   : errorText());
        break;
    default:
        break; // the host is getting a name; running again then
    }
}

void Daemon::giveUp(const QString &why)
{
    const QPointer<Daemon> self(this);
    lose(why);
    if (!self)
        return;
    if (m_client != nullptr)
        avahi_client_free(std::exchange(m_client, nullptr));
    m_retry.start(retryPause);
}

void Daemon::lose(const QString &why)
{
    if (!std::exchange(m_isLost, true))
        Q_EMIT lost(why);
}

} // namespace zydiscovery
