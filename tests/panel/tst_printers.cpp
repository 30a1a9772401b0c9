// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing among printers: what is typed, saved and known stays with its printer.

#include "layerplot.h"
#include "printerprocess.h"
#include "programs.h"
#include "restartableprinter.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <modelfiles.h>
#include <savedprinters.h>
#include <testprogram.h>
#include <waiting.h>

#include <QComboBox>
#include <QDialog>
#include <QMessageBox>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;
using zytest::patience;
using Link = PrinterControl::Link;
using State = Upload::State;

class TestPanelPrinters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void enterInTheAddressLeavesTheTokenAlone();
    void aTokenFollowedByAShortcutIsUsed();
    void aTokenFollowedByAShortcutIsSentWithAFile();
    void aTokenIsNotForTheNextPrinter();
    void aTokenCorrectedOnTheWayIsNotForTheNextPrinter();
    void aTokenIsSavedWithItsPrinter();
    void savingUnderATakenNameAsksFirst();
    void messagesUseTheSavedName();
    void nothingOfOnePrinterIsShownOfTheNext();
    void anInterruptedFileStaysWithItsPrinter();
    void resumingGoesBackToTheFilesPrinter();
    void aResumedFileIsPrintedUnderItsFirstName();

private:
    TestSettings m_settings;
    QTemporaryDir m_directory;
};

void TestPanelPrinters::init()
{
    QFile::remove(zysession::SavedPrinters().file());
}

void TestPanelPrinters::enterInTheAddressLeavesTheTokenAlone()
{
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    WindowDriver user;
    PrinterControl::Timing timing;
    timing.limits.connecting = 300;
    user.control().setTiming(timing);
    user.type("address", QStringLiteral("127.0.0.1:%1").arg(mute.serverPort()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(user.control().link(), Link::Connecting);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("10.0.0.1"));
    QVERIFY(user.awaitLink(Link::Closed));
    QCOMPARE(user.find<QLineEdit>("token").text(), QString());
    // It did not work: the address can be corrected at once.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("/x"));
    QVERIFY(user.find<QComboBox>("address").currentText().endsWith(QStringLiteral("/x")));
}

void TestPanelPrinters::aTokenFollowedByAShortcutIsUsed()
{
    const PrinterProcess printer({QStringLiteral("--token"), QStringLiteral("sesame")});
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Access token rejected")));
    user.type("printFile", QStringLiteral("part.zydlp"));
    user.type("token", QStringLiteral("sesame"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::AltModifier);
    QVERIFY(user.awaitEvent(QStringLiteral("part.zydlp failed the printer's check")));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
}

void TestPanelPrinters::aTokenFollowedByAShortcutIsSentWithAFile()
{
    RestartablePrinter printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")))));
    user.type("token", QStringLiteral("sesame"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_E, Qt::AltModifier);
    QVERIFY(user.awaitUpload(State::Sent));
    QCOMPARE(printer.offeredToken, QStringLiteral("sesame"));
}

void TestPanelPrinters::aTokenIsNotForTheNextPrinter()
{
    const PrinterProcess printer({QStringLiteral("--token"), QStringLiteral("sesame")});
    WindowDriver user;
    user.type("token", QStringLiteral("sesame"));
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitLink(Link::Closed));
    QCOMPARE(user.find<QLineEdit>("token").text(), QStringLiteral("sesame"));
    user.type("address", QStringLiteral("10.0.0.1:8080"));
    QCOMPARE(user.find<QLineEdit>("token").text(), QString());
}

void TestPanelPrinters::aTokenCorrectedOnTheWayIsNotForTheNextPrinter()
{
    const PrinterProcess printer({QStringLiteral("--token"), QStringLiteral("sesame")});
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Access token rejected")));
    user.type("token", QStringLiteral("sesame"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitLink(Link::Closed));
    user.type("address", QStringLiteral("10.0.0.1:8080"));
    QCOMPARE(user.find<QLineEdit>("token").text(), QString());
}

void TestPanelPrinters::aTokenIsSavedWithItsPrinter()
{
    const PrinterProcess printer({QStringLiteral("--token"), QStringLiteral("sesame")});
    {
        WindowDriver user;
        user.type("address", printer.url().toString());
        user.type("token", QStringLiteral("sesame"));
        QVERIFY(user.click("saveName"));
        QVERIFY(QTest::qWaitForWindowExposed(&user.find<QDialog>("nameDialog")));
        QTest::keyClicks(&user.find<QLineEdit>("printerName"), QStringLiteral("bench1"));
        QTest::keyClick(&user.find<QLineEdit>("printerName"), Qt::Key_Return);
        QVERIFY(user.awaitEvent(QStringLiteral("saved as bench1")));
    }
    WindowDriver user;
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    QCOMPARE(user.find<QLineEdit>("token").text(), QString());
}

void TestPanelPrinters::savingUnderATakenNameAsksFirst()
{
    const QUrl first(QStringLiteral("ws://10.0.0.1:8080"));
    zysession::SavedPrinters saved;
    saved.save({QStringLiteral("bench1"), first, {}});
    WindowDriver user;
    user.type("address", QStringLiteral("ws://10.0.0.2:8080"));
    QVERIFY(user.click("saveName"));
    QVERIFY(QTest::qWaitForWindowExposed(&user.find<QDialog>("nameDialog")));
    QTest::keyClicks(&user.find<QLineEdit>("printerName"), QStringLiteral("bench1"));
    QVERIFY(user.textOf("nameHint").contains(first.toString()));
    // Enter leaves it as it is.
    QTest::keyClick(&user.find<QLineEdit>("printerName"), Qt::Key_Return);
    QTRY_VERIFY(user.window().findChildren<QDialog *>().isEmpty());
    saved.read();
    QCOMPARE(saved.find(QStringLiteral("bench1")).url, first);

    QVERIFY(user.click("saveName"));
    auto &dialog = user.find<QDialog>("nameDialog");
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClicks(&user.find<QLineEdit>("printerName"), QStringLiteral("bench1"));
    QTest::keyClick(&dialog, Qt::Key_R, Qt::AltModifier);
    QVERIFY(user.awaitEvent(QStringLiteral("saved as bench1")));
    saved.read();
    QCOMPARE(saved.find(QStringLiteral("bench1")).url, QUrl(QStringLiteral("ws://10.0.0.2:8080")));
}

void TestPanelPrinters::messagesUseTheSavedName()
{
    const PrinterProcess printer;
    zysession::SavedPrinters().save({QStringLiteral("bench1"), printer.url(), {}});
    WindowDriver user;
    QVERIFY(user.connectTo(QStringLiteral("bench1")));
    QVERIFY(user.awaitEvent(QStringLiteral("Connected to bench1.")));
    QVERIFY(user.textOf("printerTitle").startsWith(QStringLiteral("bench1")));
    QVERIFY(user.find<QLabel>("printerTitle").isEnabled());
}

void TestPanelPrinters::nothingOfOnePrinterIsShownOfTheNext()
{
    const PrinterProcess first({QStringLiteral("--speed"), QStringLiteral("100")});
    const PrinterProcess second;
    WindowDriver user;
    QVERIFY(user.connectTo(first.url().toString()));
    QVERIFY(user.drop(makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 400)));
    QVERIFY(user.click("send"));
    QVERIFY(user.click("startPrint"));
    QVERIFY(user.awaitTitle(QStringLiteral("Printing")));
    QVERIFY(user.find<QWidget>("layerPlot").isVisible());
    user.type("printExposure", QStringLiteral("99"));
    QVERIFY(user.click("connect"));

    QVERIFY(user.connectTo(second.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
    QVERIFY(!user.find<QWidget>("layerPlot").isVisible());
    QVERIFY(!user.find<QWidget>("layerProgress").isVisible());
    QCOMPARE(user.find<QComboBox>("printFile").count(), 0);
    QCOMPARE(user.find<QComboBox>("printFile").currentText(), QString());
    QCOMPARE(user.textOf("jobLabel"), QStringLiteral("No job"));
    QVERIFY(!user.find<QWidget>("transferProgress").isVisible());
    QVERIFY(!user.find<QWidget>("transferDetail").isVisible());
    QCOMPARE(user.find<QLineEdit>("printExposure").text(), QStringLiteral("2.5"));
    QCOMPARE(user.notice(), QString());
}

void TestPanelPrinters::anInterruptedFileStaysWithItsPrinter()
{
    RestartablePrinter first;
    const PrinterProcess second;
    WindowDriver user;
    QVERIFY(user.connectTo(first.url().toString()));
    QVERIFY(user.drop(zytest::writeFile(m_directory.filePath(QStringLiteral("random.zydlp")),
                                        zytest::randomBytes(16 * zytest::chunkBytes))));
    connect(&user.upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 3 * zytest::chunkBytes)
            first.stop();
    });
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Interrupted));
    QVERIFY(user.find<QWidget>("resume").isVisible());
    QVERIFY(user.click("connect"));
    QVERIFY(user.find<QWidget>("resume").isVisible());

    QVERIFY(user.connectTo(second.url().toString()));
    QVERIFY(!user.find<QWidget>("resume").isVisible());
    QCOMPARE(user.upload().state(), State::Idle);
}

void TestPanelPrinters::resumingGoesBackToTheFilesPrinter()
{
    RestartablePrinter printer;
    zysession::SavedPrinters().save(
        {QStringLiteral("other"), QUrl(QStringLiteral("ws://10.0.0.1:8080")), {}});
    WindowDriver user;
    user.type("token", QStringLiteral("mine"));
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(zytest::writeFile(m_directory.filePath(QStringLiteral("random.zydlp")),
                                        zytest::randomBytes(4 * zytest::chunkBytes))));
    const auto ending = connect(&user.upload(), &Upload::progressed, &user.upload(),
                                [&] { user.upload().interrupt(); });
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Interrupted));
    disconnect(ending);
    QVERIFY(user.click("connect"));
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 0, patience);

    user.type("address", QStringLiteral("other"));
    user.type("token", QStringLiteral("theirs"));
    QVERIFY(user.click("resume"));
    QVERIFY(user.awaitUpload(State::Sent));
    QCOMPARE(printer.offeredToken, QStringLiteral("mine"));
    QCOMPARE(user.textOf("printerTitle"), printer.url().toString());
    QCOMPARE(user.find<QComboBox>("address").currentText(), printer.url().toString());
    QCOMPARE(user.control().printer().token, QStringLiteral("mine"));
}

void TestPanelPrinters::aResumedFileIsPrintedUnderItsFirstName()
{
    const PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    const QString path = zytest::writeFile(m_directory.filePath(QStringLiteral("first.zydlp")),
                                           zytest::randomBytes(16 * zytest::chunkBytes));
    QVERIFY(user.drop(path));
    const auto ending = connect(&user.upload(), &Upload::progressed, &user.upload(),
                                [&] { user.upload().interrupt(); });
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Interrupted));
    disconnect(ending);
    QVERIFY(user.click("cancel")); // which is "Discard" by now
    user.type("fileName", QStringLiteral("second.zydlp"));
    // The printer may still be noticing the end of the first connection.
    QTRY_VERIFY_WITH_TIMEOUT(user.upload().state() == State::Sent
                                 || (!user.upload().isUnderWay() && !user.click("send")),
                             patience);
    QCOMPARE(user.find<QComboBox>("printFile").currentText(), QStringLiteral("first.zydlp"));
    QVERIFY(!printer.pathOf(QStringLiteral("first.zydlp")).isEmpty());
}

ZY_TEST(TestPanelPrinters)
#include "tst_printers.moc"
