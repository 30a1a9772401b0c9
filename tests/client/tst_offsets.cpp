// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Offsets that no honest printer sends: any defined behaviour will do, as long as it ends.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

using zytest::ScriptedPrinter;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestOffsets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void survivesAnyOffset_data();
    void survivesAnyOffset();
    void readsFromTheStartWhatIsNoOffset_data();
    void readsFromTheStartWhatIsNoOffset();
    void sendsNothingFromBeyondTheFile();
    void remembersTheOffsetOfTheLastTransfer();
};

namespace
{

const QByteArray contents = "0123456789";

/// Sends a file whose acceptance carries @p offset, and acknowledges whatever comes.
void transferFrom(Session &session, const QJsonValue &offset)
{
    const auto before = session.printer.texts().size();
    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);
    zytest::waitUntil([&] { return session.printer.texts().size() > before; });
    QJsonObject reply
        = zytest::startFileReply(zytest::objectIn(session.printer.texts().constLast()));
    reply.insert("compress"_s, false);
    reply.insert("offset"_s, offset);
    QObject::connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
                     [&] { session.printer.sendText(R"({"cmd":"START_DATA"})"_s); });
    session.printer.send(reply);
    zytest::waitUntil([&] { return session.hasEnded(); });
}

} // namespace

void TestOffsets::survivesAnyOffset_data()
{
    QTest::addColumn<QString>("offset");
    for (const char *offset : {"9223372036854775807", "9223372036854775806", "9223372036854775798",
                               "-9223372036854775808", "-9223372036854775807", "-1", "-10", "11",
                               "4294967296", "2147483648", "9223372036853727232"})
        QTest::newRow(offset) << QString::fromUtf8(offset);
}

void TestOffsets::survivesAnyOffset()
{
    QFETCH(QString, offset);
    Session session;
    QVERIFY(session.open());

    transferFrom(session, offset);

    QVERIFY(session.hasEnded());
    QCOMPARE(session.logLines().constLast(), "send end"_s);
    QCOMPARE(session.trace.count("transError"_s), 0);
    QVERIFY(session.printer.chunks().size() <= 1);
    // The client is as good as before.
    session.trace.clear();
    session.printer.disconnect(&session.client);
    session.printer.answerTransfers();
    session.client.sendFile(session.dir.filePath("local.zydlp"_s), "m"_s);
    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
}

void TestOffsets::readsFromTheStartWhatIsNoOffset_data()
{
    QTest::addColumn<QJsonValue>("offset");
    QTest::newRow("too large for 64 bits") << QJsonValue("9223372036854775808"_s);
    QTest::newRow("a word") << QJsonValue("five"_s);
    QTest::newRow("hexadecimal") << QJsonValue("0x5"_s);
    QTest::newRow("empty") << QJsonValue(QString());
    QTest::newRow("a number") << QJsonValue(5);
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
}

void TestOffsets::readsFromTheStartWhatIsNoOffset()
{
    QFETCH(QJsonValue, offset);
    Session session;
    QVERIFY(session.open());

    transferFrom(session, offset);

    QCOMPARE(session.printer.chunks(), QByteArrayList{contents});
    QVERIFY(session.logLines().contains("sendBytes= 10  _totalBytes= 10"_s));
}

void TestOffsets::sendsNothingFromBeyondTheFile()
{
    Session session;
    QVERIFY(session.open());

    transferFrom(session, "11"_s);

    QCOMPARE(session.printer.chunks().size(), 0);
    QCOMPARE(session.logLines(),
             (QStringList{"start send"_s, "_totalBytes =  10"_s, "send end"_s}));
}

void TestOffsets::remembersTheOffsetOfTheLastTransfer()
{
    Session session;
    QCOMPARE(session.client.transferOffset(), -1);
    QVERIFY(session.open());
    qint64 offsetInside = -1;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this,
            [&] { offsetInside = session.client.transferOffset(); });

    // Resumed, and then new: the latest counts, and is known while the transfer runs.
    for (const qint64 offset : {4, 0}) {
        transferFrom(session, QString::number(offset));
        QCOMPARE(offsetInside, offset);
        QCOMPARE(session.client.transferOffset(), offset);
        session.printer.disconnect(&session.client);
        session.trace.clear();
    }

    // No transfer begins: refused, or without its file.
    session.printer.sendText(R"({"cmd":"START_FILE","errorcode":1,"offset":"5"})"_s);
    session.printer.sendText(R"({"cmd":"START_FILE","key":"dead","offset":"6"})"_s);
    WAIT_COMPARE(session.trace.count("transError"_s), 2);
    QCOMPARE(session.client.transferOffset(), 0);
}

ZY_TEST(TestOffsets)

#include "tst_offsets.moc"
