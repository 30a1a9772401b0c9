// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Replies that arrive in pieces, or several at once: TCP knows no messages.

#include "rawprinter.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"

#include <QTimer>

using zytest::RawPrinter;
using Session = zytest::TransferSession<RawPrinter>;

class SegmentsTest : public QObject
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

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

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
        : session(openSession), path(session.writeFile(s("local.zydlp"), contents))
    {
        const auto before = session.printer.texts().size();
        session.client.sendFile(path, s("m"));
        zytest::waitUntil([&] { return session.printer.texts().size() > before; });
        const QJsonObject request = zytest::objectIn(session.printer.texts().constLast());
        const QString key = request.value(s("key")).toString();
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
        return {s("fileTransProgress"), s("jsonMessageReceived"), s("jsonMessageReceived"),
                s("finish"), s("jsonMessageReceived")};
    }

    /// The signals of a transfer whose CHECK_DATA comes with the acknowledgement.
    QStringList namesWithEarlyCheck() const
    {
        return {s("fileTransProgress"), s("jsonMessageReceived"), s("finish"),
                s("jsonMessageReceived"), s("jsonMessageReceived")};
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
    return session.trace.count(s("finish")) == 1 && session.hasEnded();
}

} // namespace

void SegmentsTest::handlesMergedReplies()
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

void SegmentsTest::handlesAReplyAfterTheHandshake()
{
    Session session;
    session.printer.setGreeting(RawPrinter::textFrame(s(R"({"version":"1"})")));

    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{s("connected()"), s("checkVersion()"),
                              s(R"(jsonMessageReceived({"version":"1"}))")}));
}

void SegmentsTest::handlesAStatusAfterTheReplyThatStartsATransfer()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session, [&] { session.printer.write(transfer.acknowledged + transfer.checked); });

    session.printer.write(transfer.accepted
                          + RawPrinter::textFrame(s(R"({"cmd":"GET_PRINT_STATUS"})")));

    WAIT_VERIFY(finished(session));
    // The transfer's own reply is passed on last of all.
    QCOMPARE(session.trace.names(),
             (QStringList{s("getPrinterStatusInfo"), s("jsonMessageReceived")}
              + transfer.namesWithEarlyCheck()));
    QVERIFY(session.trace.lines().constLast().contains(s("START_FILE")));
}

void SegmentsTest::endsATransferOnMergedReplies()
{
    Session session;
    QVERIFY(session.open());
    const Transfer transfer(session);
    onNextChunk(session, [&] { session.printer.write(transfer.acknowledged + transfer.checked); });

    session.printer.write(transfer.accepted);

    WAIT_VERIFY(finished(session));
    QCOMPARE(session.trace.names(), transfer.namesWithEarlyCheck());
    QCOMPARE(session.logLines(),
             (QStringList{s("start send"), s("_totalBytes =  10"),
                          s("sendBytes= 10  _totalBytes= 10"), s("check_data key = \"39383736\""),
                          s("check_data checkstate = 1"), s("send end")}));
}

void SegmentsTest::checkDataMayBeSplitWhereTheLoopEnds()
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
            if (line.contains(s("START_FILE")))
                QTimer::singleShot(0, &ending,
                                   [&] { session.printer.write(transfer.checked.mid(position)); });
        });

        session.printer.write(transfer.accepted);

        WAIT_VERIFY(finished(session));
        WAIT_COMPARE(session.trace.names(), transfer.namesWithLateCheck());
        QVERIFY(session.trace.lines().at(2).contains(s("START_FILE")));
    }
    QCOMPARE(session.printer.connectionCount(), 1);
    QVERIFY(session.printer.isPeerConnected());
}

void SegmentsTest::checkDataMayBeSplitInALoopThatWaits()
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
                 (QStringList{s("finish"), s("jsonMessageReceived"), s("fileTransProgress"),
                              s("jsonMessageReceived"), s("jsonMessageReceived")}));
    }
    QCOMPARE(session.printer.connectionCount(), 1);
}

void SegmentsTest::startDataMayBeSplit()
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

void SegmentsTest::startFileMayBeSplit()
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

void SegmentsTest::everythingMayArriveByteByByte()
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

void SegmentsTest::handlesAllRepliesBeforeAClose()
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
    WAIT_COMPARE(session.trace.count(s("disconnected")), 1);
    QCOMPARE(session.trace.names().mid(0, 4), transfer.namesWithEarlyCheck().mid(0, 4));
    QCOMPARE(session.trace.lines().size(), 6);
}

ZY_TEST(SegmentsTest)

#include "tst_segments.moc"
