// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Replies of a printer to the client, which has just asked to send a file.
//
// Each line of an input is a reply; "!cancel", "!close" and "!send" are what the host does
// meanwhile. They are handed over one after the other by the event loop, so inside the send loop
// once a reply has started it. The file's key is 78563412.

#include "fuzztarget.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebSocket>
#include <QWebSocketServer>

#include <zysslechoclient.h>

namespace
{

constexpr int modelSize = 1024 * 1024 + 100; // two chunks
constexpr int patience = 20000; // ms

/// Accepts every connection and reads what comes.
class SilentPrinter
{
public:
    SilentPrinter()
        : m_server(QStringLiteral("printer"), QWebSocketServer::NonSecureMode),
          m_model(m_dir.filePath(QStringLiteral("model")))
    {
        QObject::connect(&m_server, &QWebSocketServer::newConnection, &m_server, [this] {
            QWebSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
        });
        fuzzing::require(m_server.listen(QHostAddress::LocalHost), "no printer to connect to");
        QByteArray content(modelSize, '\0');
        content.replace(modelSize - 4, 4, "\x12\x34\x56\x78");
        QFile file(m_model);
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    QUrl url() const { return m_server.serverUrl(); }
    QString model() const { return m_model; }

private:
    QTemporaryDir m_dir;
    QWebSocketServer m_server;
    QString m_model;
};

void act(ZySslEchoClient &client, const QByteArray &line, const QString &model)
{
    if (line == "!cancel")
        client.cancel();
    else if (line == "!close")
        client.close();
    else if (line == "!send")
        client.sendFile(model, QStringLiteral("model"));
    else
        QMetaObject::invokeMethod(&client, "onTextMessageReceived", Qt::DirectConnection,
                                  Q_ARG(QString, QString::fromUtf8(line)));
}

/// Hands over line after line from the event loop, and closes the client after the last.
class Script
{
public:
    Script(ZySslEchoClient &client, const QList<QByteArray> &lines, const QString &model)
        : m_client(client), m_lines(lines), m_model(model)
    {
        scheduleStep();
    }

    const bool &isOver() const { return m_isOver; }

private:
    void scheduleStep()
    {
        QTimer::singleShot(0, &m_context, [this] { step(); });
    }

    void step()
    {
        if (m_lines.isEmpty()) {
            m_isOver = true;
            m_client.close();
            return;
        }
        scheduleStep(); // before, since this one may go into a send loop that waits for it
        act(m_client, m_lines.takeFirst(), m_model);
    }

    ZySslEchoClient &m_client;
    QList<QByteArray> m_lines;
    QString m_model;
    QObject m_context;
    bool m_isOver = false;
};

void waitFor(const bool &isSo, const char *what)
{
    QElapsedTimer waited;
    waited.start();
    while (!isSo) {
        fuzzing::require(waited.elapsed() < patience, what);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const SilentPrinter printer;
    ZySslEchoClient client(printer.url());
    bool isConnected = false;
    QObject::connect(&client, &ZySslEchoClient::connected, &client, [&] { isConnected = true; });
    waitFor(isConnected, "the client does not connect");
    client.sendFile(printer.model(), QStringLiteral("model"));

    const QByteArray input = fuzzing::bytesOf(data, size);
    Script script(client, input.split('\n'), printer.model());
    waitFor(script.isOver(), "the script does not end");
    return 0;
}
