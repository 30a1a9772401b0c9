// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's end of the connection under a test's control, on a real WebSocket.

#include "scriptedprinter.h"

#include "emitlater.h"
#include "messagelog.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QTcpServer>
#include <QWebSocketServer>

namespace zytest
{

namespace
{

QString decimal(qint64 value)
{
    return QString::number(value);
}

} // namespace

QJsonObject startFileReply(const QJsonObject &request, const TransferRules &rules)
{
    QJsonObject reply{
        {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
        {QStringLiteral("compress"), rules.compress},
        {QStringLiteral("offset"), decimal(rules.offset)},
    };
    for (const auto &key :
         {QStringLiteral("filename"), QStringLiteral("size"), QStringLiteral("key")})
        reply.insert(key, request.value(key));
    if (rules.offset == 0)
        reply.insert(QStringLiteral("errorcode"), 0);
    if (rules.window != 0)
        reply.insert(QStringLiteral("window"), rules.window);
    return reply;
}

QJsonObject startDataReply(const QString &key, qint64 size, qint64 received)
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_DATA")},
        {QStringLiteral("key"), key},
        {QStringLiteral("errorcode"), 0},
        {QStringLiteral("size"), decimal(size)},
        {QStringLiteral("received"), decimal(received)},
    };
}

QJsonObject checkDataReply(const QString &key, int checkState)
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("CHECK_DATA")},
        {QStringLiteral("key"), key},
        {QStringLiteral("checkstate"), checkState},
    };
}

QJsonObject cancelFileReply()
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("CANCEL_FILE")},
        {QStringLiteral("errorcode"), 0},
    };
}

QString deadUrl()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("ws://127.0.0.1:%1").arg(server.serverPort());
}

QString compactText(const QJsonObject &message)
{
    return QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

QJsonObject objectIn(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

QJsonObject TransferAnswers::toStartFile(const QJsonObject &request)
{
    m_key = request.value(QStringLiteral("key")).toString();
    m_size = request.value(QStringLiteral("size")).toString().toLongLong();
    m_received = m_rules.offset;
    return startFileReply(request, m_rules);
}

QVector<QJsonObject> TransferAnswers::toChunk(const QByteArray &payload)
{
    if (!m_rules.acknowledges)
        return {};
    m_received += m_rules.compress ? qUncompress(payload).size() : payload.size();
    QVector<QJsonObject> replies{startDataReply(m_key, m_size, m_received)};
    if (m_received >= m_size)
        replies.append(checkDataReply(m_key, m_rules.checkState));
    return replies;
}

ScriptedPrinter::ScriptedPrinter(QObject *parent)
    : QObject(parent), m_server(new QWebSocketServer(QStringLiteral("Scripted printer"),
                                                     QWebSocketServer::NonSecureMode, this))
{
    connect(m_server, &QWebSocketServer::newConnection, this, &ScriptedPrinter::accept);
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("the scripted printer cannot listen");
}

ScriptedPrinter::~ScriptedPrinter()
{
    // A socket's destructor still emits disconnected().
    for (QWebSocket *socket : findChildren<QWebSocket *>())
        socket->disconnect(this);
}

QUrl ScriptedPrinter::url() const
{
    return m_server->serverUrl();
}

quint16 ScriptedPrinter::port() const
{
    return m_server->serverPort();
}

void ScriptedPrinter::stopListening()
{
    m_server->close();
}

QVector<QJsonObject> ScriptedPrinter::messages(const QString &command) const
{
    QVector<QJsonObject> found;
    for (const QString &text : m_texts) {
        const QJsonObject message = objectIn(text);
        if (message.value(QStringLiteral("cmd")).toString() == command)
            found.append(message);
    }
    return found;
}

QWebSocket &ScriptedPrinter::current() const
{
    if (!m_peer)
        qFatal("the scripted printer has no connection");
    return *m_peer;
}

void ScriptedPrinter::send(const QJsonObject &message)
{
    sendText(compactText(message));
}

void ScriptedPrinter::sendText(const QString &text)
{
    logMessage(Sender::Printer, Maker::Test, text);
    current().sendTextMessage(text);
}

void ScriptedPrinter::close(QWebSocketProtocol::CloseCode code)
{
    current().close(code);
}

void ScriptedPrinter::drop()
{
    current().abort();
}

void ScriptedPrinter::answerTransfers(const TransferRules &rules)
{
    m_answers.emplace(rules);
}

void ScriptedPrinter::accept()
{
    while (QWebSocket *socket = m_server->nextPendingConnection()) {
        socket->setParent(this);
        m_peer = socket;
        ++m_connectionCount;
        connect(socket, &QWebSocket::textMessageReceived, this, &ScriptedPrinter::recordText);
        connect(socket, &QWebSocket::binaryMessageReceived, this, &ScriptedPrinter::recordChunk);
        connect(socket, &QWebSocket::disconnected, this, [this, socket] {
            m_closeCodes.append(socket->closeCode());
            socket->deleteLater();
            if (m_peer == socket)
                m_peer.clear();
            emitLater(this, &ScriptedPrinter::peerDisconnected);
        });
        emitLater(this, &ScriptedPrinter::peerConnected);
    }
}

void ScriptedPrinter::recordText(const QString &text)
{
    logMessage(Sender::Slicer, Maker::Library, text);
    m_texts.append(text);
    if (m_answers && m_peer) {
        const QJsonObject request = objectIn(text);
        const QString command = request.value(QStringLiteral("cmd")).toString();
        if (command == QLatin1String("START_FILE"))
            send(m_answers->toStartFile(request));
        else if (command == QLatin1String("CANCEL_FILE"))
            send(cancelFileReply());
    }
    emitLater(this, &ScriptedPrinter::textReceived, text);
}

void ScriptedPrinter::recordChunk(const QByteArray &payload)
{
    if (m_keepsChunks)
        m_chunks.append(payload);
    if (m_answers && m_peer) {
        for (const QJsonObject &reply : m_answers->toChunk(payload))
            send(reply);
    }
    emitLater(this, &ScriptedPrinter::chunkReceived, payload);
}

} // namespace zytest
