// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Progress on a terminal: zyslicer behind a pseudo-terminal of a known size.

#include "displaywidth.h"
#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "terminal.h"
#include "testprogram.h"
#include "texts.h"

#include <QRegularExpression>
#include <QTest>

namespace
{

struct TerminalResult {
    int exitCode = -1;
    QByteArray screen; ///< all that was written, control sequences included
};

/// Runs zyslicer with a terminal of @p columns and @p rows as its standard output and input;
/// types Ctrl-C once @p interruptAt has been written.
TerminalResult runOnTerminal(const QStringList &arguments, unsigned short columns,
                             unsigned short rows, const QByteArray &interruptAt = {})
{
    zytest::Terminal terminal;
    if (!terminal.start(QStringLiteral(ZYSLICER), arguments, QSize(columns, rows)))
        return {};
    if (!interruptAt.isEmpty()
        && zytest::waitUntil([&] { return terminal.output().contains(interruptAt); }))
        terminal.type('\003');
    const int exitCode = terminal.waitForEnd();
    return {exitCode, terminal.output()};
}

/// The lines drawn, without control sequences.
QStringList drawnLines(const QByteArray &screen)
{
    QString text = QString::fromUtf8(screen);
    text.remove(QRegularExpression("\\x1b\\[[0-9]*[A-Z]"_s));
    text.remove(QLatin1Char('\r'));
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class TestTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void drawsABarOverItself();
    void keepsToTheWidth_data();
    void keepsToTheWidth();
    void keepsWideNamesOnOneLine_data();
    void keepsWideNamesOnOneLine();
    void drawsOneLineForEachPrinter();
    void writesPlainLinesWhenTheTerminalIsTooLow();
    void cancelsWhenCtrlCIsTyped();
    void drawsTheLayersOfAPrint();

private:
    QTemporaryDir m_directory;
    QString m_file;
    QString m_model;
};

void TestTerminal::initTestCase()
{
    m_file = zytest::writeFile(m_directory.filePath("file.zydlp"_s),
                               zytest::randomBytes(qint64(zytest::chunkBytes) * 12));
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
}

void TestTerminal::drawsABarOverItself()
{
    PrinterProcess printer;
    const TerminalResult result
        = runOnTerminal({"send"_s, m_model, "--to"_s, printer.url().toString()}, 100, 24);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.screen.contains("\033[1A\033[J"));
    const QStringList lines = drawnLines(result.screen);
    VERIFY_TEXT(lines.filter("part.zydlp: sent, "_s).size() == 1, result.screen);
    const QRegularExpression bar("^part\\.zydlp  \\[=+\\]  100 %  .* KiB  .*/s  0:0\\d$"_s);
    VERIFY_TEXT(bar.match(lines.last()).hasMatch(), result.screen);
}

void TestTerminal::keepsToTheWidth_data()
{
    QTest::addColumn<int>("columns");
    for (const int columns : {1, 20, 40, 60, 80, 200})
        QTest::newRow(qPrintable("%1 columns"_s.arg(columns))) << columns;
}

void TestTerminal::keepsToTheWidth()
{
    QFETCH(int, columns);
    PrinterProcess printer;
    const TerminalResult result
        = runOnTerminal({"send"_s, m_file, "--to"_s, printer.url().toString()},
                        static_cast<unsigned short>(columns), 24);
    QCOMPARE(result.exitCode, 8); // no model
    int bars = 0;
    for (const QString &line : drawnLines(result.screen)) {
        // News and errors are written in full, progress has to fit.
        if (line.contains(": "_s))
            continue;
        QVERIFY2(line.size() < std::max(columns, 2), qPrintable(line));
        bars += line.contains(QLatin1Char('[')) ? 1 : 0;
    }
    QCOMPARE(bars > 0, columns > 30);
}

void TestTerminal::keepsWideNamesOnOneLine_data()
{
    keepsToTheWidth_data();
}

void TestTerminal::keepsWideNamesOnOneLine()
{
    QFETCH(int, columns);
    PrinterProcess printer;
    const QString name = QString::fromUtf8("\346\250\241\345\236\213\360\237\246\204").repeated(6);
    const TerminalResult result = runOnTerminal(
        {"send"_s, m_model, "--to"_s, printer.url().toString(), "--as"_s, name + ".zydlp"_s},
        static_cast<unsigned short>(columns), 24);
    QCOMPARE(result.exitCode, 0);
    for (const QString &line : drawnLines(result.screen)) {
        if (!line.contains(": "_s))
            QVERIFY2(zyapp::displayWidth(line) < std::max(columns, 2), qPrintable(line));
    }
    QVERIFY(!printer.pathOf(name + ".zydlp"_s).isEmpty());
}

void TestTerminal::drawsOneLineForEachPrinter()
{
    PrinterProcess one;
    PrinterProcess two;
    const TerminalResult result = runOnTerminal(
        {"send"_s, m_model, "--to"_s, one.url().toString(), "--to"_s, two.url().toString()}, 100,
        24);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.screen.contains("\033[2A\033[J"));
    const QStringList lines = drawnLines(result.screen);
    for (const PrinterProcess *printer : {&one, &two}) {
        const QString label = printer->url().toString();
        VERIFY_TEXT(!lines.filter(label + "  ["_s).isEmpty(), result.screen);
    }
}

void TestTerminal::writesPlainLinesWhenTheTerminalIsTooLow()
{
    PrinterProcess printer;
    const TerminalResult result
        = runOnTerminal({"send"_s, m_model, "--to"_s, printer.url().toString()}, 100, 2);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(!result.screen.contains('\033'));
    QVERIFY(result.screen.contains("part.zydlp: 100 % "));
}

void TestTerminal::cancelsWhenCtrlCIsTyped()
{
    PrinterProcess printer;
    const QString big = zytest::writeFile(m_directory.filePath("big.zydlp"_s),
                                          zytest::randomBytes(qint64(zytest::chunkBytes) * 80));
    const TerminalResult result
        = runOnTerminal({"send"_s, big, "--to"_s, printer.url().toString()}, 100, 24, "MiB/s");
    QCOMPARE(result.exitCode, 130);
    VERIFY_TEXT(result.screen.contains("zyslicer: interrupted: big.zydlp"), result.screen);
}

void TestTerminal::drawsTheLayersOfAPrint()
{
    PrinterProcess printer({"--speed"_s, "20000"_s});
    const TerminalResult result
        = runOnTerminal({"send"_s, m_model, "--to"_s, printer.url().toString(), "--print"_s,
                         "--watch"_s, "--interval"_s, "0.05"_s},
                        100, 24);
    QCOMPARE(result.exitCode, 0);
    const QRegularExpression bar(
        "^part\\.zydlp  \\[=+\\]  100 %  complete  layer 20/20  0:00 left$"_s);
    VERIFY_TEXT(bar.match(drawnLines(result.screen).last()).hasMatch(), result.screen);
}

ZY_TEST(TestTerminal)

#include "tst_terminal.moc"
