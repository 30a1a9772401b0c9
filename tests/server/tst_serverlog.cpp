// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The server's log: the exact lines of a whole session, in order.

#include "logcapture.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "rawtcppeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QLoggingCategory>
#include <QSslError>
#include <QTest>

using namespace zytest;

namespace
{

const QString serverCategory = QStringLiteral("zywebsocket.server");

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

} // namespace

class TestServerLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsAnIdleSession();
    void tellsATransferAndItsResume();
    void tellsTheOriginOfAPeer();
    void tellsOfTlsErrors();
    void tellsOfEachConnectionWhenDestroyed();
    void tellsOfADisconnectThatNoConnectionHad();
    void writesDebugLinesOnly();
    void obeysTheUsersFilter();
};

void TestServerLog::tellsAnIdleSession()
{
    LogCapture log;
    {
        TestPrinter printer;
        RawTcpPeer peer(printer.port());
        peer.sendText("{\"cmd\":\"VERSION_CHECK\"}");
        QVERIFY(!peer.takeText().isNull());
        peer.reset();
        QVERIFY(printer.waitForConnections(0));
    }
    QCOMPARE(log.texts(serverCategory),
             lines({"hh", "SSL Echo Server listening on port 0", "server start ",
                    "Your new Client connected: \"\" \"\"", "strCmd: \"VERSION_CHECK\"",
                    "Client disconnected", "~"}));
}

void TestServerLog::tellsATransferAndItsResume()
{
    TestPrinter printer;
    writeFile(printer.path(QStringLiteral("old.bak")), "x");
    LogCapture log;
    for (int i = 0; i < 2; ++i) {
        RawPeer peer(printer.port());
        peer.send(startFile(QStringLiteral("a.txt"), 4));
        peer.sendChunk("ab");
        QVERIFY(peer.waitForReplies(2));
        QVERIFY(peer.close());
        QVERIFY(printer.waitForConnections(0));
    }
    const QString old = printer.dir() + QStringLiteral("/old.bak");
    QStringList expected
        = lines({"Your new Client connected: \"\" \"\"", "strCmd: \"START_FILE\""});
    expected += {old, QStringLiteral("wifi remove file:  \"%1\"").arg(old)};
    expected += lines({"Client disconnected", "Your new Client connected: \"\" \"\"",
                       "strCmd: \"START_FILE\"", "m_transFileSize 2 \"78563412\"",
                       "Client disconnected"});
    QCOMPARE(log.texts(serverCategory), expected);
}

void TestServerLog::tellsTheOriginOfAPeer()
{
    TestPrinter printer;
    LogCapture log;
    QWebSocket peer(QStringLiteral("http://slicer.example"));
    peer.open(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())));
    QVERIFY(printer.waitForConnections(1));
    QCOMPARE(log.texts(serverCategory),
             lines({"Your new Client connected: \"\" \"http://slicer.example\""}));
}

void TestServerLog::tellsOfTlsErrors()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    LogCapture log;
    server.onSslErrors({QSslError(QSslError::SelfSignedCertificate)});
    server.onSslErrors({});
    QCOMPARE(log.texts(), lines({"Ssl errors occurred", "Ssl errors occurred"}));
}

void TestServerLog::tellsOfEachConnectionWhenDestroyed()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer second(printer.port());
    second.send(startFile(QStringLiteral("a.txt"), 4));
    QVERIFY(second.waitForReplies(1));
    LogCapture log;
    printer.destroyServer();
    QCOMPARE(log.texts(serverCategory), lines({"~", "Client disconnected", "Client disconnected"}));
}

void TestServerLog::tellsOfADisconnectThatNoConnectionHad()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    LogCapture log;
    server.socketDisconnected();
    QCOMPARE(log.texts(), lines({"Client disconnected"}));
}

void TestServerLog::writesDebugLinesOnly()
{
    LogCapture log;
    {
        TestPrinter printer;
        RawPeer peer(printer.port());
        peer.sendText(QStringLiteral("no JSON"));
        peer.send(startFile(QStringLiteral("a.txt"), 4));
        QVERIFY(peer.waitForReplies(1));
    }
    QVERIFY(log.texts(serverCategory).size() > 5);
    for (const LogCapture::Line &line : log.lines()) {
        if (line.category == serverCategory)
            QCOMPARE(line.type, QtDebugMsg);
    }
}

void TestServerLog::obeysTheUsersFilter()
{
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.server.debug=false"));
    LogCapture log;
    {
        TestPrinter printer;
        RawPeer peer(printer.port());
        QVERIFY(peer.expectNothing());
    }
    QLoggingCategory::setFilterRules({});
    QCOMPARE(log.texts(serverCategory), QStringList());
}

ZY_TEST(TestServerLog)
#include "tst_serverlog.moc"
