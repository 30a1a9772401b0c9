// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the window says when something is wrong, with a real printer process where there is one.

#include "printerprocess.h"
#include "programs.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <modelfiles.h>
#include <testprogram.h>
#include <waiting.h>

#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;

class TestPanelExplains : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAddressThatIsNoneIsExplained();
    void aNameThatIsNotSavedIsUnknown();
    void anUnreachablePrinterIsExplained();
    void aWrongTokenIsExplainedAndCanBeReplaced();
    void aFileThatIsNoModelIsExplained();
    void aFailedPrintIsExplained();
    void anEmptyFileCannotBeSent();
    void aFileThatIsMendedCanBeSent();

private:
    QString randomFile(qint64 size)
    {
        const QString path = m_directory.filePath(QStringLiteral("random.zydlp"));
        return zytest::writeFile(path, zytest::randomBytes(size));
    }

    TestSettings m_settings;
    QTemporaryDir m_directory;
};

void TestPanelExplains::anAddressThatIsNoneIsExplained()
{
    WindowDriver user;
    user.type("address", QStringLiteral("the one upstairs"));
    QVERIFY(user.click("connect"));
    QVERIFY(user.notice().contains(QStringLiteral("neither a saved printer nor an address")));
    QTest::mouseClick(&user.find<QWidget>("noticeDismiss"), Qt::LeftButton);
    QCOMPARE(user.notice(), QString());
}

void TestPanelExplains::aNameThatIsNotSavedIsUnknown()
{
    WindowDriver user;
    user.type("address", QStringLiteral(" bench9 "));
    QVERIFY(!user.find<QPushButton>("saveName").isEnabled());
    QVERIFY(user.click("connect"));
    QVERIFY2(user.notice().startsWith(QStringLiteral("Unknown printer “bench9”: ")),
             qPrintable(user.notice()));
    QCOMPARE(user.control().link(), PrinterControl::Link::Closed);
}

void TestPanelExplains::anUnreachablePrinterIsExplained()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress::LocalHost));
    const QString address = QStringLiteral("127.0.0.1:%1").arg(taken.serverPort());
    taken.close();
    WindowDriver user;
    user.type("address", address);
    QTest::keyClick(&user.find<QWidget>("address"), Qt::Key_Return);
    QTRY_VERIFY_WITH_TIMEOUT(
        user.notice().contains(QStringLiteral("No printer answers at %1").arg(address)),
        zytest::patience);
    QCOMPARE(user.textOf("linkBadge"), QStringLiteral("Not connected"));
}

void TestPanelExplains::aWrongTokenIsExplainedAndCanBeReplaced()
{
    PrinterProcess printer({QStringLiteral("--token"), QStringLiteral("sesame")});
    WindowDriver user;
    user.type("token", QStringLiteral("wrong"));
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Access token rejected")));
    user.type("token", QStringLiteral("sesame"));
    QTest::keyClick(&user.find<QWidget>("token"), Qt::Key_Return);
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));
}

void TestPanelExplains::aFileThatIsNoModelIsExplained()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(randomFile(1000)));
    QVERIFY(user.click("send"));
    QTRY_VERIFY_WITH_TIMEOUT(
        user.notice().contains(QStringLiteral("not a model that it can print")), zytest::patience);
    QVERIFY(user.click("startPrint"));
    QTRY_VERIFY_WITH_TIMEOUT(user.notice().contains(QStringLiteral("failed the printer's check")),
                             zytest::patience);
}

void TestPanelExplains::aFailedPrintIsExplained()
{
    PrinterProcess printer({QStringLiteral("--fail-at"), QStringLiteral("5"),
                            QStringLiteral("--speed"), QStringLiteral("1000")});
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 40)));
    QVERIFY(user.click("send"));
    QVERIFY(user.click("startPrint"));
    QVERIFY(user.awaitTitle(QStringLiteral("Print failed")));
    QVERIFY(user.notice().contains(QStringLiteral("Look at the printer")));
}

void TestPanelExplains::anEmptyFileCannotBeSent()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.drop(randomFile(1000)));
    QVERIFY(user.connectTo(printer.url().toString()));
    const auto &send = user.find<QPushButton>("send");
    QVERIFY(send.isEnabled());
    QVERIFY(user.drop(randomFile(0)));
    QVERIFY(user.find<QWidget>("dropHint").accessibleName().contains(QStringLiteral("is empty")));
    QVERIFY(!send.isEnabled());
    user.type("filePath", m_directory.filePath(QStringLiteral("missing.zydlp")));
    QVERIFY(!send.isEnabled());
}

void TestPanelExplains::aFileThatIsMendedCanBeSent()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    const auto &send = user.find<QPushButton>("send");
    // Dropped again.
    QVERIFY(user.drop(randomFile(0)));
    QVERIFY(!send.isEnabled());
    QVERIFY(user.drop(randomFile(1000)));
    QVERIFY(send.isEnabled());
    // Mended in another program, which had the keyboard meanwhile.
    QVERIFY(user.drop(randomFile(0)));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    randomFile(1000);
    QVERIFY(!send.isEnabled());
    user.window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&user.window()));
    QTRY_VERIFY(send.isEnabled());
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitEvent(QStringLiteral("random.zydlp is on 127.0.0.1")));
}

ZY_TEST(TestPanelExplains)
#include "tst_explains.moc"
