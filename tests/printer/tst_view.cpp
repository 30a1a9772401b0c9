// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What zyprinter shows people: the live view on a terminal, and the picture of the layer.

#include "displaywidth.h"
#include "models.h"
#include "printerprocess.h"
#include "programs.h"
#include "slicer.h"
#include "terminalprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

namespace
{

const QString model = QStringLiteral("part.zydlp");
const QSize usual(80, 24);

} // namespace

class TestPrinterView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsThePrinter();
    void showsAPrintToItsEnd();
    void showsHowManyAreConnected();
    void givesTheTerminalBack();
    void endsWithItsTerminal();
    void fitsEveryTerminal_data();
    void fitsEveryTerminal();
    void keepsWideNamesOnOneLine();
    void followsTheTerminalsSize();
    void holdsUpNobodyWhenTheTerminalStandsStill();
    void keepsToLinesWithoutATerminal();
    void keepsToLinesOnADumbTerminal();

    void showsTheLayerAsAPicture();
    void showsTheLastLayerOfAFastPrint();
    void rejectsItsPreviewDirectory_data();
    void rejectsItsPreviewDirectory();

private:
    bool send(const QUrl &url, int layers);

    std::unique_ptr<TerminalProcess> m_terminal;
    std::unique_ptr<QTemporaryDir> m_local;
    Slicer m_slicer;
};

void TestPrinterView::init()
{
    m_terminal = std::make_unique<TerminalProcess>();
    m_local = std::make_unique<QTemporaryDir>();
}

bool TestPrinterView::send(const QUrl &url, int layers)
{
    writeFile(m_local->filePath(model), smallModel(layers));
    return m_slicer.connectTo(url) && m_slicer.send(m_local->filePath(model), model) == 1;
}

void TestPrinterView::showsThePrinter()
{
    QVERIFY(m_terminal->start(words("--view --name bench"), QSize(120, 24)));
    QVERIFY(m_terminal->shows(QStringLiteral("IDLE")));
    const QStringList screen = m_terminal->screen();
    QCOMPARE(screen.at(0),
             QStringLiteral("bench  %1  0 connections").arg(m_terminal->url().toString()));
    QCOMPARE(screen.at(1), QStringLiteral("models in ") + m_terminal->path({}));
}

void TestPrinterView::showsAPrintToItsEnd()
{
    QVERIFY(m_terminal->start(words("--view --speed 100"), usual));
    QVERIFY(send(m_terminal->url(), 30));
    QVERIFY(m_terminal->shows(QStringLiteral("received \"part.zydlp\"")));
    m_slicer.print(model);
    QVERIFY(m_terminal->shows(QStringLiteral("PRINTING  part.zydlp")));
    QVERIFY(m_terminal->shows(QStringLiteral("time left 0:0")));
    QVERIFY(m_terminal->shows(
        QStringLiteral("exposure 2.5 s (2 layers: 30 s)  rest 0.5 s  lift 5 mm")));
    QVERIFY(m_terminal->shows(QStringLiteral("COMPLETE  part.zydlp")));
    QVERIFY(m_terminal->shows(QLatin1Char('[') + QString(80 - 2 - 12, QLatin1Char('#'))
                              + QStringLiteral("] 30/30 100 %")));
    QVERIFY(m_terminal->shows(QStringLiteral("time left 0:00:00  Grau")));
    QVERIFY(m_terminal->shows(QStringLiteral("complete: \"part.zydlp\"")));
}

void TestPrinterView::showsHowManyAreConnected()
{
    QVERIFY(m_terminal->start(words("--view"), usual));
    QVERIFY(m_slicer.connectTo(m_terminal->url()));
    QVERIFY(m_terminal->shows(QStringLiteral("  1 connection")));
    {
        Slicer other;
        QVERIFY(other.connectTo(m_terminal->url()));
        QVERIFY(m_terminal->shows(QStringLiteral("  2 connections")));
    }
    QVERIFY(m_terminal->shows(QStringLiteral("  1 connection")));
}

void TestPrinterView::givesTheTerminalBack()
{
    QVERIFY(m_terminal->start(words("--view"), usual));
    QVERIFY(m_terminal->shows(QStringLiteral("IDLE")));
    QVERIFY(m_terminal->output().startsWith("zyprinter: listening on ws://"));
    QCOMPARE(m_terminal->output().count("\x1b[?1049h"), 1);
    QCOMPARE(m_terminal->output().count("\x1b[?1049l"), 0);
    m_terminal->type('\x03');
    QCOMPARE(m_terminal->waitForEnd(), 0);
    QVERIFY(m_terminal->output().endsWith("\x1b[?25h\x1b[?1049l"));
}

void TestPrinterView::endsWithItsTerminal()
{
    QVERIFY(m_terminal->start(words("--view"), usual));
    QVERIFY(m_terminal->shows(QStringLiteral("IDLE")));
    m_terminal->hangUp();
    QCOMPARE(m_terminal->waitForEnd(), 0);
}

void TestPrinterView::fitsEveryTerminal_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(200, 60);
    QTest::newRow("narrow") << QSize(30, 24);
    QTest::newRow("low") << QSize(80, 5);
    QTest::newRow("tiny") << QSize(8, 3);
    QTest::newRow("one character") << QSize(1, 1);
}

void TestPrinterView::fitsEveryTerminal()
{
    QFETCH(const QSize, size);
    QVERIFY(m_terminal->start(words("--view --speed 1000"), size));
    QVERIFY(send(m_terminal->url(), 30));
    m_slicer.print(model);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_terminal->screen().isEmpty(), 30000);
    m_terminal->type('\x03');
    QCOMPARE(m_terminal->waitForEnd(), 0);
    const QStringList screen = m_terminal->screen();
    QCOMPARE(screen.size(), size.height());
    for (const QString &line : screen)
        QVERIFY2(line.size() <= size.width(), qPrintable(line));
}

void TestPrinterView::keepsWideNamesOnOneLine()
{
    const QString name = QString::fromUtf8("\346\250\241\345\236\213\360\237\246\204").repeated(5);
    QVERIFY(m_terminal->start({QStringLiteral("--view"), QStringLiteral("--name"), name},
                              QSize(30, 24)));
    QVERIFY(m_terminal->shows(QStringLiteral("IDLE")));
    QVERIFY(m_terminal->shows(name));
    for (const QString &line : m_terminal->screen())
        QVERIFY2(zyapp::displayWidth(line) <= 30, qPrintable(line));
}

void TestPrinterView::followsTheTerminalsSize()
{
    QVERIFY(m_terminal->start(words("--view --speed 0.001"), usual));
    QVERIFY(send(m_terminal->url(), 30));
    m_slicer.print(model);
    const QString figures = QStringLiteral("] 1/30 3 %");
    const auto isWide = [&](int width) {
        const QStringList bars = m_terminal->screen().filter(figures);
        return bars.size() == 1 && bars.at(0).size() == width;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isWide(80), 30000);
    m_terminal->resize(QSize(50, 24));
    QTRY_VERIFY_WITH_TIMEOUT(isWide(50), 30000);
    m_terminal->resize(QSize(132, 24));
    QTRY_VERIFY_WITH_TIMEOUT(isWide(132), 30000);
}

void TestPrinterView::holdsUpNobodyWhenTheTerminalStandsStill()
{
    QVERIFY(m_terminal->start(words("--view --speed 1000"), QSize(200, 60)));
    // Nothing reads the terminal from here on, and several screens fill it.
    QVERIFY(send(m_terminal->url(), 300));
    m_slicer.print(model);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
    QVERIFY(m_terminal->shows(QStringLiteral("COMPLETE  part.zydlp")));
}

void TestPrinterView::keepsToLinesWithoutATerminal()
{
    PrinterProcess printer(PrinterProcess::NotStarted);
    QVERIFY(printer.start(words("--view --speed 1000")));
    QVERIFY(send(printer.url(), 20));
    m_slicer.print(model);
    QVERIFY(printer.waitForOutput("complete: \"part.zydlp\"\n"));
    // The seconds depend on when within the layer the line is written.
    const QRegularExpression half(QStringLiteral("layer 10 of 20, 0:01:\\d\\d left\n"));
    QVERIFY(half.match(QString::fromUtf8(printer.output())).hasMatch());
    QVERIFY(!printer.output().contains('\x1b'));
}

void TestPrinterView::keepsToLinesOnADumbTerminal()
{
    QVERIFY(m_terminal->start(words("--view"), usual, "dumb"));
    QVERIFY(send(m_terminal->url(), 20));
    QTRY_VERIFY_WITH_TIMEOUT(m_terminal->output().contains("received \"part.zydlp\""), 30000);
    QVERIFY(!m_terminal->output().contains('\x1b'));
}

void TestPrinterView::showsTheLayerAsAPicture()
{
    PrinterProcess printer(PrinterProcess::NotStarted);
    QVERIFY(printer.start(words("--speed 0.001 --preview") << m_local->path()));
    QVERIFY(send(printer.url(), 20));
    m_slicer.print(model);
    QImage image;
    QTRY_VERIFY_WITH_TIMEOUT(image.load(m_local->filePath(QStringLiteral("layer.png"))), 30000);
    QCOMPARE(image.size(), QSize(16, 8));
    const QByteArray mask = smallMask(1);
    for (int i = 0; i < mask.size(); ++i)
        QCOMPARE(qGray(image.pixel(i % 16, i / 16)), int(uchar(mask.at(i))));
}

void TestPrinterView::showsTheLastLayerOfAFastPrint()
{
    PrinterProcess printer(PrinterProcess::NotStarted);
    QVERIFY(printer.start(words("--speed 10000 --preview") << m_local->path()));
    QVERIFY(send(printer.url(), 20));
    m_slicer.print(model);
    const QByteArray mask = smallMask(20);
    const auto isLast = [&] {
        const QImage image(m_local->filePath(QStringLiteral("layer.png")));
        return image.size() == QSize(16, 8) && qGray(image.pixel(9, 0)) == uchar(mask.at(9));
    };
    QTRY_VERIFY_WITH_TIMEOUT(isLast(), 30000);
}

void TestPrinterView::rejectsItsPreviewDirectory_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("missing") << QStringLiteral("/nonexistent/pictures")
                             << QByteArray("does not exist");
    QTest::newRow("a file") << QStringLiteral("/dev/null") << QByteArray("is no directory");
    QTest::newRow("not writable") << QStringLiteral("/proc") << QByteArray("is not writable");
}

void TestPrinterView::rejectsItsPreviewDirectory()
{
    QFETCH(const QString, directory);
    QFETCH(const QByteArray, fault);
    const RunResult result = runPrinter(
        {QStringLiteral("--dir"), m_local->path(), QStringLiteral("--preview"), directory});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.errors,
             "zyprinter: preview directory " + fault + ": " + directory.toUtf8()
                 + "; give --preview a directory that can be written\n");
}

ZY_TEST(TestPrinterView)
#include "tst_view.moc"
