// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Many saved printers named at once: all of them, or a group.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

class TestGroups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void meansEverySavedPrinterByAll();
    void meansTheMembersByAGroup();
    void listsAndForgetsGroups();
    void forgetsAPrinterInItsGroups();
    void refusesAGroupOfStrangers();
    void refusesAGroupOfNobody();
    void showsTheStatusOfEachInOneRow();

private:
    SlicerResult slicer(const QStringList &arguments) const
    {
        return runSlicer(arguments, m_settings);
    }
    int save(const char *name, const QString &url) const
    {
        return slicer({"printers"_s, "add"_s, QLatin1String(name), url}).exitCode;
    }

    QTemporaryDir m_directory;
    QString m_settings;
};

void TestGroups::init()
{
    m_settings = m_directory.filePath("%1.ini"_s.arg(QLatin1String(QTest::currentTestFunction())));
}

void TestGroups::meansEverySavedPrinterByAll()
{
    EXPECT_FAILURE(slicer({"version"_s, "--all"_s}), 2, "no saved printers");
    const PrinterProcess one;
    const PrinterProcess two;
    QCOMPARE(save("one", one.url().toString()), 0);
    QCOMPARE(slicer({"version"_s, "--all"_s}).output, QByteArray("version 1\n"));
    QCOMPARE(save("two", two.url().toString()), 0);
    const SlicerResult both = slicer({"version"_s, "--all"_s});
    QCOMPARE(both.exitCode, 0);
    QCOMPARE(both.output.count(": version 1\n"), 2);
    QCOMPARE(slicer({"version"_s, "--all"_s, "--to"_s, "one"_s}).exitCode, 2);
}

void TestGroups::meansTheMembersByAGroup()
{
    const PrinterProcess one;
    const PrinterProcess two;
    QCOMPARE(save("one", one.url().toString()), 0);
    QCOMPARE(save("two", two.url().toString()), 0);
    QCOMPARE(save("other", deadUrl()), 0);
    QCOMPARE(slicer({"printers"_s, "group"_s, "bench"_s, "two"_s, "one"_s}).exitCode, 0);
    const SlicerResult result = slicer({"version"_s, "--to"_s, "bench"_s});
    QCOMPARE(result.exitCode, 0);
    VERIFY_TEXT(result.output.endsWith("two      ok\none      ok\n"), result.output);
    // Groups may overlap.
    QCOMPARE(slicer({"printers"_s, "group"_s, "more"_s, "one"_s, "two"_s}).exitCode, 0);
    QCOMPARE(slicer({"version"_s, "--to"_s, "bench"_s, "--to"_s, "more"_s}).output.count("  ok\n"),
             2);
}

void TestGroups::listsAndForgetsGroups()
{
    QCOMPARE(save("one", "ws://10.0.0.1:80"_s), 0);
    QCOMPARE(slicer({"printers"_s, "group"_s, "bench"_s, "one"_s}).exitCode, 0);
    QCOMPARE(slicer({"printers"_s}).output, QByteArray("one    ws://10.0.0.1:80\nbench  one\n"));
    VERIFY_TEXT(slicer({"printers"_s, "--json"_s}).output.contains("\"printers\":[\"one\"]"),
                "no group in the JSON");
    QCOMPARE(slicer({"printers"_s, "remove"_s, "bench"_s}).exitCode, 0);
    QCOMPARE(slicer({"printers"_s}).output, QByteArray("one  ws://10.0.0.1:80\n"));
}

void TestGroups::forgetsAPrinterInItsGroups()
{
    QCOMPARE(save("one", "ws://10.0.0.1:80"_s), 0);
    QCOMPARE(save("two", "ws://10.0.0.2:80"_s), 0);
    QCOMPARE(slicer({"printers"_s, "group"_s, "both"_s, "one"_s, "two"_s}).exitCode, 0);
    QCOMPARE(slicer({"printers"_s, "group"_s, "single"_s, "one"_s}).exitCode, 0);
    QCOMPARE(slicer({"printers"_s, "remove"_s, "one"_s}).exitCode, 0);
    QCOMPARE(slicer({"printers"_s}).output, QByteArray("two   ws://10.0.0.2:80\nboth  two\n"));
}

void TestGroups::refusesAGroupOfNobody()
{
    zytest::writeFile(m_settings, "[groups]\nempty=@Invalid()\n");
    EXPECT_FAILURE(slicer({"version"_s, "--to"_s, "empty"_s}), 2, "unknown printer: empty");
}

void TestGroups::refusesAGroupOfStrangers()
{
    QCOMPARE(save("one", "ws://10.0.0.1:80"_s), 0);
    EXPECT_FAILURE(slicer({"printers"_s, "group"_s, "bench"_s, "one"_s, "two"_s}), 2,
                   "unknown printer: two");
    EXPECT_FAILURE(slicer({"printers"_s, "group"_s, "one"_s, "one"_s}), 2, "name of a printer");
    EXPECT_FAILURE(slicer({"printers"_s, "group"_s, "a/b"_s, "one"_s}), 2, "not a printer name");
    QCOMPARE(slicer({"printers"_s, "group"_s, "bench"_s, "one"_s}).exitCode, 0);
    EXPECT_FAILURE(slicer({"printers"_s, "add"_s, "bench"_s, "ws://10.0.0.2:80"_s}), 2,
                   "name of a group");
}

void TestGroups::showsTheStatusOfEachInOneRow()
{
    const PrinterProcess one;
    const PrinterProcess two;
    QCOMPARE(save("z", one.url().toString()), 0);
    QCOMPARE(save("a", two.url().toString()), 0);
    QCOMPARE(save("gone", deadUrl()), 0);
    const SlicerResult result
        = slicer({"status"_s, "--to"_s, "z"_s, "--to"_s, "gone"_s, "--to"_s, "a"_s});
    QCOMPARE(result.exitCode, 10);
    const QList<QByteArray> rows = result.output.trimmed().split('\n');
    QCOMPARE(rows.size(), 4);
    VERIFY_TEXT(rows[0].startsWith("PRINTER  STATE "), rows[0]);
    VERIFY_TEXT(rows[1].startsWith("z        idle "), rows[1]);
    VERIFY_TEXT(rows[2].startsWith("gone     no connection (connection refused) "), rows[2]);
    VERIFY_TEXT(rows[3].startsWith("a        idle "), rows[3]);
}

ZY_TEST(TestGroups)

#include "tst_groups.moc"
