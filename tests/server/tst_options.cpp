// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The options' defaults, and that a server keeps those that it was made with.

#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "tlsidentity.h"
#include "wirejson.h"

#include <QSslConfiguration>
#include <QTest>

using namespace zytest;

class TestOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksForNothingByDefault();
    void asksForEverythingWhenHardened();
    void isAValue();
    void keepsEachValueByItself();
    void takesNegativeNumbersForNone();
    void isReadBackFromTheServer();
    void changesNothingWhenItAsksForNothing();
    void saysWhyACertificateCannotBeUsed_data();
    void saysWhyACertificateCannotBeUsed();
};

void TestOptions::asksForNothingByDefault()
{
    const ZyServerOptions options;
    QCOMPARE(options.maxConnections(), 0);
    QVERIFY(!options.checksOrigin());
    QCOMPARE(options.allowedOrigins(), QStringList());
    QCOMPARE(options.handshakeTimeout(), 0);
    QVERIFY(options.tls().isNull());
    QCOMPARE(options.token(), QString());
    QCOMPARE(options.maxWrongTokens(), 0);
    QVERIFY(!options.needsPlainNames());
    QVERIFY(!options.nameFilter());
    QCOMPARE(options.maxFileSize(), 0);
    QCOMPARE(options.maxDataMessage(), 0);
    QCOMPARE(options.maxTextMessage(), 0);
    QCOMPARE(options.maxChunk(), 0);
    QCOMPARE(options.maxBacklog(), 0);
    QVERIFY(!options.keepsTransfersApart());
    QCOMPARE(options.silence(), 0);
    QVERIFY(!options.reservesSpace());
    QCOMPARE(options.keepFree(), 0);
    QCOMPARE(options.recordInterval(), 0);
    QVERIFY(!options.syncsToDisk());
    QVERIFY(!options.checksDigest());
    QCOMPARE(options.window(), 0);
    QVERIFY(!options.failureHandler());
}

void TestOptions::asksForEverythingWhenHardened()
{
    const ZyServerOptions options = ZyServerOptions::hardened();
    QCOMPARE(options.maxConnections(), 64);
    QVERIFY(options.checksOrigin());
    QCOMPARE(options.handshakeTimeout(), 10000);
    QCOMPARE(options.maxWrongTokens(), 10);
    QVERIFY(options.needsPlainNames());
    QCOMPARE(options.maxFileSize(), Q_INT64_C(4294967296));
    QCOMPARE(options.maxDataMessage(), 1114112);
    QCOMPARE(options.maxTextMessage(), 65536);
    QCOMPARE(options.maxChunk(), 1048576);
    QCOMPARE(options.maxBacklog(), 1024);
    QVERIFY(options.keepsTransfersApart());
    QCOMPARE(options.silence(), 15000);
    QVERIFY(options.reservesSpace());
    QCOMPARE(options.keepFree(), 67108864);
    QCOMPARE(options.recordInterval(), 8388608);
    QVERIFY(options.syncsToDisk());
    QVERIFY(options.checksDigest());
    // What only the host can know.
    QCOMPARE(options.window(), 0);
    QCOMPARE(options.allowedOrigins(), QStringList());
    QCOMPARE(options.token(), QString());
    QVERIFY(options.tls().isNull());
}

void TestOptions::isAValue()
{
    ZyServerOptions options;
    ZyServerOptions copy(options);
    copy.setToken(QStringLiteral("secret"));
    QCOMPARE(options.token(), QString());
    options = copy;
    copy.setToken({});
    QCOMPARE(options.token(), QStringLiteral("secret"));
}

void TestOptions::keepsEachValueByItself()
{
    ZyServerOptions options;
    options.setHandshakeTimeout(1);
    options.setMaxDataMessage(2);
    options.setMaxTextMessage(3);
    options.setMaxChunk(4);
    options.setMaxBacklog(5);
    QCOMPARE(options.handshakeTimeout(), 1);
    QCOMPARE(options.maxDataMessage(), 2);
    QCOMPARE(options.maxTextMessage(), 3);
    QCOMPARE(options.maxChunk(), 4);
    QCOMPARE(options.maxBacklog(), 5);
    options.setAllowedOrigins({QStringLiteral("http://panel")});
    QCOMPARE(options.allowedOrigins(), QStringList{QStringLiteral("http://panel")});

    using Options = ZyServerOptions;
    struct Switch {
        void (Options::*set)(bool);
        bool (Options::*isSet)() const;
    };
    const Switch switches[]{{&Options::setChecksOrigin, &Options::checksOrigin},
                            {&Options::setNeedsPlainNames, &Options::needsPlainNames},
                            {&Options::setKeepsTransfersApart, &Options::keepsTransfersApart},
                            {&Options::setReservesSpace, &Options::reservesSpace},
                            {&Options::setSyncsToDisk, &Options::syncsToDisk},
                            {&Options::setChecksDigest, &Options::checksDigest}};
    for (const Switch &one : switches) {
        Options alone;
        (alone.*one.set)(true);
        for (const Switch &other : switches)
            QCOMPARE((alone.*other.isSet)(), other.isSet == one.isSet);
    }
}

void TestOptions::takesNegativeNumbersForNone()
{
    ZyServerOptions options;
    options.setMaxConnections(-1);
    options.setMaxFileSize(-1);
    options.setSilence(-15000);
    QCOMPARE(options.maxConnections(), 0);
    QCOMPARE(options.maxFileSize(), 0);
    QCOMPARE(options.silence(), 0);
}

void TestOptions::isReadBackFromTheServer()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setMaxConnections(7);
    TestPrinter printer(options);
    options.setMaxConnections(8);
    QCOMPARE(printer.server()->options().maxConnections(), 7);
    QVERIFY(printer.server()->isListening());
    QVERIFY(printer.port() != 0);

    TestPrinter deployed;
    QCOMPARE(deployed.server()->options().maxConnections(), 0);
}

void TestOptions::changesNothingWhenItAsksForNothing()
{
    TestPrinter printer{ZyServerOptions()};
    RawPeer peer(printer.port());
    const QString name = QStringLiteral("../") + QFileInfo(printer.dir()).fileName()
        + QStringLiteral("/roundabout.bin");
    QJsonObject request = startFile(name, 5);
    request.insert(QStringLiteral("sha256"), QStringLiteral("of another file"));
    peer.send(request);
    QCOMPARE(peer.take(), accepted(name, QStringLiteral("5")));
    RawPeer other(printer.port());
    other.sendChunk("abcde");
    QCOMPARE(other.take(), startData(5, 5));
    QCOMPARE(other.take(), checkData(1));
    QCOMPARE(readFile(printer.path(QStringLiteral("roundabout.bin"))), QByteArrayLiteral("abcde"));
    peer.send(QByteArrayLiteral(R"({"cmd":"CANCEL_FILE"})"));
    QCOMPARE(peer.take(), json(R"({"cmd":"CANCEL_FILE","errorcode":0})"));
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestOptions::saysWhyACertificateCannotBeUsed_data()
{
    QTest::addColumn<QString>("certificate");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("reason");
    const TlsIdentity good = TlsIdentity::localhost();
    const QString missing = QStringLiteral("/missing.pem");
    const auto row
        = [](const char *tag, const QString &certificate, const QString &key, const char *reason) {
              QTest::newRow(tag) << certificate << key << QString::fromLatin1(reason);
          };
    row("no certificate", missing, missing,
        "certificate cannot be read: No such file or directory");
    row("no PEM certificate", good.key, good.key, "certificate file holds no PEM certificate");
    row("no key", good.certificate, missing, "key cannot be read: No such file or directory");
    row("no PEM key", good.certificate, good.certificate,
        "key file holds no PEM key without pass phrase");
}

void TestOptions::saysWhyACertificateCannotBeUsed()
{
    QFETCH(QString, certificate);
    QFETCH(QString, key);
    ZyServerOptions options;
    QTEST(options.useTls(certificate, key), "reason");
    QVERIFY(options.tls().isNull());
}

ZY_TEST(TestOptions)
#include "tst_options.moc"
