// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Several files in one command: each has its own end, and all of them are told.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

class TestSeveralFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sendsTheOthersWhenOneFails();
    void namesEachFileInJson();
    void sumsUpAfterTheErrors();
    void sumsUpEachFileOfEachPrinter();
    void exitsWithTheReasonThatAllShare();
    void triesNoFurtherFileWithoutConnection();

private:
    QStringList send(const QStringList &files, const QString &url) const
    {
        return QStringList("send"_s) + files + QStringList{"--to"_s, url};
    }

    QTemporaryDir m_directory;
    QString m_good;
    QString m_alsoGood;
    QString m_empty;
    QString m_noModel;
    QStringList m_all;
};

void TestSeveralFiles::initTestCase()
{
    m_good = makeModel(m_directory.filePath("good.zydlp"_s));
    m_alsoGood = makeModel(m_directory.filePath("also-good.zydlp"_s), 30);
    m_empty = zytest::writeFile(m_directory.filePath("empty.zydlp"_s), {});
    m_noModel = zytest::writeFile(m_directory.filePath("none.zydlp"_s), "no model");
    m_all = QStringList{m_empty, m_noModel, m_good, m_alsoGood};
}

void TestSeveralFiles::sendsTheOthersWhenOneFails()
{
    const PrinterProcess printer;
    const SlicerResult result = runSlicer(send(m_all, printer.url().toString()));
    QCOMPARE(result.exitCode, 10);
    QVERIFY(!printer.pathOf("good.zydlp"_s).isEmpty());
    QVERIFY(!printer.pathOf("also-good.zydlp"_s).isEmpty());
    QCOMPARE(result.errors.count('\n'), 2);
    VERIFY_TEXT(result.errors.contains("zyslicer: file is empty: "), result.errors);
    VERIFY_TEXT(result.errors.contains("zyslicer: check failed: none.zydlp to "), result.errors);
}

void TestSeveralFiles::namesEachFileInJson()
{
    const PrinterProcess printer;
    const SlicerResult result
        = runSlicer(send(m_all, printer.url().toString()) + QStringList("--json"_s));
    QVector<QPair<QString, int>> ends;
    for (const QJsonObject &object : eventsNamed("file-result"_s, result.output))
        ends.append({object.value("file"_s).toString(), object.value("code"_s).toInt()});
    const QVector<QPair<QString, int>> expected{
        {"empty.zydlp"_s, 7}, {"none.zydlp"_s, 8}, {"good.zydlp"_s, 0}, {"also-good.zydlp"_s, 0}};
    QCOMPARE(ends, expected);
    const QJsonObject all = eventsNamed("result"_s, result.output).value(0);
    QCOMPARE(all.value("code"_s).toInt(), 10);
    QCOMPARE(all.value("message"_s).toString().count(QLatin1Char('\n')), 1);
}

void TestSeveralFiles::sumsUpAfterTheErrors()
{
    const PrinterProcess printer;
    const QByteArray output
        = runInShell("\"$0\" \"$@\" 2>&1"_s, send(m_all, printer.url().toString())).output;
    const auto table = output.indexOf("FILE ");
    VERIFY_TEXT(table > output.lastIndexOf("zyslicer: "), output);
    const QList<QByteArray> rows = output.mid(table).trimmed().split('\n');
    QCOMPARE(rows.size(), 5);
    VERIFY_TEXT(rows[1].startsWith("empty.zydlp ") && rows[1].endsWith("  file is empty"), rows[1]);
    VERIFY_TEXT(rows[2].startsWith("none.zydlp ") && rows[2].endsWith("  check failed"), rows[2]);
    VERIFY_TEXT(rows[3].startsWith("good.zydlp ") && rows[3].endsWith("  ok"), rows[3]);
    VERIFY_TEXT(rows[4].startsWith("also-good.zydlp ") && rows[4].endsWith("  ok"), rows[4]);
}

void TestSeveralFiles::sumsUpEachFileOfEachPrinter()
{
    const PrinterProcess good;
    const PrinterProcess refusing({"--refuse"_s});
    const SlicerResult result = runSlicer(send({m_good, m_alsoGood}, good.url().toString())
                                          + QStringList{"--to"_s, refusing.url().toString()});
    QCOMPARE(result.exitCode, 10);
    const QByteArray table = result.output.mid(result.output.indexOf("PRINTER "));
    QCOMPARE(table.count('\n'), 5);
    QCOMPARE(table.count("  ok\n"), 2);
    QCOMPARE(table.count("  refused by the printer\n"), 2);
}

void TestSeveralFiles::exitsWithTheReasonThatAllShare()
{
    const PrinterProcess one({"--refuse"_s});
    const PrinterProcess two({"--refuse"_s});
    QCOMPARE(runSlicer(send({m_good, m_alsoGood}, one.url().toString())
                       + QStringList{"--to"_s, two.url().toString()})
                 .exitCode,
             5);
    // Before any printer is asked: the one that is named is not there.
    const SlicerResult faulty = runSlicer(send({m_empty, "/nonexistent"_s}, deadUrl()));
    QCOMPARE(faulty.exitCode, 7);
    QCOMPARE(faulty.errors.count('\n'), 2);
}

void TestSeveralFiles::triesNoFurtherFileWithoutConnection()
{
    EXPECT_FAILURE(runSlicer(send({m_good, m_alsoGood}, deadUrl())), 3, "no connection (");
    const SlicerResult result
        = runSlicer(send({m_good, m_alsoGood}, deadUrl()) + QStringList("--json"_s));
    QCOMPARE(eventsNamed("file-result"_s, result.output).size(), 2);
}

ZY_TEST(TestSeveralFiles)

#include "tst_severalfiles.moc"
