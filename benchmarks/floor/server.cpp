// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's end in bare Qt: receives files and answers GET_PRINT_STATUS, and nothing else.

#include "reception.h"
#include "servermain.h"
#include "statusvalues.h"
#include "wire.h"

#include <QCoreApplication>
#include <QWebSocket>
#include <QWebSocketServer>

#include <utility>

namespace
{

QJsonObject statusReply()
{
    namespace status = zybench::status;
    return {
        {QStringLiteral("cmd"), QStringLiteral("GET_PRINT_STATUS")},
        {QStringLiteral("printStatus"), QStringLiteral("PRINT_PROCESSING")},
        {QStringLiteral("filename"), status::filename},
        {QStringLiteral("sliceLayerCount"), status::sliceLayerCount},
        {QStringLiteral("curSliceLayer"), status::curSliceLayer},
        {QStringLiteral("printRemainTime"), status::printRemainTime},
        {QStringLiteral("initExposure"), status::initExposure},
        {QStringLiteral("delayLight"), status::delayLight},
        {QStringLiteral("printExposure"), status::printExposure},
        {QStringLiteral("printHeight"), status::printHeight},
        {QStringLiteral("eleSpeed"), status::eleSpeed},
        {QStringLiteral("bottomExposureNum"), status::bottomExposureNum},
        {QStringLiteral("layerThickness"), status::layerThickness},
        {QStringLiteral("resin"), status::resin},
    };
}

class FloorServer
{
public:
    explicit FloorServer(const zybench::ServerOptions &options)
        : m_server(QString(), QWebSocketServer::NonSecureMode), m_reception(options.directory)
    {
        QObject::connect(&m_server, &QWebSocketServer::newConnection, &m_server,
                         [this] { accept(m_server.nextPendingConnection()); });
        if (m_server.listen(QHostAddress::Any, options.port))
            floorbench::setLowDelay(m_server);
    }

    ~FloorServer()
    {
        for (QWebSocket *socket : std::as_const(m_sockets))
            socket->disconnect(&m_server);
        qDeleteAll(m_sockets);
    }

    quint16 port() const { return m_server.serverPort(); }

private:
    Q_DISABLE_COPY(FloorServer)

    void accept(QWebSocket *socket)
    {
        m_sockets.append(socket);
        QObject::connect(socket, &QWebSocket::textMessageReceived, &m_server,
                         [this, socket](const QString &text) { onText(*socket, text); });
        QObject::connect(socket, &QWebSocket::binaryMessageReceived, &m_server,
                         [this, socket](const QByteArray &payload) { onData(*socket, payload); });
        QObject::connect(socket, &QWebSocket::disconnected, &m_server, [this, socket] {
            m_sockets.removeOne(socket);
            socket->deleteLater();
        });
    }

    void onText(QWebSocket &socket, const QString &text)
    {
        const QJsonObject request = floorbench::parse(text);
        const QString command = request.value(QLatin1String("cmd")).toString();
        if (command == QLatin1String("GET_PRINT_STATUS"))
            socket.sendTextMessage(floorbench::text(statusReply()));
        else if (command == QLatin1String("START_FILE"))
            socket.sendTextMessage(floorbench::text(m_reception.start(request)));
    }

    void onData(QWebSocket &socket, const QByteArray &payload)
    {
        socket.sendTextMessage(floorbench::text(m_reception.write(payload)));
        if (m_reception.isComplete())
            socket.sendTextMessage(floorbench::text(m_reception.finish()));
    }

    QWebSocketServer m_server;
    QList<QWebSocket *> m_sockets;
    floorbench::Reception m_reception;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const FloorServer server(zybench::serverOptions(app));
    return zybench::serve(app, server.port());
}
