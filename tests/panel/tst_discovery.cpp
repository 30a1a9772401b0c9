// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printers that the window finds on the network, with a real Avahi daemon.

#include "printerpanel.h"
#include "printerprocess.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <savedprinters.h>
#include <testprogram.h>
#include <tlsidentity.h>
#include <waiting.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace zypanel;

namespace
{

using Link = PrinterControl::Link;
using zytest::patience;

const QString heading = QStringLiteral("– found on the network –");

QStringList entries(WindowDriver &user)
{
    const auto &list = user.find<QComboBox>("address");
    QStringList entries;
    for (int i = 0; i < list.count(); ++i)
        entries.append(list.itemText(i));
    return entries;
}

/// As a click on the entry of the open list.
void choose(WindowDriver &user, const QString &entry)
{
    auto &list = user.find<QComboBox>("address");
    const int row = list.findText(entry);
    list.setCurrentIndex(row);
    Q_EMIT list.activated(row);
}

QStringList named(const QString &name)
{
    return {QStringLiteral("--name"), name};
}

bool isOnOwnNetwork()
{
    return qEnvironmentVariableIsSet("ZYTEST_APART");
}

} // namespace

class TestPanelDiscovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void printersComeMoveAndGo();
    void oneThatIsChosenIsConnectedTo();
    void oneIsLookedForAndConnectedToOnceItComes();
    void aNameThatNobodyHasIsSaid();
    void aCertificateHoldsForAPrinterThatComesLater();
    void whatIsTypedStaysAsPrintersCome();

private:
    bool runsElsewhere();

    TestSettings m_settings;
};

void TestPanelDiscovery::init()
{
    zysession::SavedPrinters saved;
    saved.read();
    for (const zysession::Printer &printer : QVector<zysession::Printer>(saved.printers()))
        saved.remove(printer.name);
}

/// In a network namespace, which is a matter of the whole process; fails when it fails there.
bool TestPanelDiscovery::runsElsewhere()
{
    constexpr int notPossible = 77;
    if (isOnOwnNetwork())
        return false;
    QProcess there;
    there.setProcessChannelMode(QProcess::MergedChannels);
    there.start(QStringLiteral(PYTHON),
                {QStringLiteral(NETWORK), QCoreApplication::applicationFilePath(),
                 QStringLiteral("tst_discovery"), QLatin1String(QTest::currentTestFunction())});
    const bool isDone = there.waitForFinished(4 * patience);
    const QByteArray output = there.readAll();
    if (isDone && there.exitCode() == notPossible)
        QTest::qSkip(output.constData(), __FILE__, __LINE__);
    else if (!isDone || there.exitCode() != 0)
        QTest::qFail(output.constData(), __FILE__, __LINE__);
    return true;
}

void TestPanelDiscovery::printersComeMoveAndGo()
{
    if (runsElsewhere())
        return;
    zysession::SavedPrinters().save({QStringLiteral("saved1"), QUrl(QStringLiteral("ws://a:1"))});
    WindowDriver user;
    QCOMPARE(entries(user), QStringList{QStringLiteral("saved1")});
    const QString first = QStringLiteral("Ärmel 1");
    PrinterProcess one(named(first));
    PrinterProcess two(named(QStringLiteral("bench2")));
    const QStringList both{QStringLiteral("saved1"), heading, QStringLiteral("bench2"), first};
    QTRY_COMPARE_WITH_TIMEOUT(entries(user), both, patience);

    const auto port = [&] {
        const auto &list = user.find<QComboBox>("address");
        const int row = list.findText(QStringLiteral("bench2"));
        return QUrl(list.itemData(row, Qt::ToolTipRole).toString()).port();
    };
    const int before = two.url().port();
    QCOMPARE(port(), before);
    two.stop(SIGTERM);
    QVERIFY(two.start(named(QStringLiteral("bench2"))));
    QVERIFY(two.url().port() != before);
    QTRY_COMPARE_WITH_TIMEOUT(port(), two.url().port(), patience);

    one.stop(SIGTERM);
    QTRY_COMPARE_WITH_TIMEOUT(
        entries(user), (QStringList{QStringLiteral("saved1"), heading, QStringLiteral("bench2")}),
        patience);
    two.stop(SIGTERM);
    QTRY_COMPARE_WITH_TIMEOUT(entries(user), QStringList{QStringLiteral("saved1")}, patience);
}

void TestPanelDiscovery::oneThatIsChosenIsConnectedTo()
{
    if (runsElsewhere())
        return;
    const QString name = QStringLiteral("Bänch 1");
    const PrinterProcess printer(named(name));
    WindowDriver user;
    auto &list = user.find<QComboBox>("address");
    QTRY_VERIFY_WITH_TIMEOUT(entries(user).contains(name), patience);
    list.showPopup();
    QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
    QVERIFY(user.window().grab().save(QStringLiteral(PICTURES "/found-window.png")));
    QVERIFY(
        QApplication::activePopupWidget()->grab().save(QStringLiteral(PICTURES "/found-list.png")));
    list.hidePopup();

    choose(user, name);
    QCOMPARE(list.currentText(), QStringLiteral("dnssd:Bänch 1"));
    QVERIFY(!user.find<QPushButton>("forgetName").isEnabled());
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitLink(Link::Open));
    QVERIFY(user.textOf("printerTitle").startsWith(name + QStringLiteral(" (ws://")));
    QVERIFY(user.click("saveName"));
    QTRY_COMPARE(user.find<QLineEdit>("printerName").text(), QStringLiteral("Bänch-1"));
}

void TestPanelDiscovery::oneIsLookedForAndConnectedToOnceItComes()
{
    if (runsElsewhere())
        return;
    WindowDriver user;
    user.type("address", QStringLiteral("dnssd:late"));
    QVERIFY(user.click("connect"));
    QVERIFY(user.awaitEvent(QStringLiteral("Looking for “late” on the network…")));
    const PrinterProcess printer(named(QStringLiteral("late")));
    QVERIFY(user.awaitLink(Link::Open));
}

void TestPanelDiscovery::aNameThatNobodyHasIsSaid()
{
    if (runsElsewhere())
        return;
    WindowDriver user;
    user.type("address", QStringLiteral("dnssd:nobody"));
    QVERIFY(user.click("connect"));
    QTRY_COMPARE_WITH_TIMEOUT(
        user.notice(), QStringLiteral("No printer named “nobody” is announced on the network."),
        patience);
}

void TestPanelDiscovery::aCertificateHoldsForAPrinterThatComesLater()
{
    if (runsElsewhere())
        return;
    WindowDriver user;
    const QString address = QStringLiteral("dnssd:safe");
    user.window().panel()->setCertificate(address, {}, zytest::TlsIdentity::other().fingerprint());
    const PrinterProcess printer(named(QStringLiteral("safe"))
                                 + zytest::TlsIdentity::localhost().options());
    user.window().panel()->connectTo(address);
    QTRY_VERIFY_WITH_TIMEOUT(user.notice().contains(QStringLiteral("certificate")), patience);
    QCOMPARE(user.control().link(), Link::Closed);
}

void TestPanelDiscovery::whatIsTypedStaysAsPrintersCome()
{
    if (runsElsewhere())
        return;
    WindowDriver user;
    user.type("address", QStringLiteral("ws://10.77"));
    auto *field = user.find<QComboBox>("address").lineEdit();
    field->setCursorPosition(3);
    const PrinterProcess printer(named(QStringLiteral("bench1")));
    QTRY_VERIFY_WITH_TIMEOUT(entries(user).contains(QStringLiteral("bench1")), patience);
    QCOMPARE(field->text(), QStringLiteral("ws://10.77"));
    QCOMPARE(field->cursorPosition(), 3);
}

ZY_TEST(TestPanelDiscovery)
#include "tst_discovery.moc"
