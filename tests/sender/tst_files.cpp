// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the sender makes of the local file and of its name on the printer.

#include "scriptedprinter.h"
#include "sending.h"
#include "testprogram.h"

#include <QFile>

#include <sys/resource.h>

using namespace zytest;
using FileFault = ZySendResult::FileFault;
using Ending = ZySendResult::Ending;

class TestSenderFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesOnlyNamesThatPrintersTake_data();
    void takesOnlyNamesThatPrintersTake();
    void findsFaultsOfTheFileBeforeAnyPrinterIsAsked_data();
    void findsFaultsOfTheFileBeforeAnyPrinterIsAsked();
    void findsAFileThatCannotBeOpened();
    void noticesThatItWasRemovedBeforeARetry();
    void noticesAShorterFileOfWhichThePrinterHasAll();
    void offersTheFilesOwnNameUnlessAnotherIsGiven();
    void noticesAnotherSizeDuringTheTransfer_data();
    void noticesAnotherSizeDuringTheTransfer();
    void noticesOtherContentsAfterARetry();
    void goesOnWithAFileThatWasRemoved();
};

void TestSenderFiles::takesOnlyNamesThatPrintersTake_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<FileFault>("fault");
    const auto row = [](const char *tag, const QString &name, FileFault fault) {
        QTest::newRow(tag) << name << fault;
    };
    const QString umlaut = QString::fromUtf8("\xc3\xbc"); // two bytes in UTF-8
    row("plain", QStringLiteral("part.zydlp"), FileFault::None);
    row("two dots inside", QStringLiteral("a..b"), FileFault::None);
    row("letters of two bytes", umlaut.repeated(127), FileFault::None);
    row("empty", QString(), FileFault::NameEmpty);
    row("slash", QStringLiteral("a/b"), FileFault::NameHasSeparator);
    row("backslash", QStringLiteral("a\\b"), FileFault::NameHasSeparator);
    row("dot", QStringLiteral("."), FileFault::NameIsDirectory);
    row("two dots", QStringLiteral(".."), FileFault::NameIsDirectory);
    row("line feed", QStringLiteral("a\nb"), FileFault::NameHasControlCharacter);
    row("NUL", QString(QChar(0)), FileFault::NameHasControlCharacter);
    row("the printer's own", QStringLiteral("WIFI_tranfer.TMP"), FileFault::NameReserved);
    row("256 bytes", umlaut.repeated(128), FileFault::NameTooLong);
}

void TestSenderFiles::takesOnlyNamesThatPrintersTake()
{
    QFETCH(QString, name);
    QFETCH(FileFault, fault);
    QCOMPARE(ZyFileSender::checkName(name), fault);

    ScriptedPrinter printer;
    printer.answerTransfers();
    // A null name means the file's own.
    Sending sending(printer.url(), "abc", impatient(), name.isNull() ? QStringLiteral("") : name);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().fileFault(), fault);
    QCOMPARE(printer.connectionCount(), fault == FileFault::None ? 1 : 0);
}

void TestSenderFiles::findsFaultsOfTheFileBeforeAnyPrinterIsAsked_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<FileFault>("fault");
    QTest::newRow("missing") << QStringLiteral("/nonexistent/part") << FileFault::Missing;
    QTest::newRow("directory") << QDir::tempPath() << FileFault::NotAFile;
    QTest::newRow("device") << QStringLiteral("/dev/zero") << FileFault::NotAFile;
    QTest::newRow("empty") << QString() << FileFault::Empty;
}

void TestSenderFiles::findsFaultsOfTheFileBeforeAnyPrinterIsAsked()
{
    QFETCH(QString, path);
    QFETCH(FileFault, fault);
    const QTemporaryDir directory;
    if (path.isEmpty())
        path = writeFile(directory.filePath(QStringLiteral("empty")), {});
    const ZySendResult check = ZyFileSender::checkFile(path, QStringLiteral("part.bin"));
    QCOMPARE(check.ending(), Ending::LocalFile);
    QCOMPARE(check.fileFault(), fault);

    ScriptedPrinter printer;
    ZyFileSender sender(printer.url(), path, QStringLiteral("part.bin"));
    QSignalSpy finished(&sender, &ZyFileSender::finished);
    sender.start();
    QCOMPARE(finished.count(), 0);
    QVERIFY(waitUntil([&] { return finished.count() == 1; }));
    const auto result = finished.at(0).at(0).value<ZySendResult>();
    QCOMPARE(result.ending(), Ending::LocalFile);
    QCOMPARE(result.fileFault(), fault);
    QVERIFY(result.sentence().contains(ZySendResult::text(fault)));
    QCOMPARE(printer.connectionCount(), 0);
}

/// Not even by root, whom no permission stops.
void TestSenderFiles::findsAFileThatCannotBeOpened()
{
    const QTemporaryDir directory;
    const QString path = writeFile(directory.filePath(QStringLiteral("local.bin")), "abc");
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{0, limit.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const ZySendResult check = ZyFileSender::checkFile(path, QStringLiteral("part.bin"));
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    QCOMPARE(check.ending(), Ending::LocalFile);
    QCOMPARE(check.fileFault(), FileFault::Unreadable);
}

void TestSenderFiles::noticesThatItWasRemovedBeforeARetry()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), compressibleBytes(3 * chunkBytes));
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        QFile::remove(sending.path());
        printer.drop();
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().fileFault(), FileFault::Missing);
    QCOMPARE(sending.retrying.count(), 1);
    QCOMPARE(sending.offered.count(), 1);
}

void TestSenderFiles::noticesAShorterFileOfWhichThePrinterHasAll()
{
    ScriptedPrinter printer;
    Sending sending(printer.url(), "abc");
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        QVERIFY(QFile::resize(sending.path(), 2));
        printer.send(startFileReply(objectIn(text), {true, 3, 1, true}));
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::LocalFile);
    QCOMPARE(sending.result().fileFault(), FileFault::Changed);
}

void TestSenderFiles::offersTheFilesOwnNameUnlessAnotherIsGiven()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), "abc", impatient(), QString());
    QVERIFY(sending.run());
    QCOMPARE(sending.result().storedName(), QStringLiteral("local.bin"));
}

void TestSenderFiles::noticesAnotherSizeDuringTheTransfer_data()
{
    QTest::addColumn<qint64>("size");
    QTest::newRow("shorter") << qint64(1000);
    QTest::newRow("empty") << qint64(0);
    QTest::newRow("longer") << qint64(5 * chunkBytes);
}

void TestSenderFiles::noticesAnotherSizeDuringTheTransfer()
{
    QFETCH(qint64, size);
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), compressibleBytes(3 * chunkBytes));
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer,
            [&] { QVERIFY(QFile::resize(sending.path(), size)); });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::LocalFile);
    QCOMPARE(sending.result().fileFault(), FileFault::Changed);
}

void TestSenderFiles::noticesOtherContentsAfterARetry()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    const QByteArray contents = compressibleBytes(3 * chunkBytes);
    Sending sending(printer.url(), contents);
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        writeFile(sending.path(), contents.left(contents.size() - 4) + "other");
        QVERIFY(QFile::resize(sending.path(), contents.size()));
        printer.drop();
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().fileFault(), FileFault::Changed);
    QCOMPARE(sending.offered.count(), 1);
}

void TestSenderFiles::goesOnWithAFileThatWasRemoved()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), compressibleBytes(3 * chunkBytes));
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer,
            [&] { QFile::remove(sending.path()); });
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QCOMPARE(sending.result().bytes(), qint64(3 * chunkBytes));
}

ZY_TEST(TestSenderFiles)
#include "tst_files.moc"
