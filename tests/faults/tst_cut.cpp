// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A bad link between two real processes: cut, reset, frozen, throttled, byte by byte.

#include "cuttingproxy.h"
#include "faultprocess.h"
#include "modelfiles.h"
#include "rounds.h"
#include "testprogram.h"

#include <zysendoptions.h>

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <numeric>
#include <utility>

using namespace zytest;

namespace
{

constexpr int seedCount = 48;

/// What happens to the link of one seed.
enum class Link { CutToPrinter, CutToClient, Reset, Freeze, Throttle, ByteByByte };
constexpr int linkKinds = 6;

/// A printer's side of a transfer is a handshake, a few replies and no more.
constexpr int repliesSize = 700;

/// A connection carries less than this to the printer, chunks aside.
constexpr int requestsSize = 1000;

/// How long a sender waits where the link freezes, in ms.
constexpr int frozenLimit = 500;

int number(const QJsonObject &event, const char *key)
{
    return event.value(QLatin1String(key)).toInt();
}

QByteArray contentsFor(Link kind, quint32 seed)
{
    QRandomGenerator random(seed);
    const int largest = kind == Link::ByteByByte ? 6000 : 3 * chunkBytes;
    const qint64 size = random.bounded(largest / 10, largest);
    return random.bounded(2) ? randomBytes(size, seed) : compressibleBytes(size, seed);
}

QStringList optionsFor(Link kind)
{
    const int limit = kind == Link::Freeze ? frozenLimit : 2 * patience;
    return {QStringLiteral("--limit"), QString::number(limit)};
}

/// Half of the seeds of each kind go without GLib's event loop.
QStringList eventLoopOf(quint32 seed)
{
    if (seed / linkKinds % 2 == 0)
        return {};
    return {QStringLiteral("env"), QStringLiteral("QT_NO_GLIB=1")};
}

/// The most that each chunk comes to on the wire.
QVector<int> wireSizesOf(const QByteArray &contents)
{
    constexpr int framing = 64;
    const int level = ZySendOptions().compressionLevel();
    QVector<int> sizes;
    for (const QByteArray &chunk : chunksOf(contents))
        sizes.append(int(qCompress(chunk, level).size()) + framing);
    return sizes;
}

/// Interrupts the proxy's link a few times, in ways that follow from the seed.
class Mischief : public QObject
{
public:
    /// @p wireSize is about what the sender sends in all.
    Mischief(CuttingProxy &proxy, Link kind, quint32 seed, int wireSize)
        : m_proxy(proxy), m_kind(kind), m_random(seed), m_wireSize(wireSize)
    {
        m_interruptions = m_random.bounded(1, kind == Link::Freeze ? 3 : 5);
        connect(&proxy, &CuttingProxy::wasCut, this, &Mischief::plan);
        // The whole file in a quarter of a second: long enough to be frozen in the middle.
        if (kind == Link::Throttle || kind == Link::Freeze)
            proxy.setThroughput(4 * wireSize);
        if (kind == Link::ByteByByte) {
            proxy.setPieceSize(CuttingProxy::ToPrinter, 1);
            proxy.setPieceSize(CuttingProxy::ToClient, 1);
        }
        plan();
    }

    /// How often the link has been cut or frozen.
    int count() const { return m_proxy.cutCount() + m_freezeCount; }

private:
    void plan()
    {
        if (m_interruptions-- <= 0)
            return;
        if (m_kind == Link::Freeze) {
            QTimer::singleShot(m_random.bounded(200), this, &Mischief::freeze);
            return;
        }
        const bool isToClient
            = m_kind == Link::CutToClient || (m_kind != Link::CutToPrinter && m_random.bounded(2));
        const int bytes = isToClient ? m_random.bounded(repliesSize) : m_random.bounded(m_wireSize);
        m_proxy.cutAfter(isToClient ? CuttingProxy::ToClient : CuttingProxy::ToPrinter, bytes,
                         m_kind == Link::Reset ? CuttingProxy::Ending::Reset
                                               : CuttingProxy::Ending::Close);
    }

    /// The first time for longer than the sender waits, the second time not so long.
    void freeze()
    {
        m_proxy.freeze();
        const int least = m_freezeCount++ == 0 ? frozenLimit : 0;
        QTimer::singleShot(least + m_random.bounded(50, frozenLimit / 2), this, [this] {
            m_proxy.thaw();
            plan();
        });
    }

    CuttingProxy &m_proxy;
    const Link m_kind;
    QRandomGenerator m_random;
    const int m_wireSize;
    int m_interruptions;
    int m_freezeCount = 0;
};

} // namespace

class TestCut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arrivesByteIdenticalOverABadLink_data();
    void arrivesByteIdenticalOverABadLink();
    void cleanupTestCase();

private:
    void verifyNothingIsSentInVain(const SenderProcess &sender, int completions);

    int m_interruptions = 0;
    int m_resumptions = 0;
    int m_stalls = 0;
};

void TestCut::arrivesByteIdenticalOverABadLink_data()
{
    QTest::addColumn<quint32>("seed");
    for (int seed = 0; seed < rounds(seedCount); ++seed)
        QTest::addRow("seed %d", seed) << static_cast<quint32>(seed);
}

void TestCut::arrivesByteIdenticalOverABadLink()
{
    QFETCH(quint32, seed);
    const auto kind = static_cast<Link>(seed % linkKinds);
    const QByteArray contents = contentsFor(kind, seed);
    const QTemporaryDir local;
    const QString file = writeFile(local.filePath(QStringLiteral("local.bin")), contents);

    const QTemporaryDir directory;
    HostProcess host(directory.path());
    QVERIFY(host.port() != 0);
    CuttingProxy proxy(host.port());
    const QVector<int> wireSizes = wireSizesOf(contents);
    const Mischief mischief(proxy, kind, seed,
                            std::accumulate(wireSizes.begin(), wireSizes.end(), requestsSize));

    qint64 mostOnWire = 0;
    int starts = 0;
    for (QString ending; ending != QLatin1String("Sent");) {
        // A first connection that fails is left to the user, who starts again.
        QVERIFY2(starts == 0 || ending == QLatin1String("NoConnection"), qPrintable(ending));
        QVERIFY(starts++ <= mischief.count());
        SenderProcess sender(proxy.url().toString(), file, optionsFor(kind), eventLoopOf(seed));
        ending = sender.waitForEnding();
        verifyNothingIsSentInVain(sender, int(host.events("finish").size()));
        for (const QJsonObject &sent : sender.events("sent"))
            mostOnWire += wireSizes.at((number(sent, "to") - 1) / chunkBytes);
    }
    mostOnWire += proxy.connectionCount() * requestsSize;
    QVERIFY(proxy.forwarded(CuttingProxy::ToPrinter) <= mostOnWire);
    m_interruptions += mischief.count();
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == contents);
    QCOMPARE(entriesOf(directory.path()), QStringList{QStringLiteral("part.bin")});
    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

/// Bytes of the file, before compression. After an interruption the printer goes on after what it
/// has acknowledged, so at most the chunks whose acknowledgement did not arrive are sent twice.
/// The log and the signals come from two threads, so each is looked at by itself.
void TestCut::verifyNothingIsSentInVain(const SenderProcess &sender, int completions)
{
    // A completed file whose CHECK_DATA was lost cannot be told from one that never came.
    int restartsAllowed = qMax(0, completions - 1);
    int restartsReportable = restartsAllowed;
    bool isBeginning = false;
    int sentTo = 0;
    int acknowledged = 0;
    for (const QJsonObject &event : sender.events()) {
        const QString name = event.value(QLatin1String("event")).toString();
        if (name == QLatin1String("sending")) {
            isBeginning = true;
        } else if (name == QLatin1String("sent")) {
            const int previouslySentTo = std::exchange(sentTo, number(event, "to"));
            if (!std::exchange(isBeginning, false))
                continue;
            const int offset = (sentTo - 1) / chunkBytes * chunkBytes;
            m_resumptions += offset > 0;
            if (previouslySentTo - offset > window() * chunkBytes)
                QVERIFY(offset == 0 && restartsAllowed-- > 0);
        } else if (name == QLatin1String("resumed")) {
            // A restart that ended before its first acknowledgement has not been reported.
            if (number(event, "from") < acknowledged)
                QVERIFY(restartsReportable-- > 0);
        } else if (name == QLatin1String("restarted")) {
            QVERIFY(restartsReportable-- > 0);
            acknowledged = 0;
        } else if (name == QLatin1String("progress")) {
            acknowledged = number(event, "received");
        } else if (name == QLatin1String("retrying")) {
            m_stalls += event.value(QLatin1String("reason")) == QLatin1String("Stalled");
        }
    }
}

void TestCut::cleanupTestCase()
{
    // The link was bad indeed.
    QVERIFY2(m_interruptions >= rounds(seedCount), qPrintable(QString::number(m_interruptions)));
    QVERIFY2(m_resumptions >= rounds(seedCount) / 5, qPrintable(QString::number(m_resumptions)));
    QVERIFY2(m_stalls >= rounds(seedCount) / seedCount, qPrintable(QString::number(m_stalls)));
}

ZY_TEST(TestCut)
#include "tst_cut.moc"
