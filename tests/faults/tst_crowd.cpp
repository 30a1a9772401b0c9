// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A thousand connections that say nothing, fifty that ask, and one transfer, at once.

#include "faultprocess.h"
#include "modelfiles.h"
#include "processview.h"
#include "rawpeer.h"
#include "rawtcppeer.h"
#include "rounds.h"
#include "testprogram.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include <sys/resource.h>

using namespace zytest;

namespace
{

constexpr int silentCount = 1000;
constexpr int askingCount = 50;
constexpr int leastQuestions = 20;
constexpr int fileSize = 8 * chunkBytes;
constexpr int pairCount = 5;
/// Whenever the host waits, the system looks at each connection, which alone makes it 1.6. A sender
/// takes ten times as long to compress what the host receives.
constexpr double mostGrowth = 3;

using Peers = std::vector<std::unique_ptr<RawPeer>>;
using SilentPeers = std::vector<std::unique_ptr<RawTcpPeer>>;

SilentPeers silentPeers(quint16 port, int count)
{
    SilentPeers peers;
    for (int i = 0; i < count; ++i)
        peers.push_back(std::make_unique<RawTcpPeer>(port));
    return peers;
}

Peers askingPeers(quint16 port)
{
    Peers peers;
    for (int i = 0; i < askingCount; ++i)
        peers.push_back(std::make_unique<RawPeer>(port));
    return peers;
}

/// Like the layers of a detailed model: a chunk takes the sender tens of milliseconds to compress.
QByteArray detailedLayers()
{
    QRandomGenerator generator(1);
    QByteArray bytes;
    bytes.reserve(fileSize);
    while (bytes.size() < fileSize) {
        const int run = generator.bounded(5, 20);
        bytes.append(qMin(run, fileSize - bytes.size()), static_cast<char>(generator.bounded(256)));
    }
    return bytes;
}

/// True when all are connected, and none has been told anything.
bool areSilent(const SilentPeers &peers)
{
    return std::all_of(peers.begin(), peers.end(), [](const auto &peer) {
        return peer->isConnected() && !peer->isEnded() && peer->texts().isEmpty();
    });
}

/// How many answers have come and not been taken.
int answersTo(const Peers &peers)
{
    return std::accumulate(peers.begin(), peers.end(), 0,
                           [](int sum, const auto &peer) { return sum + peer->texts().size(); });
}

double median(std::vector<qint64> times)
{
    std::sort(times.begin(), times.end());
    return static_cast<double>(times[times.size() / 2]);
}

/// Asks all peers at once; true when each gets the answer to its own question.
bool allAreAnswered(Peers &peers, int round)
{
    const auto token
        = [round](std::size_t peer) { return QStringLiteral("%1 of %2").arg(round).arg(peer); };
    for (std::size_t i = 0; i < peers.size(); ++i)
        peers[i]->send(QJsonObject{{QStringLiteral("cmd"), QStringLiteral("GET_PRINT_STATUS")},
                                   {QStringLiteral("token"), token(i)}});
    for (std::size_t i = 0; i < peers.size(); ++i) {
        // The host puts the token where the resin's name belongs.
        if (peers[i]->take().value(QLatin1String("resin")).toString() != token(i))
            return false;
    }
    return true;
}

/// Bytes that the host has allocated at this moment. Not its resident memory: the allocator keeps
/// much of that, for any program with so many connections.
qint64 heapOf(const HostProcess &host)
{
    RawPeer peer(host.port());
    return peer.ask(R"({"cmd":"GET_PRINT_STATUS","token":""})")
        .value(QLatin1String("sliceLayerCount"))
        .toString()
        .toLongLong();
}

} // namespace

class TestCrowd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyCommandIsAnsweredDuringATransfer();
    void memoryReturnsWhenTheCrowdHasLeft();
    void transferCostsHardlyMoreInACrowd();
    void cleanupTestCase();

private:
    void verifyCrowdedTransfer();
    qint64 transferCost(const HostProcess &host, const Peers &asking);
    double growth(const HostProcess &lonely, const Peers &asking);

    QTemporaryDir m_local;
    QTemporaryDir m_directory;
    std::unique_ptr<HostProcess> m_host;
    QByteArray m_contents;
    QString m_file;
    qint64 m_heapInCrowd = 0;
};

void TestCrowd::initTestCase()
{
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    if (limit.rlim_max < 2 * silentCount)
        QSKIP("This system does not let a process have two thousand open files");
    m_contents = detailedLayers();
    m_file = writeFile(m_local.filePath(QStringLiteral("local.bin")), m_contents);
    m_host = std::make_unique<HostProcess>(m_directory.path());
    QVERIFY(m_host->port() != 0);
}

void TestCrowd::verifyCrowdedTransfer()
{
    const auto finishedBefore = m_host->events("finish").size();
    const SilentPeers silent = silentPeers(m_host->port(), silentCount);
    QVERIFY(areSilent(silent));
    Peers asking = askingPeers(m_host->port());
    SenderProcess sender(m_host->url(), m_file);
    for (int round = 0; round < leastQuestions || sender.isRunning(); ++round)
        QVERIFY(allAreAnswered(asking, round));
    QCOMPARE(sender.waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(sender.events("retrying").size(), 0);
    const auto finished = m_host->events("finish");
    QCOMPARE(finished.size(), finishedBefore + 1);
    QCOMPARE(finished.last().value(QLatin1String("digest")).toString(), digestOf(m_contents));
    QVERIFY(areSilent(silent));
    m_heapInCrowd = heapOf(*m_host);
}

void TestCrowd::everyCommandIsAnsweredDuringATransfer()
{
    verifyCrowdedTransfer();
}

void TestCrowd::memoryReturnsWhenTheCrowdHasLeft()
{
    if (isSanitized() || heapOf(*m_host) == 0)
        QSKIP("The allocator of this build does not tell what is in use");
    if (m_heapInCrowd == 0)
        verifyCrowdedTransfer(); // what is allocated once, for good
    // One handle alone would be more for each connection.
    constexpr qint64 tolerance = silentCount * 100;
    qint64 before = 0;
    QVERIFY(waitUntil([&] {
        const qint64 now = heapOf(*m_host);
        return std::exchange(before, now) == now;
    }));
    QVERIFY(m_heapInCrowd > before + 10 * tolerance);
    for (int crowd = 0; crowd < rounds(1); ++crowd)
        verifyCrowdedTransfer();
    qint64 after = 0;
    const bool hasReturned = waitUntil([&] {
        after = heapOf(*m_host);
        return after <= before + tolerance;
    });
    QVERIFY2(hasReturned, qPrintable(QStringLiteral("%1 -> %2").arg(before).arg(after)));
}

/// What a transfer to @p host costs its processor, with the questions of @p asking, in
/// microseconds; -1 after a failure. Not how long it takes, which says more of what else the
/// machine does.
qint64 TestCrowd::transferCost(const HostProcess &host, const Peers &asking)
{
    const qint64 before = processorTime(host.processId());
    SenderProcess sender(host.url(), m_file);
    if (!sender.waitForEvents("offered"))
        return -1;
    for (const auto &peer : asking)
        peer->send(QByteArray(R"({"cmd":"GET_PRINT_STATUS","token":"t"})"));
    const bool isSent = sender.waitForEnding() == QLatin1String("Sent");
    const bool areAnswered
        = waitUntil([&] { return answersTo(asking) == static_cast<int>(asking.size()); });
    for (const auto &peer : asking)
        peer->take();
    return isSent && areAnswered ? processorTime(host.processId()) - before : -1;
}

/// How many times as much a transfer costs in the crowd; 0 after a failure. The pairs take turns,
/// so that whatever else the machine does slows both alike.
double TestCrowd::growth(const HostProcess &lonely, const Peers &asking)
{
    const Peers alsoAsking = askingPeers(lonely.port());
    std::vector<qint64> costs[2];
    for (int pair = 0; pair < pairCount; ++pair) {
        for (const bool isCrowded : {false, true}) {
            const qint64 cost
                = isCrowded ? transferCost(*m_host, asking) : transferCost(lonely, alsoAsking);
            if (cost <= 0)
                return 0;
            costs[isCrowded].push_back(cost);
        }
    }
    const double inCrowd = median(costs[true]);
    const double alone = median(costs[false]);
    qInfo("A transfer costs %g us in the crowd, %g us without", inCrowd, alone);
    return inCrowd / alone;
}

void TestCrowd::transferCostsHardlyMoreInACrowd()
{
    const QTemporaryDir directory;
    const HostProcess lonely(directory.path());
    const SilentPeers silent = silentPeers(m_host->port(), silentCount);
    const Peers asking = askingPeers(m_host->port());
    const double times = growth(lonely, asking);
    QVERIFY(times > 0);
    QVERIFY(times <= mostGrowth);
    QVERIFY(areSilent(silent));
}

void TestCrowd::cleanupTestCase()
{
    QVERIFY(!m_host || m_host->quit());
    QVERIFY(!m_host || m_host->exitCode() == 0);
}

ZY_TEST(TestCrowd)
#include "tst_crowd.moc"
