// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file to many printers at once.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

#include <memory>
#include <vector>

namespace
{

class Printers
{
public:
    explicit Printers(int count)
    {
        for (int i = 0; i < count; ++i)
            m_printers.push_back(std::make_unique<PrinterProcess>());
    }

    QStringList destinations() const
    {
        QStringList arguments;
        for (const auto &printer : m_printers)
            arguments += {"--to"_s, printer->url().toString()};
        return arguments;
    }
    const std::vector<std::unique_ptr<PrinterProcess>> &all() const { return m_printers; }

private:
    std::vector<std::unique_ptr<PrinterProcess>> m_printers;
};

} // namespace

class TestFleet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sendsToTwentyPrintersAtOnce();
    void sumsUpWhatBecameOfEach();
    void sumsUpWithoutTransfersWhenNothingIsSent();
    void tellsFailuresApartInJson();
    void interruptsAll();

private:
    QTemporaryDir m_directory;
    QString m_model;
};

void TestFleet::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s), 400);
}

void TestFleet::sendsToTwentyPrintersAtOnce()
{
    const Printers printers(20);
    const SlicerResult result = runSlicer(QStringList{"send"_s, m_model} + printers.destinations());
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    const QByteArray bytes = zytest::readFile(m_model);
    for (const auto &printer : printers.all()) {
        QVERIFY(zytest::readFile(printer->pathOf("part.zydlp"_s)) == bytes);
        QVERIFY(
            result.output.contains(printer->url().toString().toUtf8() + ": part.zydlp: sent, "));
    }
    QVERIFY(result.output.contains("\nPRINTER"));
    QCOMPARE(result.output.mid(result.output.indexOf("\nPRINTER")).count("ok\n"), 20);
}

void TestFleet::sumsUpWhatBecameOfEach()
{
    const Printers printers(1);
    const QString settings = m_directory.filePath("settings.ini"_s);
    const PrinterProcess refusing({"--refuse"_s});
    QCOMPARE(runSlicer({"printers"_s, "add"_s, "good"_s, printers.all().front()->url().toString()},
                       settings)
                 .exitCode,
             0);
    QCOMPARE(
        runSlicer({"printers"_s, "add"_s, "bad"_s, refusing.url().toString()}, settings).exitCode,
        0);
    const SlicerResult result = runSlicer(
        {"send"_s, m_model, "--to"_s, "good"_s, "--to"_s, "bad"_s, "--to"_s, deadUrl()}, settings);
    QCOMPARE(result.exitCode, 10);
    QCOMPARE(result.errors.count('\n'), 2);
    VERIFY_TEXT(
        result.errors.contains("zyslicer: refused by the printer: part.zydlp to bad (ws://"),
        result.errors);
    VERIFY_TEXT(result.errors.contains("zyslicer: no connection (connection refused): ws://"),
                result.errors);
    const QByteArray table = result.output.mid(result.output.indexOf("PRINTER"));
    QCOMPARE(table.count('\n'), 4);
    VERIFY_TEXT(table.contains("ok\nbad "), table);
    VERIFY_TEXT(table.contains("refused by the printer\n"), table);
    VERIFY_TEXT(table.contains("no connection (connection refused)\n"), table);
}

void TestFleet::sumsUpWithoutTransfersWhenNothingIsSent()
{
    const Printers printers(2);
    const SlicerResult result = runSlicer(QStringList("version"_s) + printers.destinations());
    QCOMPARE(result.exitCode, 0);
    const QByteArray table = result.output.mid(result.output.indexOf("PRINTER"));
    VERIFY_TEXT(table.startsWith("PRINTER ") && table.count("  ok\n") == 2, table);
    for (const char *title : {"SENT", "TIME", "RATE", "-"})
        VERIFY_TEXT(!table.contains(title), table);
}

void TestFleet::tellsFailuresApartInJson()
{
    const Printers printers(2);
    const SlicerResult result = runSlicer(QStringList{"version"_s, "--json"_s, "--to"_s, deadUrl()}
                                          + printers.destinations());
    QCOMPARE(result.exitCode, 10);
    QMap<QString, int> codes;
    for (const QJsonObject &event : eventsNamed("result"_s, result.output))
        codes.insert(event.value("printer"_s).toString(), event.value("code"_s).toInt());
    QCOMPARE(codes.size(), 3);
    for (const auto &printer : printers.all())
        QCOMPARE(codes.value(printer->url().toString(), -1), 0);
    QCOMPARE(codes.values().count(3), 1);
}

void TestFleet::interruptsAll()
{
    const Printers printers(3);
    const QString big = zytest::writeFile(m_directory.filePath("big.zydlp"_s),
                                          zytest::randomBytes(qint64(zytest::chunkBytes) * 60));
    SlicerProcess slicer(QStringList{"send"_s, big, "--json"_s} + printers.destinations());
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    QCOMPARE(slicer.errors().count("zyslicer: interrupted: big.zydlp to "), 3);
    for (const auto &printer : printers.all())
        QVERIFY(printer->pathOf("wifi_tranfer.tmp"_s).isEmpty());
}

ZY_TEST(TestFleet)

#include "tst_fleet.moc"
