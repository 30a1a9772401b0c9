// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter as a process, driven by the real client: what happens when all goes well.

#include "models.h"
#include "printerprocess.h"
#include "programs.h"
#include "slicer.h"
#include "testprogram.h"
#include "texts.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace
{

const QString model = QStringLiteral("part.zydlp");
const QVector<int> checkedAndStarted{2, 0};

QString text(const QJsonObject &reply, const char *key)
{
    return reply.value(QLatin1String(key)).toString();
}

} // namespace

class TestPrinter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void printsAModelToItsEnd();
    void reportsTheJobInItsOwnTime();
    void logsTheTimeLeftWithTheLayerBeingExposed();
    void appliesPrintParameters();
    void pausesAndGoesOnWithTheSameJob();
    void stopsAPrint();
    void printsAgainAfterAStop();
    void namesEveryStepOfTheWay();
    void answersTheVersionThatSlicersExpect();
    void keepsEveryModel();
    void printsOnWhileItsModelIsReplaced();
    void keepsTheModelWhenItsTransferIsCancelledAfterwards();
    void keepsItsModelsOverARestart();
    void resumesATransferOverARestart();
    void takesOverWhatACrashLeft();
    void endsWithSuccessOn_data();
    void endsWithSuccessOn();
    void saysItsVersionAndItsHelp();

private:
    bool begin(const char *arguments, int layers);

    std::unique_ptr<PrinterProcess> m_printer;
    std::unique_ptr<QTemporaryDir> m_local;
    Slicer m_slicer;
};

void TestPrinter::init()
{
    m_printer = std::make_unique<PrinterProcess>(PrinterProcess::NotStarted);
    m_local = std::make_unique<QTemporaryDir>();
}

/// A printer that holds a model of so many layers.
bool TestPrinter::begin(const char *arguments, int layers)
{
    writeFile(m_local->filePath(model), smallModel(layers));
    return m_printer->start(words(arguments)) && m_slicer.connectTo(m_printer->url())
        && m_slicer.send(m_local->filePath(model), model) == 1;
}

void TestPrinter::printsAModelToItsEnd()
{
    QVERIFY(begin("--speed 100", 30));
    QCOMPARE(readFile(m_printer->path(model)), smallModel(30));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);

    QVector<int> layers;
    QVector<int> times;
    QString word;
    QVERIFY(QTest::qWaitFor(
        [&] {
            const QJsonObject status = m_slicer.status();
            word = text(status, "printStatus");
            layers.append(text(status, "curSliceLayer").toInt());
            times.append(text(status, "printRemainTime").toInt());
            return word == QLatin1String("PRINT_COMPLETE");
        },
        60000));
    QVERIFY(std::is_sorted(layers.cbegin(), layers.cend()));
    QVERIFY(std::is_sorted(times.crbegin(), times.crend()));
    QVERIFY(layers.first() < layers.last());
    QVERIFY(times.first() > times.last());
    QCOMPARE(layers.last(), 30);
    QCOMPARE(times.last(), 0);
}

void TestPrinter::reportsTheJobInItsOwnTime()
{
    QVERIFY(begin("--speed 0.001", 40));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QJsonObject status = m_slicer.status();
    // 2 bottom layers of 30 s and 38 of 2.5 s, each with 0.5 s of rest and 2 * 5 mm at 120 mm/min;
    // then the plate goes up.
    QCOMPARE(text(status, "printRemainTime"), QStringLiteral("385"));
    QCOMPARE(text(status, "printStatus"), QStringLiteral("PRINT_PROCESSING"));
    QCOMPARE(text(status, "filename"), model);
    QCOMPARE(text(status, "sliceLayerCount"), QStringLiteral("40"));
    QCOMPARE(text(status, "curSliceLayer"), QStringLiteral("1"));
    QCOMPARE(text(status, "layerThickness"), QStringLiteral("0.05"));
    QCOMPARE(text(status, "resin"), QString::fromUtf8("Grau \xc2\xb5"));
    QCOMPARE(text(status, "initExposure"), QStringLiteral("30"));
    QCOMPARE(text(status, "printExposure"), QStringLiteral("2.5"));
    QCOMPARE(text(status, "delayLight"), QStringLiteral("0.5"));
    QCOMPARE(text(status, "printHeight"), QStringLiteral("5"));
    QCOMPARE(text(status, "eleSpeed"), QStringLiteral("120"));
    QCOMPARE(text(status, "bottomExposureNum"), QStringLiteral("2"));
}

void TestPrinter::logsTheTimeLeftWithTheLayerBeingExposed()
{
    QVERIFY(begin("--speed 50", 3));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    // As above: 2 layers of 35.5 s, one of 8 s, and 10 s for the plate.
    for (const char *line :
         {"layer 1 of 3, 0:01:29 left", "layer 2 of 3, 0:00:54 left", "layer 3 of 3, 0:00:18 left"})
        QVERIFY2(m_printer->waitForOutput(line), m_printer->output().constData());
}

void TestPrinter::appliesPrintParameters()
{
    QVERIFY(begin("--speed 0.001", 40));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    const auto set = [this](const char *key, const char *value) {
        m_slicer.setParameters({{QLatin1String(key), QLatin1String(value)}});
        return text(m_slicer.status(), key);
    };
    const auto remaining = [this] { return text(m_slicer.status(), "printRemainTime"); };
    QCOMPARE(set("printExposure", "4.50"), QStringLiteral("4.50"));
    QCOMPARE(remaining(), QStringLiteral("461")); // 38 layers, 2 s more each
    QCOMPARE(set("bottomExposureNum", "4"), QStringLiteral("4"));
    QCOMPARE(remaining(), QStringLiteral("512")); // 2 layers, 25.5 s more each
    QCOMPARE(set("initExposure", "20"), QStringLiteral("20"));
    QCOMPARE(remaining(), QStringLiteral("482")); // 3 layers are still to come, 10 s less each
    QCOMPARE(set("printHeight", "6"), QStringLiteral("6"));
    QCOMPARE(set("eleSpeed", "144"), QStringLiteral("144"));
    QCOMPARE(remaining(), QStringLiteral("482")); // a higher lift, and as much faster
    QCOMPARE(set("delayLight", "1.5"), QStringLiteral("1.5"));
    QCOMPARE(remaining(), QStringLiteral("521")); // 39 layers
    // Out of range, or no number: as before.
    QCOMPARE(set("printExposure", "0"), QStringLiteral("4.50"));
    QCOMPARE(set("printExposure", "soon"), QStringLiteral("4.50"));
    QCOMPARE(set("bottomExposureNum", "2.5"), QStringLiteral("4"));
    QCOMPARE(set("eleSpeed", ""), QStringLiteral("144"));
    QCOMPARE(remaining(), QStringLiteral("521"));
}

void TestPrinter::pausesAndGoesOnWithTheSameJob()
{
    QVERIFY(begin("--speed 1000", 3000));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.pause(), QStringLiteral("CMD_SUCCES"));
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_STOP")));
    const QJsonObject paused = m_slicer.status();
    QCOMPARE(m_slicer.pause(), QStringLiteral("CMD_FAIL"));
    QCOMPARE(m_slicer.print(QStringLiteral("other.zydlp")), (QVector<int>{2, 1}));
    QTest::qWait(100); // ten layers, if it went on
    QCOMPARE(m_slicer.status(), paused);

    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_PROCESSING"));
    const int layer = text(paused, "curSliceLayer").toInt();
    QTRY_VERIFY_WITH_TIMEOUT(text(m_slicer.status(), "curSliceLayer").toInt() > layer, 30000);
}

void TestPrinter::stopsAPrint()
{
    QVERIFY(begin("--speed 1000", 3000));
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_FAIL")); // nothing to stop
    QCOMPARE(m_slicer.pause(), QStringLiteral("CMD_FAIL"));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.print(model), QVector<int>{1}); // busy
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_SUCCES"));
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_END")));
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_FAIL"));
}

void TestPrinter::printsAgainAfterAStop()
{
    QVERIFY(begin("--speed 1000", 10));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_SUCCES"));
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_END")));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
}

void TestPrinter::namesEveryStepOfTheWay()
{
    QVERIFY(begin("--speed 0.001", 10)); // so slow that each step stays
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_GENERAL"));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_PROCESSING"));
    QCOMPARE(m_slicer.pause(), QStringLiteral("CMD_SUCCES"));
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_STOPING")); // the layer ends first
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_PROCESSING"));
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_SUCCES"));
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_STOPING")); // the plate goes up
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_FAIL"));
}

void TestPrinter::answersTheVersionThatSlicersExpect()
{
    QVERIFY(begin("", 1));
    QSignalSpy version(&m_slicer.client(), &ZySslEchoClient::checkVersion);
    m_slicer.client().versionCheckCmd();
    QVERIFY(version.wait(30000));
}

void TestPrinter::keepsEveryModel()
{
    QVERIFY(begin("", 5));
    writeFile(m_local->filePath(QStringLiteral("b")), smallModel(7));
    QCOMPARE(m_slicer.send(m_local->filePath(QStringLiteral("b")), QStringLiteral("b.zydlp")), 1);
    QCOMPARE(readFile(m_printer->path(model)), smallModel(5));
    QCOMPARE(readFile(m_printer->path(QStringLiteral("b.zydlp"))), smallModel(7));
    // The same name again replaces the model.
    QCOMPARE(m_slicer.send(m_local->filePath(QStringLiteral("b")), model), 1);
    QCOMPARE(readFile(m_printer->path(model)), smallModel(7));
    QCOMPARE(QDir(m_printer->path(QStringLiteral(".incoming"))).entryList(QDir::Files),
             QStringList());
}

void TestPrinter::printsOnWhileItsModelIsReplaced()
{
    QVERIFY(begin("--speed 1000", 400));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    writeFile(m_local->filePath(QStringLiteral("other")), smallModel(3));
    QCOMPARE(m_slicer.send(m_local->filePath(QStringLiteral("other")), model), 1);
    QCOMPARE(readFile(m_printer->path(model)), smallModel(3));
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
    QCOMPARE(text(m_slicer.status(), "curSliceLayer"), QStringLiteral("400"));
}

void TestPrinter::keepsTheModelWhenItsTransferIsCancelledAfterwards()
{
    QVERIFY(begin("--speed 0.001", 10));
    const QJsonObject cancel{{QStringLiteral("cmd"), QStringLiteral("CANCEL_FILE")}};
    QCOMPARE(m_slicer.ask(cancel).value(QLatin1String("errorcode")).toInt(-1), 0);
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_slicer.ask(cancel).value(QLatin1String("errorcode")).toInt(-1), 0);
    QCOMPARE(readFile(m_printer->path(model)), smallModel(10));
}

void TestPrinter::keepsItsModelsOverARestart()
{
    QVERIFY(begin("--speed 1000", 10));
    QCOMPARE(m_printer->stop(SIGTERM), 0);
    QVERIFY(m_printer->start(words("--speed 1000")));
    QVERIFY(m_printer->waitForOutput(": 1 there"));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
}

void TestPrinter::resumesATransferOverARestart()
{
    QByteArray bytes(16 << 20, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [i = 0U]() mutable {
        i = i * 1664525 + 1013904223;
        return char(i >> 24);
    });
    const QString file = m_local->filePath(QStringLiteral("big"));
    writeFile(file, bytes);
    QVERIFY(m_printer->start());
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    int exitCode = -1;
    QSignalSpy disconnected(&m_slicer.client(), &ZySslEchoClient::disconnected);
    const auto stopped = QObject::connect(&m_slicer.client(), &ZySslEchoClient::fileTransProgress,
                                          [&](const QString &, qint64, qint64 received) {
                                              if (received == 3 << 20)
                                                  exitCode = m_printer->stop(SIGTERM);
                                          });
    // Only close() ends a send loop whose printer is gone.
    QObject::connect(&m_slicer.client(), &ZySslEchoClient::disconnected, &m_slicer.client(),
                     &ZySslEchoClient::close);
    m_slicer.client().sendFile(file, QStringLiteral("big.bin"));
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 1, 30000);
    QCOMPARE(exitCode, 0);
    QObject::disconnect(stopped);

    QVERIFY(m_printer->start());
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QSignalSpy progress(&m_slicer.client(), &ZySslEchoClient::fileTransProgress);
    QCOMPARE(m_slicer.send(file, QStringLiteral("big.bin")), 2);
    QVERIFY(progress.at(0).at(2).toLongLong() >= 4 << 20);
    QVERIFY(readFile(m_printer->path(QStringLiteral("big.bin"))) == bytes);
}

void TestPrinter::takesOverWhatACrashLeft()
{
    QVERIFY(begin("", 5));
    QCOMPARE(m_printer->stop(SIGKILL), -1);
    // As if it had been killed between the end of a transfer and its taking over.
    const QString incoming = QStringLiteral(".incoming/left.zydlp");
    writeFile(m_printer->path(incoming), smallModel(6));
    QVERIFY(m_printer->start());
    QVERIFY(m_printer->waitForOutput(": 2 there"));
    QCOMPARE(readFile(m_printer->path(QStringLiteral("left.zydlp"))), smallModel(6));
    QVERIFY(!QFile::exists(m_printer->path(incoming)));
}

void TestPrinter::endsWithSuccessOn_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::addColumn<bool>("isPrinting");
    QTest::newRow("SIGTERM, idle") << SIGTERM << false;
    QTest::newRow("SIGINT, idle") << SIGINT << false;
    QTest::newRow("SIGHUP, idle") << SIGHUP << false;
    QTest::newRow("SIGTERM, printing") << SIGTERM << true;
    QTest::newRow("SIGINT, printing") << SIGINT << true;
}

void TestPrinter::endsWithSuccessOn()
{
    QFETCH(const int, signalNumber);
    QFETCH(const bool, isPrinting);
    QVERIFY(begin("--speed 1000", 3000));
    if (isPrinting)
        QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QCOMPARE(m_printer->stop(signalNumber), 0);
    QVERIFY(m_printer->output().endsWith("stopping\n"));
    QCOMPARE(m_printer->errors(), QByteArray());
}

void TestPrinter::saysItsVersionAndItsHelp()
{
    const RunResult version = runPrinter({QStringLiteral("--version")});
    QCOMPARE(version.exitCode, 0);
    QVERIFY(version.output.startsWith("zyprinter "));
    const RunResult help = runPrinter({QStringLiteral("--help")});
    QCOMPARE(help.exitCode, 0);
    for (const char *option :
         {"--dir",          "--port",        "--token",    "--speed",     "--name",
          "--fail-at",      "--slow-check",  "--refuse",   "--view",      "--preview",
          "--version",      "--unprotected", "--max-size", "--keep-free", "--max-connections",
          "--allow-origin", "--silence",     "--cert",     "--key",       "Exit codes"})
        QVERIFY2(help.output.contains(option), option);
}

ZY_TEST(TestPrinter)
#include "tst_printing.moc"
