// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that speak wss://: the panel asks about an unknown certificate, and about no other.

#include "printerpanel.h"
#include "printerprocess.h"
#include "programs.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <modelfiles.h>
#include <savedprinters.h>
#include <testprogram.h>
#include <tlsidentity.h>
#include <waiting.h>

#include <QDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;
using zysession::SavedPrinters;
using zytest::patience;
using zytest::TlsIdentity;
using Link = PrinterControl::Link;
using State = Upload::State;

class TestPanelCertificates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void asksAboutAnUnknownCertificateAndRemembersIt();
    void aCertificateThatIsNotTrustedIsNotRemembered();
    void aTokenThatWasTypedIsNotSavedWithTheCertificate();
    void aCertificateIsSavedWithItsPrinter();
    void aGivenCertificateOutweighsTheSavedOne();
    void aChangedCertificateIsRefused();
    void aCertificateThatChangesMeanwhileIsRefused();
    void onlyTheSavedAuthorityVouches();
    void aCertificateThatCannotBeCheckedIsNoReasonToConnect();

private:
    void save(const zysession::Printer &printer)
    {
        QCOMPARE(SavedPrinters().save(printer), zysession::SettingsFault::None);
    }
    static zysession::Printer saved()
    {
        SavedPrinters all;
        all.read();
        return all.find(QStringLiteral("bench1"));
    }
    bool isAsked(WindowDriver &user);

    TestSettings m_settings;
    QTemporaryDir m_directory;
    const TlsIdentity m_known = TlsIdentity::localhost();
};

void TestPanelCertificates::init()
{
    QFile::remove(SavedPrinters().file());
}

bool TestPanelCertificates::isAsked(WindowDriver &user)
{
    return QTest::qWaitFor(
        [&] { return user.window().findChild<QMessageBox *>(QStringLiteral("confirmation")); },
        patience);
}

void TestPanelCertificates::asksAboutAnUnknownCertificateAndRemembersIt()
{
    const PrinterProcess printer(m_known.options());
    save({QStringLiteral("bench1"), printer.url()});
    {
        WindowDriver user;
        user.type("address", QStringLiteral("bench1"));
        QVERIFY(user.click("connect"));
        QVERIFY(isAsked(user));
        QCOMPARE(user.control().link(), Link::Closed);
        auto &question = user.find<QMessageBox>("confirmation");
        QString shown = question.informativeText();
        QVERIFY2(shown.remove(QLatin1Char('\n')).contains(m_known.fingerprint()),
                 qPrintable(shown));
        QVERIFY(question.text().contains(QStringLiteral("bench1")));
        QVERIFY(QTest::qWaitForWindowExposed(&question));
        QVERIFY(user.click("confirmationAccept"));
        QVERIFY(user.awaitLink(Link::Open));
        QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
        // Files go on a connection of their own.
        QVERIFY(user.drop(makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 20)));
        QVERIFY(user.click("send"));
        QVERIFY(user.awaitUpload(State::Sent));
    }
    QCOMPARE(saved().fingerprint, m_known.fingerprint());
    WindowDriver user;
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
}

void TestPanelCertificates::aCertificateThatIsNotTrustedIsNotRemembered()
{
    const PrinterProcess printer(m_known.options());
    save({QStringLiteral("bench1"), printer.url()});
    WindowDriver user;
    user.type("address", QStringLiteral("bench1"));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(user.click("connect"));
        QVERIFY(isAsked(user));
        // Enter trusts nobody.
        QTest::keyClick(&user.find<QMessageBox>("confirmation"), Qt::Key_Return);
        QVERIFY(QTest::qWaitFor(
            [&] { return !user.window().findChild<QMessageBox *>(QStringLiteral("confirmation")); },
            patience));
        QCOMPARE(user.control().link(), Link::Closed);
    }
    QCOMPARE(saved().fingerprint, QString());
}

void TestPanelCertificates::aTokenThatWasTypedIsNotSavedWithTheCertificate()
{
    const PrinterProcess printer(
        m_known.options() + QStringList{QStringLiteral("--token"), QStringLiteral("sesame")});
    save({QStringLiteral("bench1"), printer.url()});
    WindowDriver user;
    user.type("address", QStringLiteral("bench1"));
    user.type("token", QStringLiteral("sesame"));
    QVERIFY(user.click("connect"));
    QVERIFY(isAsked(user));
    QVERIFY(user.click("confirmationAccept"));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    QCOMPARE(saved().token, QString());
    QCOMPARE(saved().fingerprint, m_known.fingerprint());
}

void TestPanelCertificates::aCertificateIsSavedWithItsPrinter()
{
    const PrinterProcess printer(m_known.options());
    WindowDriver user;
    user.type("address", printer.url().toString());
    QVERIFY(user.click("connect"));
    QVERIFY(isAsked(user));
    QVERIFY(user.click("confirmationAccept"));
    QVERIFY(user.awaitLink(Link::Open));
    // It is remembered as long as the window is open …
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitLink(Link::Closed));
    QVERIFY(user.connectTo(printer.url().toString()));
    // … and goes into the file with the printer's name.
    QVERIFY(user.click("saveName"));
    QVERIFY(QTest::qWaitForWindowExposed(&user.find<QDialog>("nameDialog")));
    QTest::keyClicks(&user.find<QLineEdit>("printerName"), QStringLiteral("bench1"));
    QTest::keyClick(&user.find<QLineEdit>("printerName"), Qt::Key_Return);
    QVERIFY(user.awaitEvent(QStringLiteral("saved as bench1")));
    QCOMPARE(saved().fingerprint, m_known.fingerprint());
}

void TestPanelCertificates::aGivenCertificateOutweighsTheSavedOne()
{
    const PrinterProcess printer(m_known.options());
    save({QStringLiteral("bench1"), printer.url(), {}, TlsIdentity::other().certificate});
    WindowDriver user;
    user.window().panel()->setCertificate(QStringLiteral("bench1"), {}, m_known.fingerprint());
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
    QCOMPARE(saved().fingerprint, QString());
}

void TestPanelCertificates::aChangedCertificateIsRefused()
{
    const PrinterProcess impostor(TlsIdentity::other().options());
    save({QStringLiteral("bench1"), impostor.url(), {}, {}, m_known.fingerprint()});
    WindowDriver user;
    user.type("address", QStringLiteral("bench1"));
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitEvent(QStringLiteral("The certificate of bench1 has changed!")));
    QVERIFY(user.notice().contains(QStringLiteral("has changed!")));
    QCOMPARE(user.control().link(), Link::Closed);
    QVERIFY(!user.window().findChild<QMessageBox *>(QStringLiteral("confirmation")));
    QCOMPARE(saved().fingerprint, m_known.fingerprint());
}

void TestPanelCertificates::aCertificateThatChangesMeanwhileIsRefused()
{
    auto printer = std::make_unique<PrinterProcess>(m_known.options());
    const QUrl url = printer->url();
    save({QStringLiteral("bench1"), url, {}, {}, m_known.fingerprint()});
    WindowDriver user;
    PrinterControl::Timing timing;
    timing.firstPause = 50;
    user.control().setTiming(timing);
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    printer->kill();
    QVERIFY(user.awaitLink(Link::Lost));
    QVERIFY(!user.control().status().parameters.isEmpty());
    const PrinterProcess impostor(
        TlsIdentity::other().options()
        + QStringList{QStringLiteral("--port"), QString::number(url.port())});
    QVERIFY(user.awaitLink(Link::Closed));
    QVERIFY(user.notice().contains(QStringLiteral("has changed!")));
    // Nobody speaks for the printer any more.
    QVERIFY(user.control().status().parameters.isEmpty());
}

void TestPanelCertificates::onlyTheSavedAuthorityVouches()
{
    const PrinterProcess printer(m_known.options());
    save({QStringLiteral("bench1"), printer.url(), {}, TlsIdentity::other().certificate});
    WindowDriver user;
    user.type("address", QStringLiteral("bench1"));
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitEvent(QStringLiteral("Nothing here vouches for the certificate of bench1")));
    QVERIFY(!user.window().findChild<QMessageBox *>(QStringLiteral("confirmation")));
    save({QStringLiteral("bench1"), printer.url(), {}, m_known.certificate});
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
}

void TestPanelCertificates::aCertificateThatCannotBeCheckedIsNoReasonToConnect()
{
    const PrinterProcess printer;
    WindowDriver user;
    for (const zysession::Printer &unusable :
         {zysession::Printer{
              QStringLiteral("bench1"), printer.url(), {}, {}, m_known.fingerprint()},
          zysession::Printer{QStringLiteral("bench1"),
                             QUrl(QStringLiteral("wss://127.0.0.1:1")),
                             {},
                             QStringLiteral("/none.pem")}}) {
        save(unusable);
        user.type("address", QStringLiteral("bench1"));
        QVERIFY(user.click("connect"));
        QVERIFY(user.awaitEvent(QStringLiteral("The certificate of bench1 cannot be checked")));
        QCOMPARE(user.control().link(), Link::Closed);
    }
}

ZY_TEST(TestPanelCertificates)
#include "tst_certificates.moc"
