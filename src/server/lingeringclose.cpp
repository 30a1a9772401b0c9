// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Lets a peer that is turned away read why.

#include "lingeringclose.h"

#include <QPointer>
#include <QSocketNotifier>
#include <QTcpSocket>
#include <QTimer>
#include <QWebSocket>

#include <array>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace zyws
{

#ifdef Q_OS_UNIX
namespace
{

const QString drainName = QStringLiteral("drain");
/// More at a time would cost more descriptors than courtesy is worth.
constexpr int mostDrains = 64;

/// Reads and drops what the peer still sends, until it ends the connection or has had its time.
class Drain : public QObject // clazy:exclude=missing-qobject-macro
{
public:
    Drain(int descriptor, QObject *parent)
        : QObject(parent), m_descriptor(descriptor), m_notifier(descriptor, QSocketNotifier::Read)
    {
        constexpr int patience = 2000; // ms
        setObjectName(drainName);
        ::shutdown(m_descriptor, SHUT_WR);
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] { read(); });
        QTimer::singleShot(patience, this, [this] { end(); });
    }
    ~Drain() override
    {
        m_notifier.setEnabled(false);
        ::close(m_descriptor);
    }

private:
    void read()
    {
        std::array<char, 65536> dropped;
        if (::recv(m_descriptor, dropped.data(), dropped.size(), MSG_DONTWAIT) <= 0)
            end();
    }
    void end()
    {
        m_notifier.setEnabled(false);
        deleteLater();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
};

} // namespace

void lingerOnClose(QWebSocket *socket, QTcpSocket *tcp)
{
    QObject::connect(socket, &QWebSocket::aboutToClose, tcp, [socket, tcp] {
        const auto code = socket->closeCode();
        if (code != QWebSocketProtocol::CloseCodeTooMuchData
            && code != QWebSocketProtocol::CloseCodePolicyViolated)
            return;
        if (tcp->parent()->findChildren<QObject *>(drainName, Qt::FindDirectChildrenOnly).size()
            >= mostDrains)
            return;
        const int descriptor = ::dup(static_cast<int>(tcp->socketDescriptor()));
        if (descriptor >= 0)
            new Drain(descriptor, tcp->parent());
    });
}
#else
void lingerOnClose(QWebSocket *, QTcpSocket *) { }
#endif

} // namespace zyws
