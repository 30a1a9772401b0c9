// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sending a file when something is wrong: the local file, the reply, the connection.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QFile>
#include <QTimer>

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestSendingFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsChunksAsTheyAreWhenNothingIsSaidAboutCompression_data();
    void sendsChunksAsTheyAreWhenNothingIsSaidAboutCompression();
    void sendsNothingOfAnEmptyFile();
    void aSecondFileDuringATransferIsRefusedUnseen();
    void theLatestFileOwnsItsKey();
    void takesAFailedWriteForAnAcknowledgement();

    void reportsAFileThatCannotBeRead_data();
    void reportsAFileThatCannotBeRead();
    void startsNoTransferAfterAnUnknownKey();
    void startsNoTransferAfterAFileHasVanished();
    void reportsARefusalAndGoesOn_data();
    void reportsARefusalAndGoesOn();
    void waitsWithoutAConnectionUntilClosed();
    void resumesAfterADroppedConnection();
};

namespace
{

/// Has the client announce @p path; the printer's record of it.
QJsonObject announce(Session &session, const QString &path)
{
    const auto before = session.printer.texts().size();
    session.client.sendFile(path, "stored.zydlp"_s);
    zytest::waitUntil([&] { return session.printer.texts().size() > before; });
    return zytest::objectIn(session.printer.texts().constLast());
}

QString keyIn(const QJsonObject &request)
{
    return request.value("key"_s).toString();
}

QString passedOn(const QJsonObject &reply)
{
    return QStringLiteral("jsonMessageReceived(%1)").arg(zytest::compactText(reply));
}

} // namespace

void TestSendingFailures::sendsChunksAsTheyAreWhenNothingIsSaidAboutCompression_data()
{
    QTest::addColumn<QJsonValue>("compress");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("a string") << QJsonValue("true"_s);
    QTest::newRow("a number") << QJsonValue(1);
}

void TestSendingFailures::sendsChunksAsTheyAreWhenNothingIsSaidAboutCompression()
{
    QFETCH(QJsonValue, compress);
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    QJsonObject reply = zytest::startFileReply(announce(session, path));
    reply.insert("compress"_s, compress); // undefined removes the key

    session.printer.send(reply);
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
            [&] { session.printer.send(zytest::startDataReply("k"_s, 10, 10)); });

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(session.printer.chunks(), QByteArrayList{"0123456789"});
}

void TestSendingFailures::sendsNothingOfAnEmptyFile()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();

    session.client.sendFile(session.writeFile("empty.zydlp"_s, {}), "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(session.printer.texts(),
             QStringList{R"({"cmd":"START_FILE","filename":"m","key":"0","offset":"0",)"
                         R"("size":"0"})"_s});
    QCOMPARE(session.printer.chunks().size(), 0);
    QCOMPARE(session.trace.lines().size(), 1);
    QCOMPARE(session.logLines(), (QStringList{"start send"_s, "_totalBytes =  0"_s, "send end"_s}));
}

void TestSendingFailures::aSecondFileDuringATransferIsRefusedUnseen()
{
    Session session;
    QVERIFY(session.open());
    const QString first = session.writeFile("first.zydlp"_s, "first first first");
    const QString second = session.writeFile("second.zydlp"_s, "second second");
    const QString key = keyIn(announce(session, first));
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
            [&] { session.client.sendFile(second, "second.zydlp"_s); });
    connect(&session.printer, &ScriptedPrinter::textReceived, &session.client, [&] {
        // "version" is noticed in every reply, dropped or not.
        session.printer.sendText(
            R"({"cmd":"START_FILE","compress":true,"errorcode":1,"version":"1","wifistate":3})"_s);
        session.printer.send(zytest::startDataReply(key, 17, 17));
        session.printer.send(zytest::checkDataReply(key, 1));
    });

    session.printer.send(
        zytest::startFileReply(zytest::objectIn(session.printer.texts().constFirst())));
    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);

    QCOMPARE(session.printer.messages("START_FILE"_s).size(), 2);
    QCOMPARE(session.printer.chunks().size(), 1);
    QCOMPARE(session.trace.count("transError"_s), 0);
    QCOMPARE(session.trace.lines().mid(0, 2),
             (QStringList{"checkVersion()"_s,
                          QStringLiteral("fileTransProgress(%1, 17, 17)").arg(first)}));
    QCOMPARE(session.trace.count("jsonMessageReceived"_s), 3);
    // The second file's key is known all the same.
    session.trace.clear();
    session.printer.send(
        zytest::checkDataReply(keyIn(session.printer.messages("START_FILE"_s).constLast()), 2));
    WAIT_COMPARE(session.trace.of("finish"_s),
                 QStringList{QStringLiteral("finish(%1, 2)").arg(second)});
}

void TestSendingFailures::theLatestFileOwnsItsKey()
{
    Session session;
    QVERIFY(session.open());
    const QString first = session.writeFile("first.zydlp"_s, "first, same end");
    const QString second = session.writeFile("second.zydlp"_s, "second, same end");
    const QString key = keyIn(announce(session, first));
    QCOMPARE(keyIn(announce(session, second)), key);

    session.printer.send(zytest::startDataReply(key, 2, 1));

    WAIT_COMPARE(session.trace.of("fileTransProgress"_s),
                 QStringList{QStringLiteral("fileTransProgress(%1, 2, 1)").arg(second)});
}

void TestSendingFailures::takesAFailedWriteForAnAcknowledgement()
{
    Session session;
    QVERIFY(session.open());
    const QString path
        = session.writeFile("local.zydlp"_s, zytest::compressibleBytes(zytest::chunkBytes + 1));
    const QJsonObject request = announce(session, path);
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client, [&] {
        QJsonObject failed = zytest::startDataReply(keyIn(request), 1048577, 0);
        failed.insert("errorcode"_s, 2);
        session.printer.send(failed);
    });

    session.printer.send(zytest::startFileReply(request));

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(session.printer.chunks().size(), 2);
    QCOMPARE(session.trace.of("fileTransProgress"_s),
             (QStringList{QStringLiteral("fileTransProgress(%1, 1048577, 0)").arg(path),
                          QStringLiteral("fileTransProgress(%1, 1048577, 0)").arg(path)}));
    QCOMPARE(session.trace.count("transError"_s), 0);
}

void TestSendingFailures::reportsAFileThatCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing.zydlp"_s;
    QTest::newRow("a directory") << "."_s;
    QTest::newRow("in a missing directory") << "missing/model.zydlp"_s;
}

void TestSendingFailures::reportsAFileThatCannotBeRead()
{
    QFETCH(QString, name);
    Session session;
    QVERIFY(session.open());
    const QString path = session.dir.filePath(name);

    session.client.sendFile(path, "m"_s);

    QCOMPARE(session.trace.lines(), QStringList{"transError(-1, )"_s});
    QFile file(path);
    QVERIFY(!session.client.sendFileStart(file, "m"_s));
    QCOMPARE(session.client.getFileKey(file), QString());
    QCOMPARE(session.trace.lines().size(), 1);
    session.client.versionCheckCmd();
    WAIT_COMPARE(session.printer.texts(), QStringList{R"({"cmd":"VERSION_CHECK"})"_s});
    QCOMPARE(session.logLines(), QStringList());
}

void TestSendingFailures::startsNoTransferAfterAnUnknownKey()
{
    Session session;
    QVERIFY(session.open());
    const QJsonObject unknown{{"cmd"_s, "START_FILE"_s}, {"key"_s, "dead"_s}};

    session.printer.send(unknown);
    WAIT_COMPARE(session.trace.lines(), (QStringList{"transError(-2, )"_s, passedOn(unknown)}));
    QCOMPARE(session.logLines(), QStringList{R"(Can't open file for read "" "dead")"_s});

    // Requests still go out, replies to START_FILE are dropped, all others are handled.
    session.trace.clear();
    session.printer.answerTransfers();
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    const QString key = keyIn(announce(session, path));
    session.printer.send(unknown);
    session.printer.sendText(R"({"cmd":"START_FILE","errorcode":1})"_s);
    session.printer.send(zytest::startDataReply(key, 10, 0));
    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{QStringLiteral("fileTransProgress(%1, 10, 0)").arg(path),
                              passedOn(zytest::startDataReply(key, 10, 0))}));
    QCOMPARE(session.printer.chunks().size(), 0);
    QCOMPARE(session.logLines().size(), 1);
}

void TestSendingFailures::startsNoTransferAfterAFileHasVanished()
{
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    const QJsonObject request = announce(session, path);
    QVERIFY(QFile::remove(path));
    const QJsonObject reply = zytest::startFileReply(request);

    session.printer.send(reply);
    WAIT_COMPARE(session.trace.lines(), (QStringList{"transError(-2, )"_s, passedOn(reply)}));
    QCOMPARE(
        session.logLines(),
        QStringList{
            QStringLiteral("Can't open file for read \"%1\" \"%2\"").arg(path, keyIn(request))});

    session.trace.clear();
    session.writeFile("local.zydlp"_s, "0123456789");
    session.printer.send(reply);
    session.printer.sendText("{}"_s);
    WAIT_COMPARE(session.trace.lines(), QStringList{"jsonMessageReceived({})"_s});
    QCOMPARE(session.printer.chunks().size(), 0);
}

void TestSendingFailures::reportsARefusalAndGoesOn_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("busy") << 1;
    QTest::newRow("no temporary file") << 2;
    QTest::newRow("token rejected") << 4;
    QTest::newRow("never sent by our printer") << -7;
}

void TestSendingFailures::reportsARefusalAndGoesOn()
{
    QFETCH(int, code);
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    announce(session, path);
    const QJsonObject refusal{{"cmd"_s, "START_FILE"_s}, {"errorcode"_s, code}};

    session.printer.send(refusal);
    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{QStringLiteral("transError(%1, )").arg(code), passedOn(refusal)}));
    QCOMPARE(session.printer.chunks().size(), 0);
    QCOMPARE(session.logLines(), QStringList());

    session.trace.clear();
    session.printer.answerTransfers();
    session.client.sendFile(path, "m"_s);
    WAIT_COMPARE(session.trace.of("finish"_s),
                 QStringList{QStringLiteral("finish(%1, 1)").arg(path)});
}

void TestSendingFailures::waitsWithoutAConnectionUntilClosed()
{
    Session session;
    QVERIFY(session.open());
    TransferRules silent;
    silent.acknowledges = false;
    session.printer.answerTransfers(silent);
    connect(&session.printer, &ScriptedPrinter::chunkReceived, this,
            [&] { session.printer.drop(); });
    bool wasWaiting = false;
    connect(&session.client, &ZySslEchoClient::disconnected, this, [&] {
        QTimer::singleShot(0, &session.client, [&] {
            wasWaiting = !session.hasEnded() && !session.logLines().contains("send end"_s);
            session.client.close();
        });
    });

    session.client.sendFile(session.writeFile("local.zydlp"_s, "0123456789"), "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(wasWaiting);
    // Nothing was connected any more, so close() has nothing to report.
    QCOMPARE(session.trace.names(), (QStringList{"disconnected"_s, "jsonMessageReceived"_s}));
    QCOMPARE(session.logLines().constLast(), "send end"_s);
}

void TestSendingFailures::resumesAfterADroppedConnection()
{
    const QByteArray contents = zytest::compressibleBytes(2 * zytest::chunkBytes + 11);
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, contents);
    TransferRules rules;
    rules.acknowledges = false;
    session.printer.answerTransfers(rules);
    const auto dropping = connect(&session.printer, &ScriptedPrinter::chunkReceived, this,
                                  [&] { session.printer.drop(); });
    connect(&session.client, &ZySslEchoClient::disconnected, this, [&] { session.client.close(); });
    session.client.sendFile(path, "m"_s);
    WAIT_VERIFY(session.hasEnded());
    disconnect(dropping);

    session.trace.clear();
    rules = {};
    rules.offset = zytest::chunkBytes;
    session.printer.answerTransfers(rules);
    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.printer.connectionCount(), 2);
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    session.client.sendFile(path, "m"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QByteArray arrived;
    for (const QByteArray &payload : session.printer.chunks())
        arrived += qUncompress(payload);
    QVERIFY(arrived == contents);
}

ZY_TEST(TestSendingFailures)

#include "tst_sendingfailures.moc"
