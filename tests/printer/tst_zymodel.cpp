// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel as a process: what it writes is a model, and bad input gets one clear line.

#include "modelreader.h"
#include "models.h"
#include "printerprocess.h"
#include "programs.h"
#include "testprogram.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>

class TestZymodel : public QObject
{
    Q_OBJECT

public:
    /// Names beyond ASCII reach the program in any locale.
    static void initMain() { qputenv("LC_ALL", "C.UTF-8"); }

private Q_SLOTS:
    void writesASolid();
    void writesTheSameFileForTheSameOptions();
    void checksAModel();
    void makesTheResinHarmless();
    void saysItsVersionAndItsHelp();

    void rejectsBadInput_data();
    void rejectsBadInput();
    void namesADamagedLayer();
    void writesNothingThatItsCheckRejects_data();
    void writesNothingThatItsCheckRejects();
    void writesToStandardOutput();
    void saysWhyItCannotWrite();
    void takesNoOptionBesideACheck();
    void leavesAloneWhatIsNoFile_data();
    void leavesAloneWhatIsNoFile();
    void takesNoLongerResinThanTheFormat_data();
    void takesNoLongerResinThanTheFormat();

private:
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }
    RunResult generate(const QString &out, const QStringList &more);

    QTemporaryDir m_dir;
};

RunResult TestZymodel::generate(const QString &out, const QStringList &more)
{
    return runModel(QStringList{QStringLiteral("--out"), out, QStringLiteral("--resolution"),
                                QStringLiteral("144x256"), QStringLiteral("--layers"),
                                QStringLiteral("19")}
                    + more);
}

void TestZymodel::writesASolid()
{
    const QString file = path("solid.zydlp");
    const RunResult result = generate(file, {QStringLiteral("--resin"), QStringLiteral("Rot")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, QByteArray());

    zymodel::ModelReader reader;
    QVERIFY2(reader.open(file) && reader.checkAllLayers(), qPrintable(reader.error()));
    QCOMPARE(reader.layerCount(), 19);
    QCOMPARE(reader.header().width, 144U);
    QCOMPARE(reader.header().height, 256U);
    QCOMPARE(reader.header().resin, QStringLiteral("Rot"));
    // The sphere's diameter is 97 % of 144 pixels of 50 um, and 5 % of it are cut off.
    QCOMPARE(reader.header().layerThickness, quint32(qRound(144 * 50e3 * 0.97 * 0.95 / 19)));

    QByteArray mask;
    QVERIFY(reader.readLayer(9, mask));
    const auto count = [&mask](auto matches) {
        return std::count_if(mask.cbegin(), mask.cend(), [&](char c) { return matches(uchar(c)); });
    };
    // A cut through the lattice: thin walls, and a good part of their pixels only partly covered.
    const auto solid = count([](int grey) { return grey > 0; });
    const auto edge = count([](int grey) { return grey > 0 && grey < 255; });
    QVERIFY2(solid > mask.size() / 20 && solid < mask.size() / 2,
             qPrintable(QString::number(solid)));
    QVERIFY2(edge > solid / 10 && edge < solid, qPrintable(QString::number(edge)));
    QCOMPARE(mask.left(144 * 50), QByteArray(144 * 50, '\0')); // beside the sphere
}

void TestZymodel::writesTheSameFileForTheSameOptions()
{
    QCOMPARE(generate(path("a"), {}).exitCode, 0);
    QCOMPARE(generate(path("b"), {}).exitCode, 0);
    QCOMPARE(generate(path("c"), {QStringLiteral("--seed"), QStringLiteral("2")}).exitCode, 0);
    QCOMPARE(readFile(path("a")), readFile(path("b")));
    QVERIFY(readFile(path("a")) != readFile(path("c")));
    QVERIFY(readFile(path("a")).right(4) != readFile(path("c")).right(4));
}

void TestZymodel::checksAModel()
{
    QCOMPARE(generate(path("good"), {}).exitCode, 0);
    const RunResult result = runModel({QStringLiteral("--check"), path("good")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QByteArray("19 layers of 144x256 pixels, 349.2 um each, resin \"Standard Grey\": "
                        "valid\n"));
}

/// Its name comes with the model, and the output may go to a terminal.
void TestZymodel::makesTheResinHarmless()
{
    const QString resin = QString::fromUtf8("Grau \xc2\xb5\n\x1b[2J\a");
    QCOMPARE(generate(path("crafted"), {QStringLiteral("--resin"), resin}).exitCode, 0);
    const RunResult result = runModel({QStringLiteral("--check"), path("crafted")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.endsWith("resin \"Grau \xc2\xb5??[2J?\": valid\n"),
             result.output.constData());
}

void TestZymodel::saysItsVersionAndItsHelp()
{
    const RunResult version = runModel({QStringLiteral("--version")});
    QCOMPARE(version.exitCode, 0);
    QVERIFY(version.output.startsWith("zymodel "));
    const RunResult help = runModel({QStringLiteral("--help")});
    QCOMPARE(help.exitCode, 0);
    for (const char *option : {"--out", "--check", "--layers", "--resolution", "--seed", "--resin"})
        QVERIFY2(help.output.contains(option), option);
}

void TestZymodel::rejectsBadInput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("error");
    const auto words = [](const char *text) {
        return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    QTest::newRow("nothing to do")
        << words("") << 2
        << QByteArray("zymodel: nothing to do; give --out FILE or --check FILE\n");
    QTest::newRow("both") << words("--out a --check b") << 2 << QByteArray("excludes");
    QTest::newRow("unknown option") << words("--out a --bogus") << 2 << QByteArray("--bogus");
    QTest::newRow("no number") << words("--out a --layers x") << 2 << QByteArray("--layers");
    QTest::newRow("no layers") << words("--out a --layers 0") << 2 << QByteArray("--layers");
    QTest::newRow("resolution") << words("--out a --resolution 10") << 2
                                << QByteArray("10 is no WIDTHxHEIGHT");
    QTest::newRow("resolution with a tail")
        << words("--out a --resolution 10x10x10") << 2 << QByteArray("10x10x10 is no WIDTHxHEIGHT");
    QTest::newRow("cannot write") << words("--out /dev/null/a --layers 9") << 3
                                  << QByteArray("/dev/null/a; give a --out that can be written");
    QTest::newRow("cannot read") << words("--check /dev/null/a") << 3
                                 << QByteArray("cannot read the model");
    QTest::newRow("no file to read")
        << words("--check /dev/null") << 3
        << QByteArray("cannot read the model (it is no regular file): /dev/null");
    writeFile(path("text"), "no model at all");
    QTest::newRow("no model") << QStringList{QStringLiteral("--check"), path("text")} << 4
                              << QByteArray("no valid model (no sliced model: the magic number is "
                                            "missing): ");
}

void TestZymodel::rejectsBadInput()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, exitCode);
    QFETCH(const QByteArray, error);
    const RunResult result = runModel(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(result.errors.startsWith("zymodel: "), result.errors.constData());
    QVERIFY2(result.errors.contains(error), result.errors.constData());
    QCOMPARE(result.errors.count('\n'), 1);
}

void TestZymodel::namesADamagedLayer()
{
    QByteArray model = smallModel(30);
    model[model.size() - 10] = char(~model.at(model.size() - 10));
    writeFile(path("damaged"), model);
    const RunResult result = runModel({QStringLiteral("--check"), path("damaged")});
    QCOMPARE(result.exitCode, 4);
    QVERIFY2(result.errors.contains("no valid model (layer 30: CRC mismatch"),
             result.errors.constData());
}

void TestZymodel::writesNothingThatItsCheckRejects_data()
{
    QTest::addColumn<QString>("layers");
    QTest::addColumn<QString>("resolution");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("too thick") << QStringLiteral("5") << QStringLiteral("1440x2560") << 2;
    QTest::newRow("just thin enough") << QStringLiteral("7") << QStringLiteral("1440x2560") << 0;
    QTest::newRow("few and small") << QStringLiteral("5") << QStringLiteral("144x256") << 0;
    QTest::newRow("one pixel") << QStringLiteral("1") << QStringLiteral("1x1") << 0;
    QTest::newRow("too thin") << QStringLiteral("100000") << QStringLiteral("1x1") << 2;
}

void TestZymodel::writesNothingThatItsCheckRejects()
{
    QFETCH(QString, layers);
    QFETCH(QString, resolution);
    QFETCH(int, exitCode);
    const QString file = path("checked.zydlp");
    QFile::remove(file);
    const RunResult result = runModel({QStringLiteral("--out"), file, QStringLiteral("--layers"),
                                       layers, QStringLiteral("--resolution"), resolution});
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(QFile::exists(file), exitCode == 0);
    QCOMPARE(result.errors.contains("layer thickness (nm) "), exitCode != 0);
    if (exitCode == 0)
        QCOMPARE(runModel({QStringLiteral("--check"), file}).exitCode, 0);
}

void TestZymodel::writesToStandardOutput()
{
    const QString file = path("same.zydlp");
    QCOMPARE(generate(file, {}).exitCode, 0);
    const RunResult piped = generate(QStringLiteral("-"), {});
    QCOMPARE(piped.exitCode, 0);
    QFile expected(file);
    QVERIFY(expected.open(QIODevice::ReadOnly));
    QVERIFY(piped.output == expected.readAll());
    QVERIFY(!QFile::exists(QStringLiteral("-")));
}

void TestZymodel::saysWhyItCannotWrite()
{
    QProcess limited;
    limited.start(QStringLiteral("bash"),
                  {QStringLiteral("-c"),
                   QStringLiteral("ulimit -f 1; exec \"$0\" --out \"$1\" --layers 19 --resolution "
                                  "144x256"),
                   QStringLiteral(ZYMODEL), path("limited.zydlp")});
    QVERIFY(limited.waitForFinished());
    QCOMPARE(limited.exitStatus(), QProcess::NormalExit);
    QCOMPARE(limited.exitCode(), 3);
    const QByteArray error = limited.readAllStandardError();
    QVERIFY2(error.contains("cannot write the model (File too large): "), error.constData());
    QVERIFY(!QFile::exists(path("limited.zydlp")));
}

void TestZymodel::takesNoOptionBesideACheck()
{
    const QString file = path("beside.zydlp");
    QCOMPARE(generate(file, {}).exitCode, 0);
    for (const char *option : {"--layers=5", "--resolution=1x1", "--seed=2", "--resin=x"}) {
        const RunResult result = runModel({QStringLiteral("--check"), file, QLatin1String(option)});
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.errors.contains("excludes --check"), result.errors.constData());
    }
}

void TestZymodel::leavesAloneWhatIsNoFile_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<bool>("isLinked");
    QTest::newRow("written") << QStringLiteral("--out") << false;
    QTest::newRow("written by way of a link") << QStringLiteral("--out") << true;
    QTest::newRow("checked") << QStringLiteral("--check") << false;
    QTest::newRow("checked by way of a link") << QStringLiteral("--check") << true;
}

void TestZymodel::leavesAloneWhatIsNoFile()
{
    QFETCH(const QString, option);
    QFETCH(const bool, isLinked);
    QTemporaryDir dir;
    const QString fifo = dir.filePath(QStringLiteral("fifo"));
    const QString link = dir.filePath(QStringLiteral("link"));
    QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QVERIFY(QFile::link(fifo, link));
    const RunResult result = runModel({option, isLinked ? link : fifo});
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.errors.contains("no regular file"), result.errors.constData());
    QCOMPARE(result.errors.count('\n'), 1);
    struct stat status {
    };
    QCOMPARE(lstat(QFile::encodeName(fifo).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(QDir(dir.path())
                 .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("fifo"), QStringLiteral("link")}));
}

void TestZymodel::takesNoLongerResinThanTheFormat_data()
{
    QTest::addColumn<QString>("resin");
    QTest::addColumn<int>("exitCode");
    const QString umlaut = QStringLiteral("ü"); // two bytes
    QTest::newRow("255 bytes") << umlaut.repeated(127) + QLatin1Char('x') << 0;
    QTest::newRow("256 bytes") << umlaut.repeated(128) << 2;
    QTest::newRow("256 bytes in one-byte characters") << QString(256, QLatin1Char('x')) << 2;
}

void TestZymodel::takesNoLongerResinThanTheFormat()
{
    QFETCH(const QString, resin);
    QFETCH(const int, exitCode);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("model"));
    const RunResult result = generate(file, {QStringLiteral("--resin"), resin});
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(QFile::exists(file), exitCode == 0);
    if (exitCode == 0) {
        zymodel::ModelReader reader;
        QVERIFY2(reader.open(file), qPrintable(reader.error()));
        QCOMPARE(reader.header().resin, resin);
    } else {
        QVERIFY2(result.errors.contains("the resin's name takes 256 bytes of UTF-8: "),
                 result.errors.constData());
        QVERIFY2(result.errors.endsWith("; give a --resin of at most 255 bytes\n"),
                 result.errors.constData());
    }
}

ZY_TEST(TestZymodel)
#include "tst_zymodel.moc"
