// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file of the saved printers: what is kept in it, and what is kept from it.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

#include <sys/stat.h>

using zytest::readFile;
using zytest::writeFile;

namespace
{

SlicerResult printers(const QStringList &arguments, const QString &settings)
{
    return runSlicer(QStringList{"--settings"_s, settings, "printers"_s} + arguments);
}

SlicerResult addPrinter(const QString &settings)
{
    return printers({"add"_s, "bench1"_s, "ws://10.0.0.1:80"_s}, settings);
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesPlainText();
    void readsAddressesThatEarlierVersionsSaved();
    void keepsOtherSettings();
    void needsNoSettingsForAUrl();
    void usesEachPrintersSavedToken();
    void leavesAFileAloneThatHoldsNoSettings_data();
    void leavesAFileAloneThatHoldsNoSettings();
    void leavesAloneWhatIsNoRegularFile_data();
    void leavesAloneWhatIsNoRegularFile();
    void tellsThatSettingsAreNotWritable();

private:
    QString path(const QString &name) const { return m_directory.filePath(name); }

    QTemporaryDir m_directory;
};

void TestSettings::savesPlainText()
{
    const QString settings = path("plain.ini"_s);
    QCOMPARE(addPrinter(settings).exitCode, 0);
    QCOMPARE(readFile(settings), QByteArray("[printers]\nbench1=ws://10.0.0.1:80\n"));
    // An empty file is left when the last one is gone, and is no reason to refuse it.
    QCOMPARE(printers({"remove"_s, "bench1"_s}, settings).exitCode, 0);
    QCOMPARE(addPrinter(settings).exitCode, 0);
}

void TestSettings::readsAddressesThatEarlierVersionsSaved()
{
    const QString settings = writeFile(
        path("old.ini"_s), "[printers]\nx=@Variant(\\0\\0\\0\\x11\\0\\0\\0\\bws://a:1)\n");
    QCOMPARE(printers({}, settings).output, QByteArray("x  ws://a:1\n"));
}

void TestSettings::keepsOtherSettings()
{
    const QString settings
        = writeFile(path("other.ini"_s), "; comment\n\n[other]\nkey=value\n[printers]\na=b:1\n");
    QCOMPARE(addPrinter(settings).exitCode, 0);
    const QByteArray bytes = readFile(settings);
    VERIFY_TEXT(bytes.contains("[other]\nkey=value\n"), bytes);
    QCOMPARE(printers({}, settings).output,
             QByteArray("a       ws://b:1\nbench1  ws://10.0.0.1:80\n"));
}

void TestSettings::usesEachPrintersSavedToken()
{
    const PrinterProcess one({"--token"_s, "first"_s});
    const PrinterProcess two({"--token"_s, "second"_s});
    const QString settings = path("tokens.ini"_s);
    const auto add = [&](const QString &name, const PrinterProcess &printer,
                         const QStringList &more) {
        return printers(QStringList{"add"_s, name, printer.url().toString()} + more, settings);
    };
    QCOMPARE(add("one"_s, one, {"--token"_s, "first"_s}).exitCode, 0);
    QCOMPARE(add("two"_s, two, {"--token"_s, "second"_s}).exitCode, 0);
    QCOMPARE(QFile::permissions(settings) & (QFile::ReadGroup | QFile::ReadOther), 0);
    QCOMPARE(add("two"_s, two, {}).exitCode, 0); // keeps its token
    const QStringList status{"status"_s, "--to"_s, "one"_s, "--to"_s, "two"_s};
    QCOMPARE(runSlicer(status, settings).exitCode, 0);
    const SlicerResult given = runSlicer(status + QStringList{"--token"_s, "first"_s}, settings);
    QCOMPARE(given.exitCode, 10);
    VERIFY_TEXT(isOneErrorLine(given.errors, "token rejected: two"), given.errors);
    for (const QStringList &list : {QStringList(), QStringList("--json"_s)})
        QVERIFY(!printers(list, settings).output.contains("first"));
    QCOMPARE(add("two"_s, two, {"--token"_s, ""_s}).exitCode, 0);
    EXPECT_FAILURE(runSlicer({"status"_s, "--to"_s, "two"_s}, settings), 6, "token rejected");
}

void TestSettings::needsNoSettingsForAUrl()
{
    const QString settings = writeFile(path("unused.ini"_s), "garbage");
    EXPECT_FAILURE(runSlicer({"version"_s, "--to"_s, deadUrl()}, settings), 3, "no connection");
}

void TestSettings::leavesAFileAloneThatHoldsNoSettings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("notes") << QByteArray("Dear diary,\n\ntoday = a good day\n");
    QTest::newRow("no end of line") << QByteArray("garbage");
    QTest::newRow("assignment outside a section") << QByteArray("PATH=/bin\n");
    QTest::newRow("text after settings") << QByteArray("[printers]\na=ws://b:1\nand text\n");
    QTest::newRow("foreign comment") << QByteArray("# [printers]\n[printers]\na=ws://b:1\n");
    QTest::newRow("no key") << QByteArray("[printers]\n=ws://b:1\n");
    QTest::newRow("model") << zytest::randomBytes(100000);
    QTest::newRow("zeros") << QByteArray(200000, '\0');
}

void TestSettings::leavesAFileAloneThatHoldsNoSettings()
{
    QFETCH(QByteArray, bytes);
    const QString settings = writeFile(path("notes.txt"_s), bytes);
    const QByteArray message = "not a settings file: " + settings.toUtf8();
    EXPECT_FAILURE(addPrinter(settings), 7, message);
    EXPECT_FAILURE(printers({"remove"_s, "a"_s}, settings), 7, message);
    EXPECT_FAILURE(printers({}, settings), 7, message);
    EXPECT_FAILURE(runSlicer({"version"_s}, settings), 7, message);
    EXPECT_FAILURE(runSlicer({"version"_s, "--to"_s, "a"_s}, settings), 7, message);
    QVERIFY(readFile(settings) == bytes);
}

void TestSettings::leavesAloneWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("pipe") << "pipe"_s;
    QTest::newRow("link to a pipe") << "link"_s;
    QTest::newRow("directory") << "directory"_s;
    QCOMPARE(mkfifo(path("pipe"_s).toUtf8().constData(), 0600), 0);
    QVERIFY(QFile::link(path("pipe"_s), path("link"_s)));
    QVERIFY(QDir().mkdir(path("directory"_s)));
}

void TestSettings::leavesAloneWhatIsNoRegularFile()
{
    QFETCH(QString, name);
    const QByteArray settings = path(name).toUtf8();
    struct stat before = {};
    struct stat after = {};
    QCOMPARE(lstat(settings.constData(), &before), 0);
    const QByteArray message = "settings are no regular file: " + settings;
    EXPECT_FAILURE(addPrinter(path(name)), 7, message);
    EXPECT_FAILURE(printers({}, path(name)), 7, message);
    QCOMPARE(lstat(settings.constData(), &after), 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_ino, before.st_ino);
}

void TestSettings::tellsThatSettingsAreNotWritable()
{
    writeFile(path("file"_s), "x");
    EXPECT_FAILURE(addPrinter(path("file/settings.ini"_s)), 7, "settings not writable");
}

ZY_TEST(TestSettings)

#include "tst_settings.moc"
