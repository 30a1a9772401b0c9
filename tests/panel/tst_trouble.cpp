// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window while a printer process is slow, frozen, cut off or busy checking.

#include "printerprocess.h"
#include "programs.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <cuttingproxy.h>
#include <modelfiles.h>
#include <testprogram.h>
#include <waiting.h>

#include <QMessageBox>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;
using zytest::CuttingProxy;
using zytest::patience;
using Link = PrinterControl::Link;
using State = Upload::State;

namespace
{

/// A printer behind a proxy, and a window that is connected to it.
struct Desk {
    explicit Desk(const QStringList &options = {}, int replyLimit = 5000)
        : printer(options), proxy(static_cast<quint16>(printer.url().port()))
    {
        PrinterControl::Timing timing;
        timing.polling = 50;
        timing.firstPause = 50;
        timing.limits.reply = replyLimit;
        user.control().setTiming(timing);
    }

    bool connect() { return user.connectTo(proxy.url().toString()); }

    bool print(const QString &model)
    {
        return user.drop(model) && user.click("send") && user.click("startPrint")
            && user.awaitTitle(QStringLiteral("Printing"));
    }

    PrinterProcess printer;
    CuttingProxy proxy;
    WindowDriver user;
};

} // namespace

class TestPanelTrouble : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void pauseAndStopWorkWhileAFileIsSent();
    void aFrozenPrinterIsShownAsOne();
    void aPrinterLostInAPrintKeepsWhatIsKnown();
    void aCheckIsShown();
    void aStalledUploadShowsNoRate();
    void aQuestionGoesWithTheUpload();
    void disconnectingWhileSendingIsConfirmed();

private:
    QString randomFile(qint64 size)
    {
        return zytest::writeFile(m_directory.filePath(QStringLiteral("random.zydlp")),
                                 zytest::randomBytes(size));
    }

    TestSettings m_settings;
    QTemporaryDir m_directory;
    QString m_model;
};

void TestPanelTrouble::initTestCase()
{
    m_model = makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 400);
    QVERIFY(!m_model.isEmpty());
}

void TestPanelTrouble::pauseAndStopWorkWhileAFileIsSent()
{
    Desk desk({QStringLiteral("--speed"), QStringLiteral("100")});
    QVERIFY(desk.connect());
    QVERIFY(desk.print(m_model));
    auto &layers = desk.user.find<QProgressBar>("layerProgress");
    desk.proxy.setThroughput(2 * zytest::chunkBytes);
    QVERIFY(desk.user.drop(randomFile(40 * zytest::chunkBytes)));
    QVERIFY(desk.user.click("send"));
    QVERIFY(desk.user.awaitUpload(State::Sending));
    const int layer = layers.value();
    QTRY_VERIFY_WITH_TIMEOUT(layers.value() > layer, patience);
    QVERIFY(desk.user.click("pausePrint"));
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Paused")));
    QVERIFY(desk.user.click("stopPrint"));
    QVERIFY(desk.user.click("confirmationAccept"));
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Print ended")));
    QCOMPARE(desk.user.upload().state(), State::Sending);
}

void TestPanelTrouble::aFrozenPrinterIsShownAsOne()
{
    Desk desk({QStringLiteral("--speed"), QStringLiteral("100")}, 500);
    QVERIFY(desk.connect());
    QVERIFY(desk.print(m_model));
    desk.proxy.freeze();
    QVERIFY(desk.user.awaitTitle(QStringLiteral("No answer")));
    QCOMPARE(desk.user.textOf("linkBadge"), QStringLiteral("No answer"));
    QVERIFY(desk.user.textOf("remainingLabel").startsWith(QStringLiteral("Printing, as of ")));
    QVERIFY(desk.user.click("pausePrint"));
    QTRY_VERIFY_WITH_TIMEOUT(desk.user.notice().contains(QStringLiteral("cannot be taken back")),
                             patience);
    // As the notice said: it is carried out, however late.
    desk.proxy.thaw();
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Paused")));
    QCOMPARE(desk.user.textOf("linkBadge"), QStringLiteral("Connected"));
    QTRY_COMPARE(desk.user.notice(), QString());
}

void TestPanelTrouble::aPrinterLostInAPrintKeepsWhatIsKnown()
{
    Desk desk({QStringLiteral("--speed"), QStringLiteral("20")});
    QVERIFY(desk.connect());
    QVERIFY(desk.print(m_model));
    PrinterControl::Timing timing;
    desk.proxy.freeze(); // so that it does not come back at once
    desk.proxy.cut();
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Connection lost")));
    QCOMPARE(desk.user.textOf("jobLabel"), QStringLiteral("sphere.zydlp"));
    QVERIFY(desk.user.textOf("remainingLabel").startsWith(QStringLiteral("Printing, as of ")));
    QVERIFY(desk.user.find<QWidget>("layerPlot").isVisible());
    desk.proxy.thaw();
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Printing")));
    QCOMPARE(desk.user.notice(), QString());
}

void TestPanelTrouble::aCheckIsShown()
{
    Desk desk({QStringLiteral("--slow-check"), QStringLiteral("2")}, 500);
    QVERIFY(desk.connect());
    QVERIFY(desk.user.drop(m_model));
    QVERIFY(desk.user.click("send"));
    QVERIFY(desk.user.click("startPrint"));
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Checking the file")));
    QCOMPARE(desk.user.textOf("jobLabel"), QStringLiteral("sphere.zydlp"));
    QVERIFY(!desk.user.find<QPushButton>("startPrint").isEnabled());
    QVERIFY(desk.user.awaitTitle(QStringLiteral("Printing")));
    // Slower than an answer may be otherwise, and no reason for alarm.
    QCOMPARE(desk.user.notice(), QString());
    QCOMPARE(desk.user.control().link(), Link::Open);
}

void TestPanelTrouble::aStalledUploadShowsNoRate()
{
    Desk desk;
    QVERIFY(desk.connect());
    QVERIFY(desk.user.drop(randomFile(16 * zytest::chunkBytes)));
    connect(&desk.user.upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 4 * zytest::chunkBytes)
            desk.proxy.freeze();
    });
    QVERIFY(desk.user.click("send"));
    QTRY_VERIFY_WITH_TIMEOUT(
        desk.user.textOf("transferDetail").contains(QStringLiteral("no acknowledgement for ")),
        patience);
    QVERIFY(!desk.user.textOf("transferDetail").contains(QStringLiteral("/s")));
    desk.proxy.thaw();
    QVERIFY(desk.user.awaitUpload(State::Sent));
}

void TestPanelTrouble::aQuestionGoesWithTheUpload()
{
    Desk desk;
    QVERIFY(desk.connect());
    QVERIFY(desk.user.drop(randomFile(4 * zytest::chunkBytes)));
    desk.proxy.setThroughput(4 * zytest::chunkBytes);
    QVERIFY(desk.user.click("send"));
    QVERIFY(desk.user.click("cancel"));
    QCOMPARE(desk.user.window().findChildren<QMessageBox *>().size(), 1);
    QVERIFY(desk.user.awaitUpload(State::Sent));
    QTRY_COMPARE(desk.user.window().findChildren<QMessageBox *>().size(), 0);
}

void TestPanelTrouble::disconnectingWhileSendingIsConfirmed()
{
    Desk desk;
    QVERIFY(desk.connect());
    QVERIFY(desk.user.drop(randomFile(24 * zytest::chunkBytes)));
    desk.proxy.setThroughput(2 * zytest::chunkBytes);
    QVERIFY(desk.user.click("send"));
    QVERIFY(desk.user.awaitUpload(State::Sending));
    QVERIFY(desk.user.click("connect"));
    QVERIFY(desk.user.click("confirmationReject"));
    QVERIFY(desk.user.upload().isUnderWay());
    QVERIFY(desk.user.click("connect"));
    QTRY_COMPARE(desk.user.window().findChildren<QMessageBox *>().size(), 1);
    QVERIFY(desk.user.click("confirmationAccept"));
    QVERIFY(desk.user.awaitLink(Link::Closed));
    QCOMPARE(desk.user.upload().state(), State::Interrupted);
    // One Resume, which connects as well.
    desk.proxy.setThroughput(0);
    QVERIFY(desk.user.click("resume"));
    QVERIFY(desk.user.awaitLink(Link::Open));
}

ZY_TEST(TestPanelTrouble)
#include "tst_trouble.moc"
