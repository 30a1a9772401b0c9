// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file's SHA-256 digest, sent with the offer for printers that check it.

#include "scriptedprinter.h"
#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QCryptographicHash>

using namespace zytest;
using Ending = ZySendResult::Ending;

namespace
{

ZySendOptions withDigest()
{
    ZySendOptions options = impatient();
    options.setSendsDigest(true);
    return options;
}

QString digestOf(const QByteArray &contents)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(contents, QCryptographicHash::Sha256).toHex());
}

QUrl urlOf(const TestPrinter &printer)
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port()));
}

} // namespace

class TestSenderDigest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsTheDigestOfTheWholeFile_data();
    void sendsTheDigestOfTheWholeFile();
    void sendsNoneUnlessAsked();
    void sendsTheDigestOfAFileThatHasChangedMeanwhile();
    void aFileResumedOnThePartOfAnotherIsFoundBad();
    void saysThatItReadsAndCanBeCancelled();
    void doesNotReadOnAfterItsEnd();
};

void TestSenderDigest::sendsTheDigestOfTheWholeFile_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("a few bytes") << QByteArray("abc");
    QTest::newRow("one piece") << randomBytes(chunkBytes);
    QTest::newRow("several pieces") << randomBytes(5 * chunkBytes + 77);
}

void TestSenderDigest::sendsTheDigestOfTheWholeFile()
{
    QFETCH(QByteArray, contents);
    TestPrinter printer(ZyServerOptions::hardened());
    Sending hardened(urlOf(printer), contents, withDigest());
    QVERIFY(hardened.run());
    QCOMPARE(hardened.result().ending(), Ending::Sent);
    ScriptedPrinter watched;
    watched.answerTransfers();
    Sending deployed(watched.url(), contents, withDigest());
    QVERIFY(deployed.run());
    QCOMPARE(deployed.result().ending(), Ending::Sent);
    const QJsonObject offer = watched.messages(QStringLiteral("START_FILE")).value(0);
    QCOMPARE(offer.value(QStringLiteral("sha256")).toString(), digestOf(contents));
}

void TestSenderDigest::sendsNoneUnlessAsked()
{
    QVERIFY(!ZySendOptions().sendsDigest());
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), "abc");
    QVERIFY(sending.run());
    QVERIFY(!printer.messages(QStringLiteral("START_FILE"))
                 .value(0)
                 .contains(QStringLiteral("sha256")));
}

void TestSenderDigest::sendsTheDigestOfAFileThatHasChangedMeanwhile()
{
    const QByteArray tail = "same end";
    const QByteArray after = randomBytes(2 * chunkBytes) + tail;
    ScriptedPrinter printer;
    Sending sending(printer.url(), QByteArray(2 * chunkBytes, 'x') + tail, withDigest());
    // A printer that goes away before it answers, and meanwhile the model is sliced anew.
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&] {
        if (printer.texts().size() > 1)
            return;
        writeFile(sending.path(), after);
        QFile file(sending.path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(5),
                                 QFileDevice::FileModificationTime));
        file.close();
        printer.answerTransfers();
        printer.drop();
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Sent);
    const auto offers = printer.messages(QStringLiteral("START_FILE"));
    QCOMPARE(offers.size(), 2);
    QCOMPARE(offers.at(1).value(QStringLiteral("sha256")).toString(), digestOf(after));
}

void TestSenderDigest::aFileResumedOnThePartOfAnotherIsFoundBad()
{
    const QByteArray tail = "same end";
    TestPrinter printer(ZyServerOptions::hardened());
    Sending other(urlOf(printer), randomBytes(20 * chunkBytes) + tail, withDigest());
    connect(other.sender.get(), &ZyFileSender::progress, this, [&] { other.sender->leave(); });
    QVERIFY(other.run());
    QCOMPARE(other.result().ending(), Ending::LeftForLater);
    QVERIFY(printer.waitForConnections(0));

    Sending sending(urlOf(printer), QByteArray(20 * chunkBytes, 'x') + tail, withDigest());
    QVERIFY(sending.run());
    QCOMPARE(sending.resumed.count(), 1);
    QCOMPARE(sending.result().ending(), Ending::CheckFailed);
    QCOMPARE(sending.result().checkState(), -1);
    QVERIFY(!QFile::exists(printer.path(QStringLiteral("part.bin"))));
    // Nothing is left of it, so that the next attempt arrives whole.
    Sending again(urlOf(printer), readFile(sending.path()), withDigest());
    QVERIFY(again.run());
    QCOMPARE(again.result().ending(), Ending::Sent);
}

void TestSenderDigest::saysThatItReadsAndCanBeCancelled()
{
    constexpr qint64 size = Q_INT64_C(64) * 1024 * 1024 * 1024; // sparse: of no use but to be read
    ScriptedPrinter printer;
    Sending sending(printer.url(), "abc", withDigest());
    QVERIFY(QFile::resize(sending.path(), size));
    QSignalSpy reading(sending.sender.get(), &ZyFileSender::reading);
    sending.sender->start();
    QVERIFY(waitUntil([&] { return reading.count() > 1; }));
    QVERIFY(reading.at(0).at(0).toLongLong() < reading.at(1).at(0).toLongLong());
    QCOMPARE(reading.at(0).at(1).toLongLong(), size);
    QCOMPARE(printer.connectionCount(), 1);
    QVERIFY(sending.sender->canCancel());
    sending.sender->cancel();
    QVERIFY(sending.waitForEnd());
    QCOMPARE(sending.result().ending(), Ending::Cancelled);
    QCOMPARE(sending.offered.count(), 0);
}

/// Its thread ends while the file is still being read.
void TestSenderDigest::doesNotReadOnAfterItsEnd()
{
    ScriptedPrinter printer;
    Sending sending(printer.url(), "abc", withDigest());
    QVERIFY(QFile::resize(sending.path(), Q_INT64_C(64) * 1024 * 1024 * 1024));
    QSignalSpy reading(sending.sender.get(), &ZyFileSender::reading);
    sending.sender->start();
    QVERIFY(waitUntil([&] { return reading.count() > 0; }));
    sending.sender.reset();
    QVERIFY(waitUntil([&] { return !printer.peer(); }));
}

ZY_TEST(TestSenderDigest)

#include "tst_digest.moc"
