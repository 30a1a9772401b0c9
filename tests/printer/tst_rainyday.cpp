// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter as a process when things go wrong: bad models, tokens, faults on purpose.

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
const QVector<int> checkFailed{2, 3};
const QVector<int> tokenRejected{4};
const QVector<int> busy{1};

QString text(const QJsonObject &reply, const char *key)
{
    return reply.value(QLatin1String(key)).toString();
}

int number(const QJsonObject &reply, const char *key)
{
    return reply.value(QLatin1String(key)).toInt(-1);
}

} // namespace

class TestPrinterRainyDay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsButDoesNotPrintWhatIsNoModel_data();
    void keepsButDoesNotPrintWhatIsNoModel();
    void doesNotPrintWhatItDoesNotHave_data();
    void doesNotPrintWhatItDoesNotHave();
    void writesOnlyIntoItsOwnDirectory_data();
    void writesOnlyIntoItsOwnDirectory();
    void failsWhenTheModelIsDamagedDuringThePrint();

    void asksForTheToken();
    void takesTheTokenFromTheEnvironment();
    void refusesATransferWithAWrongToken_data();
    void refusesATransferWithAWrongToken();

    void failsAtTheLayerAskedFor();
    void refusesEverythingWhenAskedTo();
    void servesOthersDuringASlowCheck();
    void startsAfterASlowCheck();
    void endsDuringASlowCheck();
    void makesNamesFromTheWireHarmlessInItsLog();

private:
    bool begin(const char *arguments, int layers);

    std::unique_ptr<PrinterProcess> m_printer;
    std::unique_ptr<QTemporaryDir> m_local;
    Slicer m_slicer;
};

void TestPrinterRainyDay::init()
{
    m_printer = std::make_unique<PrinterProcess>(PrinterProcess::NotStarted);
    m_local = std::make_unique<QTemporaryDir>();
}

/// A printer that holds a model of so many layers.
bool TestPrinterRainyDay::begin(const char *arguments, int layers)
{
    writeFile(m_local->filePath(model), smallModel(layers));
    return m_printer->start(words(arguments)) && m_slicer.connectTo(m_printer->url())
        && m_slicer.send(m_local->filePath(model), model) == 1;
}

void TestPrinterRainyDay::keepsButDoesNotPrintWhatIsNoModel_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("fault");
    QByteArray damaged = smallModel(20);
    damaged[damaged.size() - 6] = char(~damaged.at(damaged.size() - 6));
    QTest::newRow("other content")
        << QByteArray(100000, 'x') << QByteArray("the magic number is missing");
    QTest::newRow("one byte") << QByteArray("x") << QByteArray("the magic number is missing");
    QTest::newRow("damaged layer") << damaged << QByteArray("layer 20: CRC mismatch");
    QTest::newRow("cut off") << smallModel(20).left(500) << QByteArray("file is cut off");
}

void TestPrinterRainyDay::keepsButDoesNotPrintWhatIsNoModel()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, fault);
    writeFile(m_local->filePath(model), bytes);
    QVERIFY(m_printer->start());
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 2);
    QVERIFY(readFile(m_printer->path(model)) == bytes);
    QVERIFY2(m_printer->waitForOutput("received \"part.zydlp\": no valid model: "),
             m_printer->output().constData());
    QCOMPARE(m_slicer.print(model), checkFailed);
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_GENERAL"));
    QVERIFY2(m_printer->waitForOutput("check of \"part.zydlp\" failed: "),
             m_printer->output().constData());
    QVERIFY2(m_printer->output().count(fault) == 2, m_printer->output().constData());
}

void TestPrinterRainyDay::doesNotPrintWhatItDoesNotHave_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.zydlp");
    QTest::newRow("no name") << QString();
    QTest::newRow("absolute") << QStringLiteral("/part.zydlp");
    QTest::newRow("above") << QStringLiteral("../part.zydlp");
    QTest::newRow("the directory") << QStringLiteral(".");
    QTest::newRow("a directory") << QStringLiteral("folder");
    QTest::newRow("below") << QStringLiteral("folder/part.zydlp");
    QTest::newRow("hidden") << QStringLiteral(".incoming");
}

void TestPrinterRainyDay::doesNotPrintWhatItDoesNotHave()
{
    QFETCH(const QString, name);
    QVERIFY(begin("--unprotected", 5));
    QVERIFY(QDir(m_printer->path({})).mkdir(QStringLiteral("folder")));
    writeFile(m_printer->path(QStringLiteral("folder/part.zydlp")), smallModel(5));
    QCOMPARE(m_slicer.print(name), checkFailed);
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
}

void TestPrinterRainyDay::writesOnlyIntoItsOwnDirectory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray slash("a name with a slash is not accepted");
    const QByteArray noName("it could not get the name that the slicer gave");
    QTest::newRow("above") << QStringLiteral("../evil.zydlp") << slash;
    QTest::newRow("far above") << QStringLiteral("../../evil.zydlp") << slash;
    QTest::newRow("absolute") << QStringLiteral("%1/evil.zydlp") << slash;
    QTest::newRow("below") << QStringLiteral("below/evil.zydlp") << noName;
    QTest::newRow("roundabout") << QStringLiteral("../.incoming/evil.zydlp") << slash;
    QTest::newRow("hidden") << QStringLiteral(".evil")
                            << QByteArray("a name that begins with a dot is not accepted");
    QTest::newRow("parent") << QStringLiteral("..") << noName;
    QTest::newRow("no name") << QString() << noName;
    QTest::newRow("the reception file") << QStringLiteral("wifi_tranfer.tmp") << noName;
    QTest::newRow("too long") << QString(300, QLatin1Char('e')) << noName;
}

void TestPrinterRainyDay::writesOnlyIntoItsOwnDirectory()
{
    QFETCH(QString, name);
    QFETCH(const QByteArray, reason);
    // Two levels of its own, so that whatever lands above is seen.
    const QString directory = m_local->filePath(QStringLiteral("a/b"));
    QVERIFY(QDir().mkpath(directory));
    if (name.contains(QLatin1Char('%')))
        name = name.arg(m_local->path());
    QTemporaryDir source;
    const QString file = source.filePath(model);
    writeFile(file, smallModel(3));
    QVERIFY(
        m_printer->start({QStringLiteral("--dir"), directory, QStringLiteral("--unprotected")}));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(file, name), 2);
    QVERIFY2(m_printer->waitForOutput("\": not kept: " + reason), m_printer->output().constData());
    QDir everything(m_local->path());
    everything.setFilter(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(everything.entryList(), QStringList{QStringLiteral("a")});
    everything.cd(QStringLiteral("a"));
    QCOMPARE(everything.entryList(), QStringList{QStringLiteral("b")});
    everything.cd(QStringLiteral("b"));
    QCOMPARE(everything.entryList(),
             (QStringList{QStringLiteral(".incoming"), QStringLiteral(".zyprinter.lock")}));
    everything.cd(QStringLiteral(".incoming"));
    QCOMPARE(everything.entryList(), QStringList());
    // And goes on working.
    QCOMPARE(m_slicer.send(file, model), 1);
}

void TestPrinterRainyDay::failsWhenTheModelIsDamagedDuringThePrint()
{
    QVERIFY(begin("--speed 1000", 400));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QFile file(m_printer->path(model));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(file.size() - 1000)); // seconds away, even at this speed
    QCOMPARE(file.write(QByteArray(500, 'x')), 500);
    file.close();
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_FAIL")));
    const QString layer = text(m_slicer.status(), "curSliceLayer");
    QVERIFY(m_printer->waitForOutput("failed: \"part.zydlp\": layer " + layer.toUtf8()
                                     + ": CRC mismatch"));
}

void TestPrinterRainyDay::asksForTheToken()
{
    const QString token = QStringLiteral("s3cret");
    QVERIFY(begin("--unprotected --token s3cret --speed 0.001", 50)); // sent without a token
    for (const QString &wrong : {QString(), QStringLiteral("S3CRET"), QStringLiteral("s3cret ")}) {
        QCOMPARE(m_slicer.print(model, wrong), tokenRejected);
        QCOMPARE(m_slicer.pause(wrong), QStringLiteral("TOKEN_ERROR"));
        QCOMPARE(m_slicer.stop(wrong), QStringLiteral("TOKEN_ERROR"));
        const QJsonObject status = m_slicer.status(wrong);
        QCOMPARE(text(status, "printStatus"), QStringLiteral("TOKEN_ERROR"));
        QCOMPARE(text(status, "printExposure"), QString());
        m_slicer.setParameters({{QStringLiteral("printExposure"), QStringLiteral("9")}}, wrong);
        QVERIFY(text(m_slicer.status(token), "printExposure") != QStringLiteral("9"));
    }
    QCOMPARE(m_slicer.print(model, token), checkedAndStarted);
    m_slicer.setParameters({{QStringLiteral("printExposure"), QStringLiteral("9")}}, token);
    QCOMPARE(text(m_slicer.status(token), "printExposure"), QStringLiteral("9"));
    QCOMPARE(m_slicer.pause(token), QStringLiteral("CMD_SUCCES"));
    QCOMPARE(m_slicer.stop(token), QStringLiteral("CMD_SUCCES"));
    QVERIFY(!m_printer->output().contains("s3cret"));
}

void TestPrinterRainyDay::takesTheTokenFromTheEnvironment()
{
    qputenv("ZYPRINTER_TOKEN", "fromenv");
    const bool hasBegun = begin("--unprotected", 5);
    qunsetenv("ZYPRINTER_TOKEN");
    QVERIFY(hasBegun);
    QCOMPARE(m_slicer.print(model), tokenRejected);
    QCOMPARE(m_slicer.print(model, QStringLiteral("fromenv")), checkedAndStarted);
}

void TestPrinterRainyDay::refusesATransferWithAWrongToken_data()
{
    QTest::addColumn<QString>("protection");
    QTest::newRow("by itself") << QStringLiteral("--unprotected");
    QTest::newRow("by the library") << QString();
}

void TestPrinterRainyDay::refusesATransferWithAWrongToken()
{
    QFETCH(const QString, protection);
    QVERIFY(m_printer->start(words("--token s3cret") + words(qPrintable(protection))));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QJsonObject request{{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                        {QStringLiteral("filename"), QStringLiteral("other")},
                        {QStringLiteral("size"), QStringLiteral("10")},
                        {QStringLiteral("key"), QStringLiteral("1")},
                        {QStringLiteral("token"), QStringLiteral("guess")}};
    const QJsonObject refusal = m_slicer.ask(request);
    QCOMPARE(number(refusal, "errorcode"), 4);
    QCOMPARE(number(refusal, "wifistate"), 6);
    QVERIFY(m_printer->waitForOutput("refused a transfer: wrong token"));
    request.insert(QStringLiteral("token"), QStringLiteral("s3cret"));
    QCOMPARE(number(m_slicer.ask(request), "errorcode"), 0);
    QVERIFY(m_printer->waitForOutput("transfer accepted"));
}

void TestPrinterRainyDay::failsAtTheLayerAskedFor()
{
    QVERIFY(begin("--speed 1000 --fail-at 7", 20));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_FAIL")));
    QCOMPARE(text(m_slicer.status(), "curSliceLayer"), QStringLiteral("7"));
    QVERIFY(m_printer->waitForOutput(
        "failed: \"part.zydlp\": layer 7: failure asked for by --fail-at"));
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
}

void TestPrinterRainyDay::refusesEverythingWhenAskedTo()
{
    writeFile(m_local->filePath(model), smallModel(5));
    QVERIFY(m_printer->start(words("--refuse")));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), -1001);
    QVERIFY(!QFile::exists(m_printer->path(model)));
    QCOMPARE(m_slicer.print(model), busy);
    QCOMPARE(m_slicer.pause(), QStringLiteral("CMD_FAIL"));
    QCOMPARE(m_slicer.stop(), QStringLiteral("CMD_FAIL"));
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_GENERAL"));
}

void TestPrinterRainyDay::servesOthersDuringASlowCheck()
{
    QVERIFY(begin("--slow-check 3600", 5));
    QSignalSpy answers(&m_slicer.client(), &ZySslEchoClient::printErrorCode);
    m_slicer.client().printStartCmd(model, {});
    QVERIFY(answers.wait(30000));
    QCOMPARE(answers.at(0).at(0).toInt(), 2);

    Slicer other;
    QVERIFY(other.connectTo(m_printer->url()));
    QCOMPARE(other.printStatus(), QStringLiteral("PRINT_GENERAL"));
    QCOMPARE(other.print(model), busy);
    QCOMPARE(other.send(m_local->filePath(model), model), -1001);
    QCOMPARE(answers.size(), 1);
    QVERIFY(QFile::remove(m_printer->path(model)));
    QCOMPARE(other.stop(), QStringLiteral("CMD_SUCCES"));
    QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 2, 30000);
    QCOMPARE(answers.at(1).at(0).toInt(), 3);
    QCOMPARE(other.printStatus(), QStringLiteral("PRINT_END"));
    // A check that was stopped reads no model.
    QVERIFY2(!m_printer->output().contains("check of"), m_printer->output().constData());
}

void TestPrinterRainyDay::startsAfterASlowCheck()
{
    QVERIFY(begin("--slow-check 0.2 --speed 1000", 5));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QVERIFY(clock.elapsed() >= 190);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
}

void TestPrinterRainyDay::endsDuringASlowCheck()
{
    QVERIFY(begin("--slow-check 3600", 5));
    QSignalSpy answers(&m_slicer.client(), &ZySslEchoClient::printErrorCode);
    m_slicer.client().printStartCmd(model, {});
    QVERIFY(answers.wait(30000));
    QCOMPARE(m_printer->stop(SIGTERM), 0);
    QVERIFY(!m_printer->output().contains("printing"));
}

void TestPrinterRainyDay::makesNamesFromTheWireHarmlessInItsLog()
{
    QVERIFY(begin("--unprotected", 5));
    QCOMPARE(m_slicer.print(QStringLiteral("x\n00:00:00 complete\x1b[2J")), checkFailed);
    QVERIFY2(m_printer->waitForOutput("\"x?00:00:00 complete?[2J\""),
             m_printer->output().constData());
}

ZY_TEST(TestPrinterRainyDay)
#include "tst_rainyday.moc"
