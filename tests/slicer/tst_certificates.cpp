// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that speak wss://: whose certificate is accepted, and what is said about the others.

#include "modelfiles.h"
#include "printerprocess.h"
#include "programs.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"
#include "tlsidentity.h"

#include <QTest>

using zytest::TlsIdentity;

namespace
{

const char refused[] = "certificate not trusted";
const char changed[] = "certificate is not the expected one";

} // namespace

class TestCertificates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyCommandChecksTheCertificate_data();
    void everyCommandChecksTheCertificate();
    void theFingerprintThatIsShownCanBeGiven();
    void remembersTheCertificateOfASavedPrinter();
    void whatIsGivenOutweighsWhatIsSaved();
    void refusesWhatCannotBeChecked_data();
    void refusesWhatCannotBeChecked();
    void forgetsACertificate();

private:
    QString path(const QString &name) const { return m_directory.filePath(name); }
    SlicerResult printers(const QStringList &arguments) const
    {
        return runSlicer(QStringList{"--settings"_s, path("settings.ini"_s), "printers"_s}
                         + arguments);
    }
    SlicerResult run(const QStringList &arguments) const
    {
        return runSlicer(arguments, path("settings.ini"_s));
    }

    QTemporaryDir m_directory;
    const TlsIdentity m_known = TlsIdentity::localhost();
    const PrinterProcess m_printer{m_known.options()};
    QString m_url = m_printer.url().toString();
};

void TestCertificates::initTestCase()
{
    QCOMPARE(m_printer.url().scheme(), "wss"_s);
    makeModel(path("part.zydlp"_s));
}

void TestCertificates::everyCommandChecksTheCertificate_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<int>("exitCode"); // once the certificate is accepted
    QTest::newRow("version") << QStringList{"version"_s} << 0;
    QTest::newRow("status") << QStringList{"status"_s} << 0;
    QTest::newRow("watched status") << QStringList{"status"_s, "--watch"_s} << 0;
    QTest::newRow("send") << QStringList{"send"_s, path("part.zydlp"_s)} << 0;
    QTest::newRow("patient send") << QStringList{"send"_s, path("part.zydlp"_s), "--wait"_s} << 0;
    QTest::newRow("print") << QStringList{"print"_s, "none.zydlp"_s} << 8;
    QTest::newRow("pause") << QStringList{"pause"_s} << 5;
    QTest::newRow("stop") << QStringList{"stop"_s} << 5;
    QTest::newRow("set") << QStringList{"set"_s, "eleSpeed=60"_s} << 0;
    QTest::newRow("cancel") << QStringList{"cancel"_s} << 0;
}

void TestCertificates::everyCommandChecksTheCertificate()
{
    QFETCH(QStringList, command);
    QFETCH(int, exitCode);
    command += {"--to"_s, m_url};
    EXPECT_FAILURE(runSlicer(command), 3, refused);
    const QString other = TlsIdentity::other().fingerprint();
    EXPECT_FAILURE(runSlicer(command + QStringList{"--fingerprint"_s, other}), 3, changed);
    EXPECT_FAILURE(runSlicer(command + QStringList{"--ca"_s, TlsIdentity::other().certificate}), 3,
                   refused);
    const QString bare = m_known.fingerprint().remove(QLatin1Char(':')).toLower();
    for (const QStringList &trust : {QStringList{"--ca"_s, m_known.certificate},
                                     QStringList{"--fingerprint"_s, m_known.fingerprint()},
                                     QStringList{"--fingerprint"_s, bare}}) {
        const SlicerResult result = runSlicer(command + trust);
        QVERIFY2(result.exitCode == exitCode, result.errors.constData());
    }
}

void TestCertificates::theFingerprintThatIsShownCanBeGiven()
{
    const SlicerResult refusal = runSlicer({"version"_s, "--to"_s, m_url});
    static const QRegularExpression form("(?:[0-9A-F]{2}:){31}[0-9A-F]{2}"_s);
    const QString shown = form.match(QString::fromUtf8(refusal.errors)).captured();
    QCOMPARE(shown, m_known.fingerprint());
    VERIFY_TEXT(refusal.errors.contains("--fingerprint"), refusal.errors);
    QCOMPARE(runSlicer({"version"_s, "--to"_s, m_url, "--fingerprint"_s, shown}).exitCode, 0);
}

void TestCertificates::remembersTheCertificateOfASavedPrinter()
{
    QCOMPARE(
        printers({"add"_s, "pinned"_s, m_url, "--fingerprint"_s, m_known.fingerprint()}).exitCode,
        0);
    QCOMPARE(printers({"add"_s, "vouched"_s, m_url, "--ca"_s, m_known.certificate}).exitCode, 0);
    for (const QString &name : {"pinned"_s, "vouched"_s}) {
        QCOMPARE(run({"version"_s, "--to"_s, name}).exitCode, 0);
        QCOMPARE(run({"send"_s, path("part.zydlp"_s), "--to"_s, name}).exitCode, 0);
    }
    // It moves, and another printer answers at the new address.
    const PrinterProcess impostor(TlsIdentity::other().options());
    QCOMPARE(printers({"add"_s, "pinned"_s, impostor.url().toString()}).exitCode, 0);
    EXPECT_FAILURE(run({"send"_s, path("part.zydlp"_s), "--to"_s, "pinned"_s}), 3, changed);
    QVERIFY(impostor.pathOf("part.zydlp"_s).isEmpty());
}

void TestCertificates::whatIsGivenOutweighsWhatIsSaved()
{
    QCOMPARE(
        printers({"add"_s, "saved"_s, m_url, "--fingerprint"_s, m_known.fingerprint()}).exitCode,
        0);
    EXPECT_FAILURE(run({"version"_s, "--to"_s, "saved"_s, "--fingerprint"_s,
                        TlsIdentity::other().fingerprint()}),
                   3, changed);
    QCOMPARE(run({"version"_s, "--to"_s, "saved"_s, "--ca"_s, m_known.certificate}).exitCode, 0);
}

void TestCertificates::refusesWhatCannotBeChecked_data()
{
    QTest::addColumn<QStringList>("trust");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QByteArray>("part");
    const QString wss = "wss://127.0.0.1:1"_s;
    QTest::newRow("no such file") << QStringList{"--ca"_s, "/none.pem"_s} << wss
                                  << QByteArray("'/none.pem': No such file");
    QTest::newRow("no certificate")
        << QStringList{"--ca"_s, m_known.key} << wss << QByteArray("it holds no PEM certificate");
    QTest::newRow("short") << QStringList{"--fingerprint"_s, "F2:5B"_s} << wss
                           << QByteArray("'F2:5B' is no SHA-256");
    QTest::newRow("no digits") << QStringList{"--fingerprint"_s, QString(64, QLatin1Char('x'))}
                               << wss << QByteArray("is no SHA-256");
    QTest::newRow("plain, pinned") << QStringList{"--fingerprint"_s, m_known.fingerprint()}
                                   << "ws://127.0.0.1:1"_s << QByteArray("only wss:// has");
    QTest::newRow("plain, vouched for") << QStringList{"--ca"_s, m_known.certificate}
                                        << "127.0.0.1:1"_s << QByteArray("only wss:// has");
}

void TestCertificates::refusesWhatCannotBeChecked()
{
    QFETCH(QStringList, trust);
    QFETCH(QString, url);
    QFETCH(QByteArray, part);
    EXPECT_FAILURE(runSlicer(QStringList{"version"_s, "--to"_s, url} + trust), 2, part);
    EXPECT_FAILURE(printers(QStringList{"add"_s, "x"_s, url} + trust), 2, part);
}

void TestCertificates::forgetsACertificate()
{
    for (const QString &option : {"--ca"_s, "--fingerprint"_s})
        EXPECT_FAILURE(runSlicer({"version"_s, "--to"_s, m_url, option, ""_s}), 2, "''");
    QCOMPARE(printers({"add"_s, "old"_s, m_url, "--fingerprint"_s, m_known.fingerprint(), "--ca"_s,
                       m_known.certificate})
                 .exitCode,
             0);
    QCOMPARE(printers({"add"_s, "old"_s, m_url, "--fingerprint"_s, ""_s, "--ca"_s, ""_s}).exitCode,
             0);
    EXPECT_FAILURE(run({"version"_s, "--to"_s, "old"_s}), 3, refused);
    // Without a certificate to check, a plain address is possible again.
    QCOMPARE(printers({"add"_s, "old"_s, "ws://127.0.0.1:1"_s}).exitCode, 0);
}

ZY_TEST(TestCertificates)

#include "tst_certificates.moc"
