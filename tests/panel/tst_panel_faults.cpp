// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The session when something goes wrong: no answer, refusals, stalls, vanished files.

#include "listener.h"
#include "testfile.h"
#include "testprinter.h"

#include <QDir>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>
#include <QWebSocketServer>

using namespace zypanel;
using Link = PrinterSession::Link;
using Transfer = PrinterSession::Transfer;

namespace
{

constexpr int patience = 60000; // ms
const QString name = QStringLiteral("part.zydlp");

/// Accepts connections and says nothing.
class SilentPrinter
{
public:
    SilentPrinter() : m_server(QStringLiteral("silent"), QWebSocketServer::NonSecureMode)
    {
        m_server.listen(QHostAddress::LocalHost);
    }
    QUrl url() const { return m_server.serverUrl(); }

private:
    QWebSocketServer m_server;
};

} // namespace

class TestPanelFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPortWhereNobodyListensIsReported();
    void aHandshakeThatNeverEndsIsReported();
    void aDropIsReported();
    void refusalsAreExplained_data();
    void refusalsAreExplained();
    void aPrinterThatCannotStoreIsExplained_data();
    void aPrinterThatCannotStoreIsExplained();
    void anEmptyFileIsNotOffered();
    void aFileThatVanishesLeavesTheSessionUsable();
    void aStalledTransferIsGivenUpAndCanBeResumed();
    void anUnconfirmedCancelEndsTheConnection();
    void aSilentPrinterIsReported();
    void keptParametersAreNamed();
    void anotherProtocolVersionIsReported();
    void mayBeDeletedWhileSending();

private:
    RandomFile m_file;
};

void TestPanelFaults::aPortWhereNobodyListensIsReported()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(taken.serverPort()));
    taken.close();
    Listener listener;
    listener.session.connectTo(url, QString());
    QCOMPARE(listener.session.link(), Link::Connecting);
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.link(), Link::Closed, patience);
    QVERIFY(listener.hasSaid(linkFaultNotice(LinkFault::NoAnswer, url.authority())));
}

void TestPanelFaults::aHandshakeThatNeverEndsIsReported()
{
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(mute.serverPort()));
    Listener listener;
    PrinterSession::Timeouts timeouts;
    timeouts.connecting = 200;
    listener.session.setTimeouts(timeouts);
    listener.session.connectTo(url, QString());
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.link(), Link::Closed, patience);
    QVERIFY(listener.hasSaid(linkFaultNotice(LinkFault::TimedOut, url.authority())));
}

void TestPanelFaults::aDropIsReported()
{
    TestPrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    printer.stop();
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.link(), Link::Closed, patience);
    QVERIFY(listener.hasSaid(linkFaultNotice(LinkFault::Lost, printer.url().authority())));
    QCOMPARE(listener.session.transfer(), Transfer::Idle);
}

void TestPanelFaults::refusalsAreExplained_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("wifiState");
    QTest::newRow("not now") << 0 << 1 << 5;
    QTest::newRow("token wanted") << -1 << 4 << 6;
}

void TestPanelFaults::refusalsAreExplained()
{
    QFETCH(int, answer);
    QFETCH(int, code);
    QFETCH(int, wifiState);
    TestPrinter printer;
    printer.mayReceive = answer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.session.send(m_file.create(100), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(listener.hasSaid(transferErrorNotice(code, wifiState)));
    QCOMPARE(listener.session.link(), Link::Open);
}

void TestPanelFaults::aPrinterThatCannotStoreIsExplained_data()
{
    QTest::addColumn<bool>("isDangling");
    QTest::newRow("not creatable") << true;
    QTest::newRow("a folder in its place") << false;
}

void TestPanelFaults::aPrinterThatCannotStoreIsExplained()
{
    QFETCH(bool, isDangling);
    TestPrinter printer;
    const QString place = printer.pathOf(QStringLiteral("wifi_tranfer.tmp"));
    if (isDangling)
        QVERIFY(QFile::link(printer.pathOf(QStringLiteral("missing/file")), place));
    else
        QVERIFY(QDir().mkdir(place));
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.session.send(m_file.create(100), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(listener.hasSaid(transferErrorNotice(2)));
}

void TestPanelFaults::anEmptyFileIsNotOffered()
{
    TestPrinter printer;
    bool isOffered = false;
    printer.onOffer = [&isOffered] { isOffered = true; };
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const QString path = m_file.create(0);
    QVERIFY(!listener.session.send(path, name));
    QCOMPARE(listener.said.last(), fileFaultNotice(FileFault::Empty, path).text);
    QCOMPARE(listener.session.transfer(), Transfer::Idle);
    // A round trip later, the printer would have seen it.
    const int requests = printer.statusRequests;
    QTRY_VERIFY_WITH_TIMEOUT(printer.statusRequests > requests + 1, patience);
    QVERIFY(!isOffered);
}

void TestPanelFaults::aFileThatVanishesLeavesTheSessionUsable()
{
    TestPrinter printer;
    const QString path = m_file.create(3 * mebibyte);
    printer.onOffer = [&path] { QFile::remove(path); };
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.session.send(path, name));
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(transferErrorNotice(-2)), patience);
    printer.onOffer = nullptr;
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.link(), Link::Open, patience);

    const QSignalSpy stored(&listener.session, &PrinterSession::fileStored);
    const QString another = m_file.create(2 * mebibyte);
    // The printer may notice the end of the first connection a little later, and refuse till then.
    while (stored.isEmpty()) {
        QVERIFY(listener.session.send(another, name));
        QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    }
    QVERIFY(contentOf(printer.pathOf(name)) == m_file.content());
}

void TestPanelFaults::aStalledTransferIsGivenUpAndCanBeResumed()
{
    const SilentPrinter printer;
    Listener listener;
    PrinterSession::Timeouts timeouts;
    timeouts.transferStall = 200;
    listener.session.setTimeouts(timeouts);
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.session.send(m_file.create(100), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Interrupted, patience);
    QCOMPARE(listener.session.link(), Link::Closed);
    QVERIFY(listener.hasSaid(linkFaultNotice(LinkFault::Stalled, printer.url().authority())));
    listener.session.forgetTransfer();
    QCOMPARE(listener.session.transfer(), Transfer::Idle);
}

void TestPanelFaults::anUnconfirmedCancelEndsTheConnection()
{
    const SilentPrinter printer;
    Listener listener;
    PrinterSession::Timeouts timeouts;
    timeouts.cancelling = 200;
    listener.session.setTimeouts(timeouts);
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.session.send(m_file.create(100), name));
    listener.session.cancelTransfer();
    QCOMPARE(listener.session.transfer(), Transfer::Cancelling);
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(
        listener.hasSaid(linkFaultNotice(LinkFault::CancelUnconfirmed, printer.url().authority())));
}

void TestPanelFaults::aSilentPrinterIsReported()
{
    const SilentPrinter printer;
    Listener listener;
    PrinterSession::Timeouts timeouts;
    timeouts.polling = 20;
    timeouts.answering = 100;
    listener.session.setTimeouts(timeouts);
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(linkFaultNotice(LinkFault::Silent, printer.url().authority())), patience);
    QCOMPARE(listener.session.link(), Link::Open);
}

void TestPanelFaults::keptParametersAreNamed()
{
    TestPrinter printer;
    printer.takesParameters = false;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(!listener.session.status().parameters.isEmpty(), patience);
    Parameters wanted = listener.session.status().parameters;
    wanted.insert(QStringLiteral("eleSpeed"), QStringLiteral("900"));
    listener.session.setParameters(wanted);
    QTRY_VERIFY_WITH_TIMEOUT(listener.said.contains(QStringLiteral(
                                 "The printer keeps values of its own for: Lift speed.")),
                             patience);
}

void TestPanelFaults::anotherProtocolVersionIsReported()
{
    TestPrinter printer;
    printer.version = QStringLiteral("2");
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(!listener.said.filter(QStringLiteral("version “2”")).isEmpty(),
                             patience);
}

void TestPanelFaults::mayBeDeletedWhileSending()
{
    TestPrinter printer;
    auto *session = new PrinterSession;
    const QSignalSpy gone(session, &QObject::destroyed);
    session->connectTo(printer.url(), QString());
    QTRY_COMPARE_WITH_TIMEOUT(session->link(), Link::Open, patience);
    connect(session, &PrinterSession::transferProgress, &printer, [session](qint64 bytes) {
        if (bytes == 2 * mebibyte)
            QMetaObject::invokeMethod(
                session, [session] { delete session; }, Qt::QueuedConnection);
    });
    QVERIFY(session->send(m_file.create(6 * mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(gone.count(), 1, patience);
}

QTEST_GUILESS_MAIN(TestPanelFaults)
#include "tst_panel_faults.moc"
