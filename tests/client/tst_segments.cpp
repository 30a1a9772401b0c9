// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Replies that arrive in pieces, or several at once: TCP knows no messages.

#include "rawprinter.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QTimer>

using zytest::RawPrinter;
using Session = zytest::TransferSession<RawPrinter>;

class TestSegments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void handlesMergedReplies();
    void handlesAReplyAfterTheHandshake();
    void handlesAStatusAfterTheReplyThatStartsATransfer();
    void endsATransferOnMergedReplies();

    void checkDataMayBeSplitWhereTheLoopEnds();
    void checkDataMayBeSplitInALoopThatWaits();
    void startDataMayBeSplit();
    void startFileMayBeSplit();
    void everythingMayArriveByteByByte();
    void handlesAllRepliesBeforeAClose();
};

namespace
{

const QByteArray contents = "0123456789";

/// One tiny file and the printer's three replies to it.
struct Transfer {
    Session &session;
    QString path;
    QByteArray accepted;
    QByteArray acknowledged;
    QByteArray checked;

    /// Has the client announce the file.
    explicit Transfer(Session &openSession)
        : session(openSession), path(session.writeFile("local.zydlp"_s, contents))
    {
        const auto before = session.printer.texts().size();
        session.client.sendFile(path, "m"_s);
        zytest::waitUntil([&] { return session.printer.texts().size() > before; });
        const QJsonObject request = zytest::objectIn(session.printer.texts().constLast());
        const QString key = request.value("key"_s).toString();
        zytest::TransferRules rules;
        rules.compress = false;
        accepted = RawPrinter::textFrame(zytest::startFileReply(request, rules));
        acknowledged
            = RawPrinter::textFrame(zytest::startDataReply(key, contents.size(), contents.size()));
        checked = RawPrinter::textFrame(zytest::checkDataReply(key, 1));
        session.trace.clear();
        session.log.clear();
    }

    /// The signals of a transfer whose CHECK_DATA comes once the loop has ended.
    QStringList namesWithLateCheck() const
    {
        return {"fileTransProgress"_s, "jsonMessageReceived"_s, "jsonMessageReceived"_s, "finish"_s,
                "jsonMessageReceived"_s};
    }

    /// The signals of a transfer whose CHECK_DATA comes with the acknowledgement.
    QStringList namesWithEarlyCheck() const
    {
        return {"fileTransProgress"_s, "jsonMessageReceived"_s, "finish"_s, "jsonMessageReceived"_s,
                "jsonMessageReceived"_s};
    }
};

/// Runs @p reaction once, at the next chunk.
template <typename Reaction> void onNextChunk(Session &session, Reaction reaction)
{
    auto *once = new QObject(&session.printer);
    QObject::connect(&session.printer, &RawPrinter::chunkReceived, once, [once, reaction] {
        once->deleteLater();
        reaction();
    });
}

bool finished(const Session &session)
{
    return session.trace.count("finish"_s) == 1 && session.hasEnded();
}

} // namespace

void TestSegments::handlesMergedReplies()
{
    Session session;
    QVERIFY(session.open());
    QByteArray frames;
    QStringList expected;
    for (int i = 0; i < 200; ++i) {
        const QString reply = QStringLiteral(R"({"n":%1})").arg(i);
        frames += RawPrinter::textFrame(reply);
        expected.append(QStringLiteral("jsonMessageReceived(%1)").arg(reply));
    }

    session.printer.write(frames);

    WAIT_COMPARE(session.trace.lines().size(), expected.size());
    QCOMPARE(session.trace.lines(), expected);
}

void TestSegments::handlesAReplyAfterTheHandshake()
{
    Session session;
    session.printer.setGreeting(RawPrinter::textFrame(R"({"version":"1"})"_s));

    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{"connected()"_s, "checkVersion()"_s,
                              R"(jsonMessageReceived({"version":"1"}))"_s}));
}

void TestSegments::handlesAStatusAfterTheReplyThatStartsATransfer()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session, [&] { session.printer.write(transfer.acknowledged + transfer.checked); });

    session.printer.write(transfer.accepted
                          + RawPrinter::textFrame(R"({"cmd":"GET_PRINT_STATUS"})"_s));

    WAIT_VERIFY(finished(session));
    // The transfer's own reply is passed on last of all.
    QCOMPARE(session.trace.names(),
             (QStringList{"getPrinterStatusInfo"_s, "jsonMessageReceived"_s}
              + transfer.namesWithEarlyCheck()));
    QVERIFY(session.trace.lines().constLast().contains("START_FILE"_s));
}

void TestSegments::endsATransferOnMergedReplies()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session, [&] { session.printer.write(transfer.acknowledged + transfer.checked); });

    session.printer.write(transfer.accepted);

    WAIT_VERIFY(finished(session));
    QCOMPARE(session.trace.names(), transfer.namesWithEarlyCheck());
    QCOMPARE(session.logLines(),
             (QStringList{"start send"_s, "_totalBytes =  10"_s, "sendBytes= 10  _totalBytes= 10"_s,
                          "check_data key = \"39383736\""_s, "check_data checkstate = 1"_s,
                          "send end"_s}));
}

void TestSegments::checkDataMayBeSplitWhereTheLoopEnds()
{
    Session session;
    QVERIFY(session.open());
    for (int position = 0, size = 1; position < size; ++position) {
        const Transfer transfer(session);
        size = int(transfer.checked.size());
        onNextChunk(session, [&] {
            session.printer.write(transfer.acknowledged + transfer.checked.left(position));
        });
        // The rest comes only once the loop has ended and everything below it has returned.
        QObject ending;
        connect(&session.trace, &zytest::SignalTrace::grown, &ending, [&](const QString &line) {
            if (line.contains("START_FILE"_s))
                QTimer::singleShot(0, &ending,
                                   [&] { session.printer.write(transfer.checked.mid(position)); });
        });

        session.printer.write(transfer.accepted);

        WAIT_VERIFY(finished(session));
        WAIT_COMPARE(session.trace.names(), transfer.namesWithLateCheck());
        QVERIFY(session.trace.lines().at(2).contains("START_FILE"_s));
    }
    QCOMPARE(session.printer.connectionCount(), 1);
    QVERIFY(session.printer.isPeerConnected());
}

void TestSegments::checkDataMayBeSplitInALoopThatWaits()
{
    Session session;
    QVERIFY(session.open());
    for (int position = 0, size = 1; position <= size; ++position) {
        const Transfer transfer(session);
        size = int(transfer.checked.size());
        // Before the acknowledgement, so the loop goes on waiting over both pieces.
        onNextChunk(session, [&] {
            session.printer.writeSplit(transfer.checked + transfer.acknowledged, position);
        });

        session.printer.write(transfer.accepted);

        WAIT_VERIFY(finished(session));
        QCOMPARE(session.trace.names(),
                 (QStringList{"finish"_s, "jsonMessageReceived"_s, "fileTransProgress"_s,
                              "jsonMessageReceived"_s, "jsonMessageReceived"_s}));
    }
    QCOMPARE(session.printer.connectionCount(), 1);
}

void TestSegments::startDataMayBeSplit()
{
    Session session;
    QVERIFY(session.open());
    for (int position = 1, size = 2; position < size; ++position) {
        const Transfer transfer(session);
        size = int(transfer.acknowledged.size());
        onNextChunk(session, [&] {
            session.printer.writeSplit(transfer.acknowledged + transfer.checked, position);
        });

        session.printer.write(transfer.accepted);

        WAIT_VERIFY(finished(session));
        QCOMPARE(session.trace.names(), transfer.namesWithEarlyCheck());
    }
    QCOMPARE(session.printer.connectionCount(), 1);
}

void TestSegments::startFileMayBeSplit()
{
    Session session;
    QVERIFY(session.open());
    for (int position = 1, size = 2; position < size; ++position) {
        const Transfer transfer(session);
        size = int(transfer.accepted.size());
        onNextChunk(session,
                    [&] { session.printer.write(transfer.acknowledged + transfer.checked); });

        session.printer.writeSplit(transfer.accepted, position);

        WAIT_VERIFY(finished(session));
        QCOMPARE(session.trace.names(), transfer.namesWithEarlyCheck());
    }
    QCOMPARE(session.printer.connectionCount(), 1);
}

void TestSegments::everythingMayArriveByteByByte()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session,
                [&] { session.printer.writeByteByByte(transfer.acknowledged + transfer.checked); });

    session.printer.writeByteByByte(transfer.accepted);

    WAIT_VERIFY(finished(session));
    QCOMPARE(session.printer.chunks(), QByteArrayList{contents});
    QCOMPARE(session.trace.names(), transfer.namesWithLateCheck());
}

void TestSegments::handlesAllRepliesBeforeAClose()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session, [&] {
        session.printer.write(transfer.acknowledged + transfer.checked
                              + RawPrinter::closeFrame(1000));
        session.printer.drop();
    });

    session.printer.write(transfer.accepted);

    WAIT_VERIFY(finished(session));
    WAIT_COMPARE(session.trace.count("disconnected"_s), 1);
    QCOMPARE(session.trace.names().mid(0, 4), transfer.namesWithEarlyCheck().mid(0, 4));
    QCOMPARE(session.trace.lines().size(), 6);
}

ZY_TEST(TestSegments)

#include "tst_segments.moc"
