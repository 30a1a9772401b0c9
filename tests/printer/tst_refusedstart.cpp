// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter when it does not start: its command line, a port in use, an unusable certificate.

#include "programs.h"
#include "testprogram.h"
#include "texts.h"

#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

class TestPrinterRefusedStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rejectsItsCommandLine_data();
    void rejectsItsCommandLine();
    void saysThatItsPortIsInUse();
    void doesNotStartWithoutAUsableCertificate_data();
    void doesNotStartWithoutAUsableCertificate();

private:
    QTemporaryDir m_local;
};

void TestPrinterRefusedStart::rejectsItsCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("no directory") << words("") << QByteArray("--dir is required");
    QTest::newRow("unknown option") << words("--dir /tmp --bogus") << QByteArray("--bogus");
    QTest::newRow("stray argument") << words("--dir /tmp stray") << QByteArray("stray");
    QTest::newRow("port as text") << words("--dir /tmp --port http") << QByteArray("--port");
    QTest::newRow("port too high") << words("--dir /tmp --port 65536") << QByteArray("--port");
    QTest::newRow("port below zero") << words("--dir /tmp --port -1") << QByteArray("--port");
    QTest::newRow("no speed") << words("--dir /tmp --speed 0") << QByteArray("--speed");
    QTest::newRow("endless speed") << words("--dir /tmp --speed inf") << QByteArray("--speed");
    QTest::newRow("speed no number") << words("--dir /tmp --speed nan") << QByteArray("--speed");
    QTest::newRow("layer 0") << words("--dir /tmp --fail-at 0") << QByteArray("--fail-at");
    QTest::newRow("silence 0") << words("--dir /tmp --silence 0") << QByteArray("--silence");
    QTest::newRow("silence no number")
        << words("--dir /tmp --silence nan") << QByteArray("--silence");
    QTest::newRow("size 0") << words("--dir /tmp --max-size 0") << QByteArray("--max-size");
    QTest::newRow("size as text") << words("--dir /tmp --max-size 4G") << QByteArray("--max-size");
    QTest::newRow("keeping less than nothing")
        << words("--dir /tmp --keep-free -1") << QByteArray("--keep-free");
    QTest::newRow("no connections")
        << words("--dir /tmp --max-connections 0") << QByteArray("--max-connections");
    QTest::newRow("certificate without a key")
        << words("--dir /tmp --cert c") << QByteArray("--key");
    QTest::newRow("key without a certificate")
        << words("--dir /tmp --key k") << QByteArray("--cert");
    for (const char *option : {"--cert", "--key", "--token", "--preview"}) {
        QTest::newRow(qPrintable(QStringLiteral("empty %1").arg(QLatin1String(option))))
            << words("--dir /tmp") + QStringList{QLatin1String(option), QString()}
            << QByteArray(option) + ": is empty";
    }
    QTest::newRow("both protected and not")
        << words("--dir /tmp --unprotected --silence 3") << QByteArray("--unprotected");
    QTest::newRow("slow check below zero")
        << words("--dir /tmp --slow-check -1") << QByteArray("--slow-check");
}

void TestPrinterRefusedStart::rejectsItsCommandLine()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, error);
    const RunResult result = runPrinter(arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errors.startsWith("zyprinter: "), result.errors.constData());
    QVERIFY2(result.errors.contains(error), result.errors.constData());
    QVERIFY2(result.errors.endsWith("; see zyprinter --help\n"), result.errors.constData());
    QCOMPARE(result.errors.count('\n'), 1);
    QCOMPARE(result.output, QByteArray());
}

void TestPrinterRefusedStart::saysThatItsPortIsInUse()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::Any));
    const QString port = QString::number(other.serverPort());
    const RunResult result
        = runPrinter({QStringLiteral("--dir"), m_local.path(), QStringLiteral("--port"), port});
    QCOMPARE(result.exitCode, 4);
    QCOMPARE(result.errors,
             "zyprinter: port is in use or not permitted: " + port.toUtf8()
                 + "; choose another --port, or 0 for a free one\n");
    QCOMPARE(result.output, QByteArray());
}

void TestPrinterRefusedStart::doesNotStartWithoutAUsableCertificate_data()
{
    QTest::addColumn<QString>("certificate");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("error");
    const QString good = QStringLiteral(ZYTEST_TLS "/localhost.pem");
    const QString otherKey = QStringLiteral(ZYTEST_TLS "/other.key");
    QTest::newRow("missing certificate")
        << QStringLiteral("/missing") << otherKey
        << QByteArray("certificate cannot be read: No such file or directory: /missing ");
    QTest::newRow("no certificate")
        << otherKey << otherKey << QByteArray("certificate file holds no PEM certificate: ");
    QTest::newRow("missing key") << good << QStringLiteral("/missing")
                                 << QByteArray("key cannot be read: No such file or directory: ");
    QTest::newRow("no key") << good << good
                            << QByteArray("key file holds no PEM key without pass phrase: ");
    QTest::newRow("another's key")
        << good << otherKey << QByteArray("certificate and key do not belong together: ");
}

void TestPrinterRefusedStart::doesNotStartWithoutAUsableCertificate()
{
    QFETCH(const QString, certificate);
    QFETCH(const QString, key);
    QFETCH(const QByteArray, error);
    const RunResult result
        = runPrinter({QStringLiteral("--dir"), m_local.path(), QStringLiteral("--cert"),
                      certificate, QStringLiteral("--key"), key});
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errors.startsWith("zyprinter: " + error), result.errors.constData());
    QCOMPARE(result.errors.count('\n'), 1);
    QCOMPARE(result.output, QByteArray());
}

ZY_TEST(TestPrinterRefusedStart)

#include "tst_refusedstart.moc"
