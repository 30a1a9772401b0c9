// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The sender deleted in each of its slots and at random instants, and what its printer then holds.

#include "scriptedprinter.h"
#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>

using namespace zytest;

class TestSenderDeletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void canBeDeletedInEachOfItsSlots_data();
    void canBeDeletedInEachOfItsSlots();
    void canBeDeletedAtAnyInstant_data();
    void canBeDeletedAtAnyInstant();
    void canBeDeletedUnstarted();
    void doesNotWaitWhenItIsDeleted();
    void leavesThePartOnThePrinter();
};

namespace
{

/// Drops the connection after the first chunk of each file, then takes the rest.
class DroppingPrinter : public ScriptedPrinter
{
public:
    explicit DroppingPrinter(qint64 heldAfterDrop) : m_held(heldAfterDrop)
    {
        answerTransfers();
        connect(this, &ScriptedPrinter::chunkReceived, this, [this] {
            // The sender may have been deleted, and its connection gone, since the chunk came.
            if (chunks().size() == 2 && peer()) {
                answerTransfers({true, m_held, 1, true});
                drop();
            }
        });
    }

private:
    qint64 m_held;
};

} // namespace

void TestSenderDeletion::canBeDeletedInEachOfItsSlots_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal :
         {"offered", "resumed", "restarted", "progress", "retrying", "finished"})
        QTest::newRow(signal) << QByteArray(signal);
}

void TestSenderDeletion::canBeDeletedInEachOfItsSlots()
{
    QFETCH(QByteArray, signal);
    DroppingPrinter printer(signal == "restarted" ? 0 : chunkBytes);
    Sending sending(printer.url(), compressibleBytes(4 * chunkBytes));
    const auto deleteOn = [&](const char *name) {
        return [&, name] {
            if (signal == name)
                sending.sender.reset();
        };
    };
    const ZyFileSender *sender = sending.sender.get();
    connect(sender, &ZyFileSender::offered, this, deleteOn("offered"));
    connect(sender, &ZyFileSender::resumed, this, deleteOn("resumed"));
    connect(sender, &ZyFileSender::restarted, this, deleteOn("restarted"));
    connect(sender, &ZyFileSender::progress, this, deleteOn("progress"));
    connect(sender, &ZyFileSender::retrying, this, deleteOn("retrying"));
    connect(sender, &ZyFileSender::finished, this, deleteOn("finished"));
    sending.sender->start();
    QVERIFY(waitUntil([&] { return !sending.sender; }));
    QCOMPARE(sending.finished.count(), signal == "finished" ? 1 : 0);
}

void TestSenderDeletion::canBeDeletedAtAnyInstant_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 0; seed < 40; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void TestSenderDeletion::canBeDeletedAtAnyInstant()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    TestPrinter printer;
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())),
                    compressibleBytes(random.bounded(1, 6) * chunkBytes, seed));
    sending.sender->start();
    QTimer::singleShot(random.bounded(120), this, [&] { sending.sender.reset(); });
    QVERIFY(waitUntil([&] { return !sending.sender; }));
    QVERIFY(printer.waitForConnections(0));
}

void TestSenderDeletion::canBeDeletedUnstarted()
{
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:1")), "abc");
    sending.sender.reset();
    QCOMPARE(sending.finished.count(), 0);
}

void TestSenderDeletion::doesNotWaitWhenItIsDeleted()
{
    TestPrinter printer;
    ZySendOptions options = impatient();
    options.setCompressionLevel(9); // a chunk takes long
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())),
                    compressibleBytes(8 * chunkBytes), options);
    sending.sender->start();
    QVERIFY(waitUntil([&] { return sending.progress.count() > 0; }));
    QElapsedTimer clock;
    clock.start();
    sending.sender.reset();
    // Far more than it takes, and far less than anything that it could wait for.
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
}

void TestSenderDeletion::leavesThePartOnThePrinter()
{
    TestPrinter printer;
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port()));
    const QByteArray contents = randomBytes(16 * chunkBytes);
    Sending first(url, contents);
    connect(first.sender.get(), &ZyFileSender::progress, this, [&] { first.sender.reset(); });
    first.sender->start();
    QVERIFY(waitUntil([&] { return !first.sender; }));
    QVERIFY(printer.waitForConnections(0));
    Sending second(url, contents);
    QVERIFY(second.run());
    QVERIFY(second.result().isSent());
    QCOMPARE(second.resumed.count(), 1);
    QVERIFY(readFile(printer.path(QStringLiteral("part.bin"))) == contents);
}

ZY_TEST(TestSenderDeletion)
#include "tst_deletion.moc"
