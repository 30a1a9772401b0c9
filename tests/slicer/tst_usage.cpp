// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What is wrong before any printer is asked: usage and local files.

#include "modelfiles.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QProcess>
#include <QTest>

#include <unistd.h>

class TestUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void checksTheFileBeforeAnythingIsSent_data();
    void checksTheFileBeforeAnythingIsSent();
    void tellsThatANameIsNoText();
    void tellsErrorsInJsonToo_data();
    void tellsErrorsInJsonToo();
    void keepsAnErrorOnOneLine();
    void takesADecimalPointInEveryLocale();

private:
    QTemporaryDir m_directory;
    QString m_model;
};

void TestUsage::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
}

void TestUsage::refusesWrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("part");
    const auto row = [](const char *name, const QStringList &arguments, const char *part) {
        QTest::newRow(name) << arguments << QByteArray(part);
    };
    const QString url = "ws://127.0.0.1:1"_s;
    row("nothing", {}, "required");
    row("unknown command", {"frobnicate"_s}, "frobnicate; see zyslicer --help");
    row("swapped letters", {"sned"_s, "x"_s}, "did you mean 'send'? see");
    row("a letter too many", {"statuss"_s}, "did you mean 'status'?");
    row("another's ending", {"printers"_s, "delete"_s}, "see zyslicer --help");
    row("command of a command", {"printers"_s, "ad"_s}, "did you mean 'add'?");
    row("unknown option", {"status"_s, "--bogus"_s}, "--bogus");
    row("no file", {"send"_s, "--to"_s, url}, "FILE");
    row("one name for two files", {"send"_s, "a"_s, "b"_s, "--as"_s, "c"_s}, "--as");
    row("print of two files", {"send"_s, "a"_s, "b"_s, "--print"_s}, "--print");
    row("watch without print", {"send"_s, "a"_s, "--watch"_s}, "--watch");
    row("negative stall", {"send"_s, "a"_s, "--stall"_s, "-1"_s}, "--stall");
    row("stall no number", {"send"_s, "a"_s, "--stall"_s, "nan"_s}, "--stall");
    row("endless timeout", {"status"_s, "--timeout"_s, "inf"_s}, "--timeout");
    row("interval no number", {"status"_s, "--interval"_s, "-nan"_s}, "--interval");
    row("retries no number", {"send"_s, "a"_s, "--retries"_s, "many"_s}, "--retries");
    row("quiet and JSON", {"status"_s, "--quiet"_s, "--json"_s}, "--quiet");
    row("unknown parameter", {"set"_s, "exposure=3"_s, "--to"_s, url}, "exposure");
    row("no assignment", {"set"_s, "initExposure"_s, "--to"_s, url}, "initExposure");
    row("parameter twice", {"set"_s, "eleSpeed=1"_s, "eleSpeed=2"_s, "--to"_s, url},
        "'eleSpeed' is given twice");
    row("two files of one name", {"send"_s, "a/x.zydlp"_s, "x.zydlp"_s, "--to"_s, url},
        "a/x.zydlp and x.zydlp");
    row("empty print name", {"print"_s, ""_s, "--to"_s, url}, "NAME");
    row("unknown printer", {"status"_s, "--to"_s, "bench9"_s}, "unknown printer: bench9");
    row("no address", {"status"_s, "--to"_s, "http://host"_s}, "http://host");
    row("no printer", {"status"_s}, "no printer named");
    row("a user in an address", {"status"_s, "--to"_s, "ws://me:secret@127.0.0.1:1"_s},
        "printers know no users: ws://127.0.0.1:1");
    row("the same printer twice", {"status"_s, "--to"_s, url, "--to"_s, "127.0.0.1:1"_s},
        "named twice: 127.0.0.1:1");
}

void TestUsage::refusesWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, part);
    EXPECT_FAILURE(runSlicer(arguments), 2, part);
}

void TestUsage::checksTheFileBeforeAnythingIsSent_data()
{
    QTest::addColumn<QString>("file"); // empty: the good model
    QTest::addColumn<QString>("name"); // null: the file's own
    QTest::addColumn<QByteArray>("part");
    const QString file = m_directory.filePath("empty.zydlp"_s);
    zytest::writeFile(file, {});
    QTest::newRow("missing") << "/nonexistent/part.zydlp"_s << QString()
                             << QByteArray("no such file: /nonexistent/part.zydlp");
    QTest::newRow("directory") << m_directory.path() << QString()
                               << QByteArray("not a regular file");
    QTest::newRow("device") << "/dev/null"_s << QString() << QByteArray("not a regular file");
    QTest::newRow("empty") << file << QString() << QByteArray("file is empty");
    QTest::newRow("unreadable") << m_directory.filePath("secret.zydlp"_s) << QString()
                                << QByteArray("not readable");
    const auto name = [](const char *tag, const QString &text, const char *part) {
        QTest::newRow(tag) << QString() << text << QByteArray(part);
    };
    name("empty name", ""_s, "no file name");
    name("separator", "a/b.zydlp"_s, "path separator in the file name: a/b.zydlp");
    name("other separator", "a\\b.zydlp"_s, "path separator");
    name("parent", ".."_s, "that of a directory");
    name("this folder", "."_s, "that of a directory");
    name("reception file", "wifi_tranfer.tmp"_s, "reserved");
    name("reception file in capitals", "WIFI_TRANFER.TMP"_s, "reserved");
    name("too long", QString(256, QLatin1Char('x')), "longer than 255 bytes");
    name("control character", "a\nb"_s, "control character");
}

void TestUsage::checksTheFileBeforeAnythingIsSent()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    QFETCH(QByteArray, part);
    if (file.endsWith("secret.zydlp"_s)) {
        if (geteuid() == 0)
            QSKIP("the superuser can read every file");
        zytest::writeFile(file, "secret");
        QFile::setPermissions(file, {});
    }
    QStringList arguments{"send"_s, file.isEmpty() ? m_model : file, "--to"_s, deadUrl()};
    if (!name.isNull())
        arguments += {"--as"_s, name};
    // Not 3: the printer, which is not there, was not asked.
    EXPECT_FAILURE(runSlicer(arguments), 7, part);
}

void TestUsage::tellsThatANameIsNoText()
{
    EXPECT_FAILURE(runInShell("exec \"$0\" \"$@\" $'part\\377.zydlp'"_s, {"send"_s}), 2,
                   "not valid in this locale's encoding");
}

void TestUsage::tellsErrorsInJsonToo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("part");
    const QString url = "ws://127.0.0.1:1"_s;
    QTest::newRow("missing file") << QStringList{"send"_s, "/nonexistent"_s, "--to"_s, url} << 7
                                  << "no such file"_s;
    QTest::newRow("bad name") << QStringList{"send"_s, m_model, "--as"_s, "a/b"_s, "--to"_s, url}
                              << 7 << "path separator"_s;
    QTest::newRow("no printer") << QStringList{"status"_s} << 2 << "no printer named"_s;
    QTest::newRow("unknown printer")
        << QStringList{"printers"_s, "remove"_s, "bench9"_s} << 2 << "no such printer: bench9"_s;
}

void TestUsage::tellsErrorsInJsonToo()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, part);
    const SlicerResult result = runSlicer(arguments + QStringList("--json"_s));
    QCOMPARE(result.exitCode, code);
    VERIFY_TEXT(isOneErrorLine(result.errors, part.toUtf8()), result.errors);
    const QVector<QJsonObject> objects = jsonLines(result.output);
    QCOMPARE(objects.size(), 1);
    QCOMPARE(objects.first().value("event"_s).toString(), "error"_s);
    QCOMPARE(objects.first().value("code"_s).toInt(), code);
    VERIFY_TEXT(objects.first().value("message"_s).toString().contains(part), result.output);
}

void TestUsage::keepsAnErrorOnOneLine()
{
    EXPECT_FAILURE(runSlicer({"send"_s, "/nonexistent\nfile"_s, "--to"_s, deadUrl()}), 7,
                   "/nonexistent?file");
}

void TestUsage::takesADecimalPointInEveryLocale()
{
    const QString locale = m_directory.filePath("de_DE.UTF-8"_s);
    const int made
        = QProcess::execute("localedef"_s, {"-i"_s, "de_DE"_s, "-f"_s, "UTF-8"_s, locale});
    if (made != 0)
        QSKIP("no locale with a decimal comma can be made here");
    const SlicerResult result = runInShell(
        "exec env LOCPATH=%1 LC_ALL=de_DE.UTF-8 \"$0\" \"$@\""_s.arg(m_directory.path()),
        {"status"_s, "--to"_s, deadUrl(), "--interval"_s, "0.5"_s});
    EXPECT_FAILURE(result, 3, "no connection");
}

ZY_TEST(TestUsage)

#include "tst_usage.moc"
