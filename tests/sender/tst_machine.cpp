// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The sender's state machine, fed with made-up events: no socket, no clock.

#include "machinescript.h"
#include "testprogram.h"

#include <QTest>

using namespace zytest;
using namespace zyws;
using Ending = ZySendResult::Ending;
using Interruption = ZySendResult::Interruption;
using State = SendMachine::State;

Q_DECLARE_METATYPE(std::vector<SendEvent>)

class TestSendMachine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acts_data();
    void acts();
    void ends_data();
    void ends();
    void offersACancelOnlyWhileItHelps_data();
    void offersACancelOnlyWhileItHelps();
    void countsFailuresInARowOnly();
    void goesOnAfterThePrinterHasLostItsPart();
    void givesUpOnAPrinterThatLosesItsPartEachTime();
    void pausesLongerAndLonger();
    void takesNothingAfterTheEnd();
};

void TestSendMachine::acts_data()
{
    QTest::addColumn<std::vector<SendEvent>>("events");
    QTest::addColumn<QString>("actions");
    using Events = std::vector<SendEvent>;
    const auto row = [](const char *tag, const Events &events, const char *actions) {
        QTest::newRow(tag) << events << QString::fromLatin1(actions);
    };
    row("start", {start}, "timer 1, connect");
    row("connected", {start, connected}, "timer 2, offered, offer");
    row("first chunk", {start, connected, acknowledged(chunk)}, "progress 1048576, timer 2");
    row("resumed", {start, connected, acknowledged(2 * chunk, chunk)},
        "resumed 1048576, progress 2097152, timer 2");
    row("odd offset", {start, connected, acknowledged(chunk + 7, 7)},
        "resumed 7, progress 1048583, timer 2");
    row("last chunk", throughLastChunk, "progress 3145723, timer 3");
    row("verdict first", throughLastChunk + verdict(1), "");
    row("acceptance first", throughLastChunk + accepted(), "");
    row("offset at the end", {start, connected, accepted(fileSize)}, "resumed 3145723, timer 3");
    row("dropped", {start, connected, dropped()}, "drop, retrying 1 after 10 ms, timer 10");
    row("stalled", {start, connected, timeLimit}, "drop, retrying 1 after 10 ms, timer 10");
    row("no verdict", throughLastChunk + timeLimit, "drop, retrying 1 after 10 ms, timer 10");
    row("after the pause", {start, connected, dropped(), timeLimit}, "timer 1, connect");
    row("restarted",
        {start, connected, acknowledged(chunk), dropped(), timeLimit, connected,
         acknowledged(chunk)},
        "restarted, progress 1048576, timer 2");
    row("a retry finds it still receiving",
        {start, connected, dropped(), timeLimit, connected, refused(1, 3)},
        "drop, retrying 2 after 20 ms, timer 20");
    row("a retry cannot connect",
        {start, connected, dropped(), timeLimit, plainEvent(SendEvent::ConnectFailed)},
        "drop, retrying 2 after 20 ms, timer 20");
    const SendEvent read = plainEvent(SendEvent::FileRead);
    row("connected while it reads", {start, connectedWhileReading()}, "");
    row("read before it is connected", {start, read}, "");
    row("read", {start, connectedWhileReading(), read}, "timer 2, offered, offer");
    row("read once more", {start, connectedWhileReading(), read, read}, "");
    row("dropped while it reads", {start, connectedWhileReading(), dropped()},
        "drop, retrying 1 after 10 ms, timer 10");
    row("read while pausing", {start, connectedWhileReading(), dropped(), read}, "");
    row("cancel while offering", {start, connected, cancelRequested()}, "timer 4, cancel");
    row("cancel while sending", {start, connected, acknowledged(chunk), cancelRequested(0)},
        "timer 4, cancel");
    row("cancel twice", {start, connected, cancelRequested(), cancelRequested()}, "");
    row("refused while cancelling", {start, connected, cancelRequested(), refused(1, 3)}, "");
    row("acknowledged while cancelling", {start, connected, cancelRequested(), acknowledged(chunk)},
        "");
    row("accepted while cancelling", {start, connected, cancelRequested(), accepted()}, "");
    row("connected anew by a cancel", {start, connected, cancelRequested(), connected}, "");
    row("a time limit before the start", {timeLimit}, "");
    row("dropped while pausing", {start, connected, dropped(), dropped()}, "");
    row("a verdict while pausing", throughLastChunk + timeLimit + verdict(1), "");
}

void TestSendMachine::acts()
{
    QFETCH(std::vector<SendEvent>, events);
    QFETCH(QString, actions);
    const Run run(events);
    QCOMPARE(run.last, actions);
    QCOMPARE(run.finishCount, 0);
}

void TestSendMachine::ends_data()
{
    QTest::addColumn<std::vector<SendEvent>>("events");
    QTest::addColumn<Ending>("ending");
    QTest::addColumn<Interruption>("interruption");
    using Events = std::vector<SendEvent>;
    const auto row = [](const char *tag, const Events &events, Ending ending,
                        Interruption interruption = Interruption::None) {
        QTest::newRow(tag) << events << ending << interruption;
    };
    const Events sending{start, connected, acknowledged(chunk)};
    row("good", throughLastChunk + verdict(1) + accepted(), Ending::Sent);
    row("good, acceptance first", throughLastChunk + accepted() + verdict(1), Ending::Sent);
    row("good, with the last bytes of a connection",
        throughLastChunk + verdict(1) + dropped() + accepted(), Ending::Sent);
    row("no opinion", throughLastChunk + accepted() + verdict(0), Ending::Sent);
    row("bad", throughLastChunk + accepted() + verdict(2), Ending::CheckFailed);
    row("negative verdict", throughLastChunk + accepted() + verdict(-1), Ending::CheckFailed);
    SendEvent verdictOnHeldFile = verdict(1);
    verdictOnHeldFile.offset = fileSize;
    row("held before, verdict first",
        Events{start, connected} + verdictOnHeldFile + accepted(fileSize), Ending::Sent);
    row("held before, acceptance first",
        Events{start, connected} + accepted(fileSize) + verdictOnHeldFile, Ending::Sent);
    row("verdict on another file", throughLastChunk + verdict(1, QStringLiteral("1")),
        Ending::PrinterFault);
    row("verdict while sending", sending + verdict(1), Ending::PrinterFault);
    row("verdict before anything", {start, connected, verdict(1)}, Ending::PrinterFault);
    row("offset beyond", {start, connected, accepted(fileSize + 1)}, Ending::PrinterFault);
    row("negative offset", {start, connected, acknowledged(chunk, -1)}, Ending::PrinterFault);
    row("another file", {start, connected, accepted(0, QStringLiteral("1"))}, Ending::PrinterFault);
    row("more than was sent", sending + acknowledged(3 * chunk), Ending::PrinterFault);
    row("less than was sent", sending + acknowledged(2 * chunk - 1), Ending::PrinterStorage);
    row("nothing more", sending + acknowledged(chunk), Ending::PrinterStorage);
    row("write failed", sending + acknowledged(2 * chunk, 0, 2), Ending::PrinterStorage);
    row("no temporary file", {start, connected, refused(2, 0)}, Ending::PrinterStorage);
    row("receiving", {start, connected, refused(1, 3)}, Ending::BusyReceiving);
    row("checking", {start, connected, refused(1, 4)}, Ending::BusyChecking);
    row("unwilling", {start, connected, refused(1, 5)}, Ending::Unwilling);
    row("token", {start, connected, refused(4, 6)}, Ending::TokenRejected);
    row("file ends early", sending + accepted(), Ending::LocalFile);
    row("file failed", {plainEvent(SendEvent::FileFailed)}, Ending::LocalFile);
    row("never connected", {start, plainEvent(SendEvent::ConnectFailed)}, Ending::NoConnection);
    row("never connected in time", {start, timeLimit}, Ending::NoConnection);

    Events twice{start,     connected, timeLimit, timeLimit,
                 connected, timeLimit, timeLimit, connected};
    row("given up after stalls", twice + timeLimit, Ending::GaveUp, Interruption::Stalled);
    row("given up after a drop", twice + dropped(), Ending::GaveUp, Interruption::ConnectionLost);
    row("given up while it is receiving", twice + refused(1, 3), Ending::GaveUp,
        Interruption::StillReceiving);
    row("closed as by a failed printer", twice + dropped(0, 1011), Ending::PrinterStorage);
    const Events fruitless{start,     connected,  dropped(0), timeLimit,
                           connected, dropped(0), timeLimit,  connected};
    row("accepted and dropped each time", fruitless + dropped(0), Ending::PrinterStorage);
    row("accepted and dropped, but the last time not", fruitless + dropped(-1), Ending::GaveUp,
        Interruption::ConnectionLost);

    row("cancel confirmed",
        {start, connected, cancelRequested(), plainEvent(SendEvent::CancelConfirmed)},
        Ending::Cancelled);
    row("cancel not confirmed", {start, connected, cancelRequested(), timeLimit},
        Ending::Cancelled);
    row("dropped while cancelling", {start, connected, cancelRequested(), dropped()},
        Ending::Cancelled);
    row("cancel while connecting", {start, cancelRequested()}, Ending::Cancelled);
    row("cancel while it reads", {start, connectedWhileReading(), cancelRequested()},
        Ending::Cancelled);
    row("certificate refused on a retry",
        {start, connected, dropped(), timeLimit, certificateChanged()}, Ending::NoConnection);
    row("cancel while pausing", {start, connected, dropped(), cancelRequested()},
        Ending::Cancelled);
    row("cancel with the last chunk under way",
        {start, connected, acknowledged(chunk), acknowledged(2 * chunk), cancelRequested(0)},
        Ending::LeftForLater);
    row("cancel with the only further chunk under way",
        {start, connected, cancelRequested(2 * chunk)}, Ending::LeftForLater);
    row("cancel with an offset beyond", {start, connected, cancelRequested(fileSize + 1)},
        Ending::PrinterFault);
    row("cancel while it checks", throughLastChunk + cancelRequested(0), Ending::LeftForLater);
    row("leave", sending + plainEvent(SendEvent::LeaveRequested), Ending::LeftForLater);
}

void TestSendMachine::ends()
{
    QFETCH(std::vector<SendEvent>, events);
    QFETCH(Ending, ending);
    QFETCH(Interruption, interruption);
    const Run run(events);
    QCOMPARE(run.finishCount, 1);
    QVERIFY2(run.last.endsWith(QStringLiteral("drop, finish")), qPrintable(run.last));
    QCOMPARE(run.result.ending(), ending);
    QCOMPARE(run.result.interruption(), interruption);
    QCOMPARE(run.machine.state(), State::Ended);
    QVERIFY(!run.result.sentence().isEmpty());
}

void TestSendMachine::offersACancelOnlyWhileItHelps_data()
{
    QTest::addColumn<std::vector<SendEvent>>("events");
    QTest::addColumn<bool>("isOffered");
    using Events = std::vector<SendEvent>;
    QTest::newRow("idle") << Events{} << false;
    QTest::newRow("connecting") << Events{start} << true;
    QTest::newRow("offering") << Events{start, connected} << true;
    QTest::newRow("sending") << Events{start, connected, acknowledged(chunk)} << true;
    QTest::newRow("last chunk") << Events{start, connected, acknowledged(chunk),
                                          acknowledged(2 * chunk)}
                                << false;
    SendEvent inWindow = acknowledged(chunk);
    inWindow.window = 2;
    QTest::newRow("last chunk of a window") << Events{start, connected, inWindow} << false;
    QTest::newRow("checking") << throughLastChunk << false;
    QTest::newRow("pausing") << Events{start, connected, dropped()} << true;
    QTest::newRow("cancelling") << Events{start, connected, cancelRequested()} << false;
    QTest::newRow("ended") << throughLastChunk + verdict(1) + accepted() << false;
}

void TestSendMachine::offersACancelOnlyWhileItHelps()
{
    QFETCH(std::vector<SendEvent>, events);
    QFETCH(bool, isOffered);
    QCOMPARE(Run(events).machine.canCancel(), isOffered);
}

void TestSendMachine::countsFailuresInARowOnly()
{
    std::vector<SendEvent> events{start, connected};
    for (qint64 held = 0; held < 2 * chunk; held += chunk) {
        // Two failures, then a chunk: two retries are allowed.
        for (const SendEvent &each : {dropped(), timeLimit, connected, dropped(), timeLimit,
                                      connected, acknowledged(held + chunk, held)})
            events.push_back(each);
    }
    const Run run(events);
    QCOMPARE(run.finishCount, 0);
    QCOMPARE(run.all.filter(QStringLiteral("retrying 2 ")).size(), 2);
    QCOMPARE(run.all.filter(QStringLiteral("retrying 3 ")).size(), 0);
}

void TestSendMachine::goesOnAfterThePrinterHasLostItsPart()
{
    std::vector<SendEvent> events{start, connected, acknowledged(chunk), acknowledged(2 * chunk)};
    // Lost at two chunks; then each attempt gains one, but more than two retries are needed.
    for (qint64 held = 0; held < 2 * chunk; held += chunk / 4) {
        SendEvent offered = acknowledged(held + chunk, held);
        for (const SendEvent &each : {dropped(), timeLimit, connected, offered})
            events.push_back(each);
    }
    QCOMPARE(Run(events).finishCount, 0);
}

void TestSendMachine::givesUpOnAPrinterThatLosesItsPartEachTime()
{
    std::vector<SendEvent> events{start, connected, acknowledged(chunk)};
    for (int attempt = 0; attempt < 3; ++attempt) {
        for (const SendEvent &each : {dropped(), timeLimit, connected, acknowledged(chunk)})
            events.push_back(each);
    }
    QCOMPARE(Run(events).result.ending(), Ending::GaveUp);
}

void TestSendMachine::pausesLongerAndLonger()
{
    QCOMPARE(pauseBefore(1, limits()), 10);
    QCOMPARE(pauseBefore(2, limits()), 20);
    QCOMPARE(pauseBefore(3, limits()), 25);
    QCOMPARE(pauseBefore(1000000, limits()), 25);
}

void TestSendMachine::takesNothingAfterTheEnd()
{
    Run run(throughLastChunk + verdict(1) + accepted());
    for (const SendEvent &each : {start, connected, verdict(2), accepted(), dropped(), timeLimit,
                                  cancelRequested(), plainEvent(SendEvent::LeaveRequested)})
        QVERIFY(run.machine.handle(each).isEmpty());
}

ZY_TEST(TestSendMachine)
#include "tst_machine.moc"
