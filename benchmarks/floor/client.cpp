// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The slicer's end in bare Qt: sends one file, one chunk for each acknowledgement.

#include "clientoptions.h"
#include "transferclock.h"
#include "wire.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QWebSocket>
#include <QtEndian>

namespace
{

/// The file's last four bytes, by which the printer knows an interrupted transfer again.
QString keyOf(QFile &file)
{
    constexpr qint64 keySize = 4;
    file.seek(file.size() - keySize);
    const auto number = qFromLittleEndian<qint32>(file.read(keySize).constData());
    return QString::number(static_cast<quint64>(static_cast<qint64>(number)), 16);
}

class FloorClient
{
public:
    explicit FloorClient(const zybench::ClientOptions &options)
        : m_file(options.file), m_chunk(floorbench::chunkSize, Qt::Uninitialized)
    {
        QObject::connect(&m_socket, &QWebSocket::connected, &m_socket, [this] { start(); });
        QObject::connect(&m_socket, &QWebSocket::disconnected, &m_socket,
                         [] { QCoreApplication::exit(1); });
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
                         [this](const QString &text) { onReply(floorbench::parse(text)); });
        m_socket.open(options.url);
    }

    ~FloorClient() { m_socket.disconnect(&m_socket); }

private:
    Q_DISABLE_COPY(FloorClient)

    void start()
    {
        floorbench::setLowDelay(m_socket);
        m_clock.start();
        if (!m_file.open(QIODevice::ReadOnly) || m_file.size() < 4) {
            QCoreApplication::exit(1);
            return;
        }
        const QString key = keyOf(m_file);
        m_file.close();
        send({
            {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
            {QStringLiteral("filename"), QFileInfo(m_file).fileName()},
            {QStringLiteral("size"), QString::number(m_file.size())},
            {QStringLiteral("offset"), QStringLiteral("0")},
            {QStringLiteral("key"), key},
        });
    }

    void onReply(const QJsonObject &reply)
    {
        const QString command = reply.value(QLatin1String("cmd")).toString();
        if (command == QLatin1String("START_DATA")) {
            sendChunk();
        } else if (command == QLatin1String("START_FILE")) {
            if (reply.value(QLatin1String("errorcode")).toInt() != 0
                || !m_file.open(QIODevice::ReadOnly)) {
                QCoreApplication::exit(1);
                return;
            }
            m_isCompressed = reply.value(QLatin1String("compress")).toBool();
            m_file.seek(reply.value(QLatin1String("offset")).toString().toLongLong());
            sendChunk();
        } else if (command == QLatin1String("CHECK_DATA")) {
            m_clock.report();
            const bool isRight = reply.value(QLatin1String("checkstate")).toInt() == 1;
            QCoreApplication::exit(isRight ? 0 : 1);
        }
    }

    void sendChunk()
    {
        const qint64 count = m_file.read(m_chunk.data(), m_chunk.size());
        if (count < 1)
            return;
        const QByteArray chunk
            = QByteArray::fromRawData(m_chunk.constData(), static_cast<int>(count));
        m_socket.sendBinaryMessage(m_isCompressed ? qCompress(chunk) : chunk);
    }

    void send(const QJsonObject &message) { m_socket.sendTextMessage(floorbench::text(message)); }

    QWebSocket m_socket;
    QFile m_file;
    QByteArray m_chunk;
    bool m_isCompressed = false;
    zybench::TransferClock m_clock;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const FloorClient client(zybench::clientOptions(app));
    return QCoreApplication::exec();
}
