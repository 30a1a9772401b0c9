// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Thousands of malformed messages each way, through real sockets, to real processes.

#include "faultprocess.h"
#include "malformed.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "rawprinter.h"
#include "rawtcppeer.h"
#include "rounds.h"
#include "scriptedprinter.h"
#include "testprogram.h"
#include "vocabulary.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <sys/socket.h>

using namespace zytest;

namespace
{

// Ten thousand each way.
constexpr int messageCount = 9000;
constexpr int rawConnectionCount = 1000;
constexpr int burst = 100;

QByteArray bytesOf(QLatin1String text)
{
    return {text.data(), text.size()};
}

/// A valid one of each request, and two that get a reception going.
QByteArrayList requests()
{
    QByteArrayList texts{
        R"({"cmd":"START_FILE","filename":"part.bin","size":"5000","offset":"0","key":"78563412"})",
        R"({"cmd":"START_FILE","filename":"b","size":"1000000","offset":"0","key":"0","token":"t"})",
    };
    for (const zyws::Message &message : zyws::messages) {
        if (!message.request.isEmpty())
            texts += bytesOf(message.request);
    }
    return texts;
}

/// A valid one of each reply, all about the same file, and other forms of some.
QByteArrayList replies()
{
    QByteArrayList texts{
        R"({"cmd":"START_FILE","compress":false,"filename":"p","size":"5000","offset":"70",)"
        R"("key":"78563412"})",
        R"({"cmd":"START_FILE","errorcode":1,"compress":true,"wifistate":3})",
        R"({"cmd":"START_DATA","errorcode":2,"key":"78563412","size":"5000","received":"-1"})",
        R"({"cmd":"PRINT_WORKING_LIFE","life":"9"})",
    };
    for (const zyws::Message &message : zyws::messages) {
        if (!message.reply.isEmpty())
            texts += bytesOf(message.reply);
    }
    return texts;
}

/// Something that no malformed message holds.
QString markOf(int burstNumber)
{
    return QStringLiteral("behind burst %1").arg(burstNumber);
}

/// A proper message that carries a mark; the printer puts the token where the resin's name belongs.
QJsonObject statusMessage(const char *key, int burstNumber)
{
    return {{QStringLiteral("cmd"), QStringLiteral("GET_PRINT_STATUS")},
            {QLatin1String(key), markOf(burstNumber)}};
}

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void printerSurvivesMalformedMessages();
    void printerSurvivesMalformedFrames();
    void slicerSurvivesMalformedMessages();
    void slicerSurvivesMalformedFrames();

private:
    void verifyNormalTransfer(HostProcess &host, const QTemporaryDir &directory);

    QTemporaryDir m_local;
    QString m_file;
};

void TestHostile::initTestCase()
{
    // The last four bytes make the key that the hostile replies name.
    m_file = writeFile(m_local.filePath(QStringLiteral("local.bin")),
                       zytest::randomBytes(4996) + QByteArray("\x12\x34\x56\x78"));
}

/// Of a file with a key of its own: one that a hostile peer has named could be resumed.
void TestHostile::verifyNormalTransfer(HostProcess &host, const QTemporaryDir &directory)
{
    const QByteArray contents = zytest::randomBytes(5000) + QByteArray("\x01\x02\x03\x04");
    const QString file = writeFile(m_local.filePath(QStringLiteral("normal.bin")), contents);
    SenderProcess sender(host.url(), file);
    QCOMPARE(sender.waitForEnding(), QStringLiteral("Sent"));
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == contents);
    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

void TestHostile::printerSurvivesMalformedMessages()
{
    const QTemporaryDir directory;
    HostProcess host(directory.path());
    QVERIFY(host.port() != 0);
    Malformed malformed(1, requests());
    std::unique_ptr<RawPeer> peer;
    for (int sent = 0; sent < rounds(messageCount); sent += burst) {
        if (!peer || !peer->isConnected())
            peer = std::make_unique<RawPeer>(host.port());
        for (int i = 0; i < burst; ++i) {
            if (i % 4 == 3)
                peer->sendBinary(malformed.binary());
            else
                peer->sendText(malformed.text());
        }
        // Nothing of it closes the connection, and a proper command is answered afterwards.
        peer->send(statusMessage("token", sent));
        QVERIFY(waitUntil([&] {
            return !peer->texts().isEmpty() && peer->texts().last().contains(markOf(sent));
        }));
        if (sent % (10 * burst) == 0)
            peer.reset();
    }
    peer.reset();
    verifyNormalTransfer(host, directory);
}

void TestHostile::printerSurvivesMalformedFrames()
{
    const QTemporaryDir directory;
    HostProcess host(directory.path());
    QVERIFY(host.port() != 0);
    Malformed malformed(2, requests());
    for (int i = 0; i < rounds(rawConnectionCount); ++i) {
        RawTcpPeer peer(host.port());
        QVERIFY(peer.isConnected());
        peer.write(malformed.frames(true));
        if (i % 2) {
            peer.reset();
            continue;
        }
        // The printer ends the connection only when it has read everything, or enough.
        ::shutdown(static_cast<int>(peer.socket().socketDescriptor()), SHUT_WR);
        QVERIFY(waitUntil([&] { return peer.isEnded(); }));
    }
    verifyNormalTransfer(host, directory);
}

void TestHostile::slicerSurvivesMalformedMessages()
{
    ScriptedPrinter printer;
    ListenerProcess listener(printer.url().toString(), m_file);
    Malformed malformed(3, replies());
    for (int sent = 0; sent < rounds(messageCount); sent += burst) {
        QVERIFY(waitUntil([&] { return printer.peer() != nullptr; }));
        for (int i = 0; i < burst; ++i) {
            if (i % 10 == 9)
                printer.peer()->sendBinaryMessage(malformed.binary());
            else
                printer.sendText(malformed.text());
        }
        printer.send(statusMessage("resin", sent));
        QVERIFY(waitUntil([&] {
            const auto statuses = listener.events("status");
            return !statuses.isEmpty()
                && statuses.last().value(QLatin1String("resin")) == markOf(sent);
        }));
        // A client that has heard of an unknown key sends no more files on this connection.
        if (sent % (10 * burst) == 0)
            printer.drop();
    }
    QVERIFY(listener.quit());
    QCOMPARE(listener.exitCode(), 0);
}

void TestHostile::slicerSurvivesMalformedFrames()
{
    Malformed malformed(4, {});
    const QByteArray proper = QByteArrayLiteral("\x81\x0f{\"version\":\"1\"}");
    RawPrinter printer;
    printer.setAnswersPings(false);
    printer.setAnswersClose(false);
    printer.setGreeting(malformed.frames(false));
    const QSignalSpy opened(&printer, &RawPrinter::peerConnected);
    ListenerProcess listener(printer.url().toString(), m_file);
    const int count = rounds(rawConnectionCount);
    for (int i = 1; i <= count; ++i) {
        QVERIFY(waitUntil([&] { return opened.size() >= i; }));
        printer.setGreeting(i < count ? malformed.frames(false) : proper);
        printer.hangUp();
    }
    QVERIFY(listener.waitForEvents("checkVersion"));
    QVERIFY(listener.quit());
    QCOMPARE(listener.exitCode(), 0);
}

ZY_TEST(TestHostile)
#include "tst_hostile.moc"
