// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where zyprinter listens, and what its log says of who sends.

#include "models.h"
#include "printerprocess.h"
#include "programs.h"
#include "slicer.h"
#include "testprogram.h"

#include <QFile>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

class TestPrinterNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensOnTheAddressThatItIsGiven();
    void refusesAnAddressThatIsNone();
    void saysThatAnAddressIsNotThisMachines();
    void namesTheFileAndThePeerInUtf8();
    void outlivesTheReaderOfItsLog();
    void neitherEndLoadsTheTlsLibraryWithoutTls_data();
    void neitherEndLoadsTheTlsLibraryWithoutTls();
};

void TestPrinterNetwork::listensOnTheAddressThatItIsGiven()
{
    PrinterProcess printer(PrinterProcess::NotStarted);
    QVERIFY(printer.start({QStringLiteral("--bind"), QStringLiteral("127.0.0.2")}));
    QCOMPARE(printer.url().host(), QStringLiteral("127.0.0.2"));
    QTcpSocket socket;
    // Not 127.0.0.1, where another test's printer may have the same port.
    socket.connectToHost(QStringLiteral("127.0.0.3"), quint16(printer.url().port()));
    QVERIFY(!socket.waitForConnected());
    Slicer slicer;
    QVERIFY(slicer.connectTo(printer.url()));
}

void TestPrinterNetwork::refusesAnAddressThatIsNone()
{
    const RunResult result = runPrinter({QStringLiteral("--dir"), QStringLiteral("."),
                                         QStringLiteral("--bind"), QStringLiteral("bench")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.contains("bench is no IP address"), result.errors.constData());
}

void TestPrinterNetwork::saysThatAnAddressIsNotThisMachines()
{
    const QTemporaryDir directory;
    const RunResult result
        = runPrinter({QStringLiteral("--dir"), directory.path(), QStringLiteral("--bind"),
                      QStringLiteral("192.0.2.1"), QStringLiteral("--port"), QStringLiteral("9")});
    QCOMPARE(result.exitCode, 4);
    QVERIFY2(result.errors.contains("address is not this machine's"), result.errors.constData());
    QVERIFY2(result.errors.contains("ws://192.0.2.1:9"), result.errors.constData());
}

void TestPrinterNetwork::namesTheFileAndThePeerInUtf8()
{
    const QByteArray name = "\346\250\241\345\236\213\360\237\246\204.zydlp"; // CJK and an emoji
    qputenv("LC_ALL", "C"); // as systemd runs it
    PrinterProcess printer(PrinterProcess::NotStarted);
    QVERIFY(printer.start());
    const QTemporaryDir local;
    const QString path = local.filePath(QStringLiteral("part.zydlp"));
    writeFile(path, smallModel(3));
    Slicer slicer;
    QVERIFY(slicer.connectTo(printer.url()));
    QCOMPARE(slicer.send(path, QString::fromUtf8(name)), 1);
    QVERIFY(printer.waitForOutput("transfer accepted: \"" + name + "\" from 127.0.0.1:"));
    QVERIFY(printer.waitForOutput("received \"" + name + "\": "));
}

void TestPrinterNetwork::outlivesTheReaderOfItsLog()
{
    const QTemporaryDir directory;
    const QString log = directory.filePath(QStringLiteral("log"));
    const QByteArray path = QFile::encodeName(log);
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    QFile reader;
    QVERIFY(reader.open(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC),
                        QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
    QProcess printer;
    printer.setStandardOutputFile(log);
    printer.start(QStringLiteral(ZYPRINTER), {QStringLiteral("--dir"), directory.path()});
    QVERIFY(zytest::waitUntil([&] { return reader.readLine().contains('\n'); }));
    reader.close();
    // A connection would have Qt ignore the signal of a broken pipe.
    printer.terminate();
    QVERIFY(printer.waitForFinished(zytest::patience));
    QCOMPARE(printer.exitStatus(), QProcess::NormalExit);
    QCOMPARE(printer.exitCode(), 0);
}

void TestPrinterNetwork::neitherEndLoadsTheTlsLibraryWithoutTls_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("protected") << QStringList();
    QTest::newRow("as deployed") << QStringList{QStringLiteral("--unprotected")};
}

/// It would cost either process 5 MiB.
void TestPrinterNetwork::neitherEndLoadsTheTlsLibraryWithoutTls()
{
    QFETCH(QStringList, options);
#if QT_VERSION_MAJOR >= 6
    QSKIP("Qt 6's QWebSocket asks for the TLS library whatever the address");
#endif
    PrinterProcess printer(options);
    Slicer slicer;
    QVERIFY(slicer.connectTo(printer.url()));
    for (const qint64 process : {QCoreApplication::applicationPid(), printer.processId()}) {
        QFile maps(QStringLiteral("/proc/%1/maps").arg(process));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        const QByteArray libraries = maps.readAll();
        QVERIFY(libraries.contains("libzyWebsocket"));
        QVERIFY2(!libraries.contains("libssl"),
                 process == printer.processId() ? "the printer" : "the slicer");
    }
}

ZY_TEST(TestPrinterNetwork)

#include "tst_network.moc"
