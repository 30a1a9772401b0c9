// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which printers a client talks to over TLS, against a server with a certificate.

#include "session.h"
#include "testprinter.h"
#include "testprogram.h"
#include "texts.h"
#include "tlsidentity.h"

#include <QSslConfiguration>

#include <zytlstrust.h>

using zytest::TestPrinter;
using zytest::TlsIdentity;

Q_DECLARE_METATYPE(ZyTlsTrust)

namespace
{

ZyServerOptions encrypted()
{
    ZyServerOptions options;
    options.useTls(TlsIdentity::localhost().certificate, TlsIdentity::localhost().key);
    return options;
}

ZyTlsTrust authorities(const QString &file)
{
    ZyTlsTrust trust;
    trust.useAuthorities(file);
    return trust;
}

ZyTlsTrust pinned(const QString &fingerprint)
{
    ZyTlsTrust trust;
    trust.pin(fingerprint);
    return trust;
}

/// What the system trusts, as long as this lives.
class SystemTrust
{
public:
    explicit SystemTrust(const QString &file) : m_before(QSslConfiguration::defaultConfiguration())
    {
        QSslConfiguration trusting = m_before;
        trusting.addCaCertificates(file);
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    ~SystemTrust() { QSslConfiguration::setDefaultConfiguration(m_before); }

private:
    Q_DISABLE_COPY(SystemTrust)

    QSslConfiguration m_before;
};

/// A printer that speaks wss://, and a client of it.
struct Encounter {
    explicit Encounter(const ZyTlsTrust &trust, const char *host = "127.0.0.1")
        : client(
            QUrl(QStringLiteral("wss://%1:%2").arg(QString::fromUtf8(host)).arg(printer.port())),
            trust)
    {
    }

    bool isConnected() { return ends() == QAbstractSocket::ConnectedState; }
    /// Refused with the certificate's fingerprint, and before a WebSocket was opened.
    bool isRefused()
    {
        return ends() == QAbstractSocket::UnconnectedState
            && client.socketError() == QAbstractSocket::SslHandshakeFailedError
            && client.refusedFingerprint() == TlsIdentity::localhost().fingerprint()
            && printer.handles().isEmpty();
    }

private:
    QAbstractSocket::SocketState ends()
    {
        zytest::waitUntil([this] {
            const auto state = client.socketConnectStatus();
            return state == QAbstractSocket::ConnectedState
                || state == QAbstractSocket::UnconnectedState;
        });
        return client.socketConnectStatus();
    }

public:
    TestPrinter printer{encrypted()};
    ZySslEchoClient client;
};

} // namespace

class TestTlsTrust : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void talksToAPrinterThatItTrusts_data();
    void talksToAPrinterThatItTrusts();
    void refusesAllOthers_data();
    void refusesAllOthers();
    void trustsWhomTheSystemTrustsUnlessRestricted();
    void aHostThatIgnoresErrorsDoesNotWeakenATrust();
    void staysRestrictedWhenItIsOpenedAgain();
    void hasNoPartInPlainConnections();
    void readsAFingerprintInEveryUsualForm_data();
    void readsAFingerprintInEveryUsualForm();
    void saysWhatIsWrongWithAuthorities();
};

void TestTlsTrust::talksToAPrinterThatItTrusts_data()
{
    QTest::addColumn<ZyTlsTrust>("trust");
    QTest::addColumn<QByteArray>("host");
    const TlsIdentity printer = TlsIdentity::localhost();
    QTest::newRow("by its authority")
        << authorities(printer.certificate) << QByteArray("localhost");
    QTest::newRow("pinned") << pinned(printer.fingerprint()) << QByteArray("127.0.0.1");
    QTest::newRow("pinned, at a host that it does not name")
        << pinned(printer.fingerprint()) << QByteArray("127.0.0.2");
    ZyTlsTrust both = authorities(TlsIdentity::other().certificate);
    both.pin(printer.fingerprint());
    QTest::newRow("pinned, by no authority") << both << QByteArray("127.0.0.1");
}

void TestTlsTrust::talksToAPrinterThatItTrusts()
{
    QFETCH(ZyTlsTrust, trust);
    QFETCH(QByteArray, host);
    Encounter encounter(trust, host.constData());
    QVERIFY(encounter.isConnected());
    QCOMPARE(encounter.client.refusedFingerprint(), QString());
    QSignalSpy versions(&encounter.client, &ZySslEchoClient::checkVersion);
    encounter.client.versionCheckCmd();
    WAIT_COMPARE(versions.count(), 1);
}

void TestTlsTrust::refusesAllOthers_data()
{
    QTest::addColumn<ZyTlsTrust>("trust");
    QTest::addColumn<QByteArray>("host");
    const QByteArray address("127.0.0.1");
    const TlsIdentity printer = TlsIdentity::localhost();
    QTest::newRow("that the system does not know") << ZyTlsTrust() << address;
    QTest::newRow("of another authority")
        << authorities(TlsIdentity::other().certificate) << address;
    QTest::newRow("at a host that they do not name")
        << authorities(printer.certificate) << QByteArray("127.0.0.2");
    QTest::newRow("than the pinned") << pinned(TlsIdentity::other().fingerprint()) << address;
    QTest::newRow("when its authorities cannot be read") << authorities("/none"_s) << address;
    QTest::newRow("when the fingerprint is none") << pinned("F2:5B"_s) << address;
    ZyTlsTrust both = authorities(printer.certificate);
    both.pin(TlsIdentity::other().fingerprint());
    QTest::newRow("than the pinned, of whatever authority") << both << address;
}

void TestTlsTrust::refusesAllOthers()
{
    QFETCH(ZyTlsTrust, trust);
    QFETCH(QByteArray, host);
    Encounter encounter(trust, host.constData());
    QVERIFY(encounter.isRefused());
    QVERIFY(!encounter.client.socketErrorText().isEmpty());
}

void TestTlsTrust::trustsWhomTheSystemTrustsUnlessRestricted()
{
    const SystemTrust system(TlsIdentity::localhost().certificate);
    QVERIFY(Encounter(ZyTlsTrust()).isConnected());
    QVERIFY(Encounter(pinned(TlsIdentity::other().fingerprint())).isRefused());
    QVERIFY(Encounter(authorities(TlsIdentity::other().certificate)).isRefused());
}

void TestTlsTrust::aHostThatIgnoresErrorsDoesNotWeakenATrust()
{
    for (const bool isRestricted : {false, true}) {
        Encounter encounter(isRestricted ? pinned(TlsIdentity::other().fingerprint())
                                         : ZyTlsTrust());
        // As a host does that wires the slot.
        QVERIFY(QMetaObject::invokeMethod(&encounter.client, "onSslErrors", Qt::DirectConnection,
                                          Q_ARG(QList<QSslError>, {})));
        if (isRestricted)
            QVERIFY(encounter.isRefused());
        else
            QVERIFY(encounter.isConnected());
    }
}

void TestTlsTrust::staysRestrictedWhenItIsOpenedAgain()
{
    Encounter encounter(pinned(TlsIdentity::other().fingerprint()));
    QVERIFY(encounter.isRefused());
    for (int i = 0; i < 2; ++i) {
        encounter.client.openWithUrl(
            QUrl(QStringLiteral("wss://127.0.0.1:%1").arg(encounter.printer.port())));
        QCOMPARE(encounter.client.refusedFingerprint(), QString());
        QVERIFY(encounter.isRefused());
    }
}

void TestTlsTrust::hasNoPartInPlainConnections()
{
    const TestPrinter printer;
    const ZySslEchoClient client(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())),
                                 pinned(TlsIdentity::other().fingerprint()));
    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::ConnectedState);
    QVERIFY(client.tlsTrust().isRestricted());
}

void TestTlsTrust::readsAFingerprintInEveryUsualForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isOne");
    const QString usual = TlsIdentity::localhost().fingerprint();
    const QString bare = QString(usual).remove(QLatin1Char(':'));
    QTest::newRow("colons") << usual << true;
    QTest::newRow("lower case") << usual.toLower() << true;
    QTest::newRow("bare") << bare << true;
    QTest::newRow("spaces") << QString(usual).replace(QLatin1Char(':'), QLatin1Char(' ')) << true;
    QTest::newRow("copied with blanks around") << QStringLiteral(" %1 ").arg(bare) << true;
    QTest::newRow("a digit short") << bare.chopped(1) << false;
    QTest::newRow("a byte more") << bare + "00"_s << false;
    QTest::newRow("no digit") << bare.chopped(1) + "G"_s << false;
    QTest::newRow("SHA-1") << bare.left(40) << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("digits of another script") << QString(64, QChar(0x0665)) << false;
}

void TestTlsTrust::readsAFingerprintInEveryUsualForm()
{
    QFETCH(QString, text);
    QFETCH(bool, isOne);
    ZyTlsTrust trust;
    QCOMPARE(trust.pin(text), isOne);
    QVERIFY(trust.isRestricted());
    QCOMPARE(trust.fingerprint(), isOne ? TlsIdentity::localhost().fingerprint() : QString());
}

void TestTlsTrust::saysWhatIsWrongWithAuthorities()
{
    ZyTlsTrust trust;
    QCOMPARE(trust.useAuthorities("/none"_s), "No such file or directory"_s);
    QCOMPARE(trust.useAuthorities(TlsIdentity::localhost().key), "it holds no PEM certificate"_s);
    QVERIFY(trust.isRestricted());
    QCOMPARE(trust.useAuthorities(TlsIdentity::localhost().certificate), QString());
    QCOMPARE(trust.authorities().size(), 1);
    QVERIFY(!ZyTlsTrust().isRestricted());
}

ZY_TEST(TestTlsTrust)

#include "tst_tlstrust.moc"
