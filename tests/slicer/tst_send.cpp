// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sending to a real zyprinter: the bytes that arrive, and what is reported on the way.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

using zytest::chunkBytes;
using zytest::readFile;
using zytest::writeFile;

class TestSend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void storesAModelUnderTheGivenName();
    void storesAModelUnderItsOwnNameByDefault();
    void sendsAnyBytesUnchanged_data();
    void sendsAnyBytesUnchanged();
    void sendsAtEachCompressionLevel_data();
    void sendsAtEachCompressionLevel();
    void sendsSeveralFilesOneAfterTheOther();
    void writesPlainLinesWhenNoTerminal();
    void writesOneJsonObjectALine();
    void writesNothingWhenQuiet();
    void showsTheLogOnlyWhenVerbose();
    void usesTheNameOfTheTransferItResumes();
    void showsANameAsItIs();
    void looksForTheFileBeforeThePrinter();
    void aFileResumedOnThePartOfAnotherIsFoundBad_data();
    void aFileResumedOnThePartOfAnotherIsFoundBad();

private:
    QTemporaryDir m_directory;
    QString m_model;
    QString m_url;
    PrinterProcess m_printer;
};

void TestSend::initTestCase()
{
    QVERIFY(!m_printer.url().isEmpty());
    m_url = m_printer.url().toString();
    m_model = makeModel(m_directory.filePath("part.zydlp"_s), 200);
}

void TestSend::storesAModelUnderTheGivenName()
{
    const SlicerResult result
        = runSlicer({"send"_s, m_model, "--to"_s, m_url, "--as"_s, "demo.zydlp"_s});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(readFile(m_printer.pathOf("demo.zydlp"_s)), readFile(m_model));
    QVERIFY(result.output.contains("demo.zydlp: sent, "));
    QVERIFY(result.output.contains("check passed"));
}

void TestSend::storesAModelUnderItsOwnNameByDefault()
{
    QCOMPARE(runSlicer({"send"_s, m_model, "--to"_s, m_url}).exitCode, 0);
    QCOMPARE(readFile(m_printer.pathOf("part.zydlp"_s)), readFile(m_model));
}

void TestSend::sendsAnyBytesUnchanged_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("one byte") << qint64(1);
    QTest::newRow("a chunk less one byte") << qint64(chunkBytes - 1);
    QTest::newRow("a chunk") << qint64(chunkBytes);
    QTest::newRow("a chunk and one byte") << qint64(chunkBytes + 1);
    QTest::newRow("two chunks and a half") << qint64(chunkBytes) * 5 / 2;
}

void TestSend::sendsAnyBytesUnchanged()
{
    QFETCH(qint64, size);
    const QByteArray bytes = zytest::randomBytes(size, quint32(size));
    const QString path = writeFile(m_directory.filePath("bytes.zydlp"_s), bytes);
    const SlicerResult result = runSlicer({"send"_s, path, "--to"_s, m_url});
    // No valid model: stored all the same, and the printer's verdict is reported.
    QCOMPARE(result.exitCode, 8);
    VERIFY_TEXT(isOneErrorLine(result.errors, "check failed: bytes.zydlp"), result.errors);
    QVERIFY(readFile(m_printer.pathOf("bytes.zydlp"_s)) == bytes);
}

void TestSend::sendsAtEachCompressionLevel_data()
{
    QTest::addColumn<QString>("level");
    for (const char *level : {"0", "1", "9"})
        QTest::newRow(level) << QString::fromLatin1(level);
}

void TestSend::sendsAtEachCompressionLevel()
{
    QFETCH(QString, level);
    const QString name = "level%1.zydlp"_s.arg(level);
    const SlicerResult result
        = runSlicer({"send"_s, m_model, "--to"_s, m_url, "--as"_s, name, "--compression"_s, level});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(readFile(m_printer.pathOf(name)), readFile(m_model));
}

void TestSend::sendsSeveralFilesOneAfterTheOther()
{
    const QString first = makeModel(m_directory.filePath("first.zydlp"_s), 10);
    const QString second = makeModel(m_directory.filePath("second.zydlp"_s), 11);
    const SlicerResult result = runSlicer({"send"_s, first, second, "--to"_s, m_url});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.indexOf("first.zydlp: sent")
            < result.output.indexOf("second.zydlp: sent"));
    QCOMPARE(readFile(m_printer.pathOf("second.zydlp"_s)), readFile(second));
}

void TestSend::writesPlainLinesWhenNoTerminal()
{
    const QString path = writeFile(m_directory.filePath("plain.zydlp"_s),
                                   zytest::compressibleBytes(chunkBytes * 4));
    const SlicerResult result = runSlicer({"send"_s, path, "--to"_s, m_url});
    QVERIFY(!result.output.contains('\r'));
    QVERIFY(!result.output.contains('\033'));
    QVERIFY(result.output.contains("plain.zydlp:  25 % 1.0/4.0 MiB "));
    QVERIFY(result.output.contains("plain.zydlp: 100 % 4.0/4.0 MiB "));
}

void TestSend::writesOneJsonObjectALine()
{
    const QByteArray bytes = zytest::randomBytes(chunkBytes * 3 + 7);
    const QString path = writeFile(m_directory.filePath("json.zydlp"_s), bytes);
    const SlicerResult result = runSlicer({"send"_s, path, "--to"_s, m_url, "--json"_s});
    QVector<qint64> received;
    for (const QJsonObject &event : eventsNamed("progress"_s, result.output)) {
        QCOMPARE(event.value("total"_s).toInt(), bytes.size());
        QCOMPARE(event.value("file"_s).toString(), "json.zydlp"_s);
        QCOMPARE(event.value("printer"_s).toString(), m_url);
        received.append(event.value("received"_s).toInt());
    }
    QCOMPARE(received, (QVector<qint64>{chunkBytes, chunkBytes * 2, chunkBytes * 3, bytes.size()}));
    const QVector<QJsonObject> all = jsonLines(result.output);
    QCOMPARE(all.first().value("event"_s).toString(), "offered"_s);
    QCOMPARE(all.last().value("event"_s).toString(), "result"_s);
    QCOMPARE(all.last().value("code"_s).toInt(), 8);
    QVERIFY(!all.last().value("message"_s).toString().isEmpty());
    const QJsonObject stored = eventsNamed("stored"_s, result.output).value(0);
    QCOMPARE(stored.value("checkState"_s).toInt(), 2);
    QCOMPARE(stored.value("storedAs"_s).toString(), "json.zydlp"_s);
}

void TestSend::writesNothingWhenQuiet()
{
    const SlicerResult result = runSlicer({"send"_s, m_model, "--to"_s, m_url, "--quiet"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errors, QByteArray());
}

void TestSend::showsTheLogOnlyWhenVerbose()
{
    const QStringList arguments{"send"_s, m_model, "--to"_s, m_url};
    QCOMPARE(runSlicer(arguments).errors, QByteArray());
    const SlicerResult verbose = runSlicer(arguments + QStringList("--verbose"_s));
    QCOMPARE(verbose.exitCode, 0);
    VERIFY_TEXT(verbose.errors.contains("sendBytes="), verbose.errors);
    VERIFY_TEXT(verbose.errors.contains("connecting to"), verbose.errors);
}

void TestSend::usesTheNameOfTheTransferItResumes()
{
    const QString path
        = writeFile(m_directory.filePath("cut.zydlp"_s), zytest::randomBytes(chunkBytes * 40));
    {
        SlicerProcess slicer(
            {"send"_s, path, "--to"_s, m_url, "--as"_s, "old.zydlp"_s, "--json"_s});
        QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
        slicer.kill();
    }
    const SlicerResult result
        = runSlicer({"send"_s, path, "--to"_s, m_url, "--as"_s, "new.zydlp"_s, "--json"_s});
    const QJsonObject resumed = eventsNamed("resumed"_s, result.output).value(0);
    VERIFY_TEXT(resumed.value("offset"_s).toInt() >= chunkBytes, result.output);
    const QJsonObject stored = eventsNamed("stored"_s, result.output).value(0);
    QCOMPARE(stored.value("storedAs"_s).toString(), "old.zydlp"_s);
    QVERIFY(readFile(m_printer.pathOf("old.zydlp"_s)) == readFile(path));
}

void TestSend::showsANameAsItIs()
{
    const QString name = "a%2b%3.zydlp"_s;
    const SlicerResult result
        = runSlicer({"send"_s, makeModel(m_directory.filePath(name)), "--to"_s, m_url});
    VERIFY_TEXT(result.output.contains("a%2b%3.zydlp: 100 % "), result.output);
}

void TestSend::looksForTheFileBeforeThePrinter()
{
    EXPECT_FAILURE(runSlicer({"send"_s, "nosuch.zydlp"_s, "--to"_s, "dnssd:nosuch"_s, "--wait"_s}),
                   7, "nosuch.zydlp");
}

void TestSend::aFileResumedOnThePartOfAnotherIsFoundBad_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("verdict");
    QTest::addColumn<bool>("isStored");
    QTest::newRow("by its digest") << QStringList() << QByteArray("check state -1") << false;
    // The printer has both parts then, and can only say that it is no model.
    QTest::newRow("without one") << QStringList("--no-digest"_s) << QByteArray("check state 2")
                                 << true;
}

void TestSend::aFileResumedOnThePartOfAnotherIsFoundBad()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, verdict);
    QFETCH(bool, isStored);
    const QByteArray tail = "same end";
    const QString one = writeFile(m_directory.filePath("one.zydlp"_s),
                                  zytest::randomBytes(chunkBytes * 40) + tail);
    const QString other = writeFile(m_directory.filePath("other.zydlp"_s),
                                    QByteArray(int(chunkBytes) * 40, 'x') + tail);
    const QStringList to{"--to"_s, m_url, "--as"_s, "mixed.zydlp"_s};
    {
        SlicerProcess slicer(QStringList{"send"_s, one, "--json"_s} + to);
        QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
        slicer.kill();
    }
    const SlicerResult result = runSlicer(QStringList{"send"_s, other} + to + options);
    EXPECT_FAILURE(result, 8, verdict);
    VERIFY_TEXT(result.output.contains("resumed at"), result.output);
    QCOMPARE(!m_printer.pathOf("mixed.zydlp"_s).isEmpty(), isStored);
}

ZY_TEST(TestSend)

#include "tst_send.moc"
