// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A bad link between two real processes: cut, reset, frozen, throttled, byte by byte.

#include "cuttingproxy.h"
#include "faultprocess.h"
#include "modelfiles.h"
#include "rounds.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace zytest;

namespace
{

constexpr int seedCount = 50;

/// What happens to the link of one seed.
enum class Link { CutToPrinter, CutToClient, Reset, Freeze, Throttle, ByteByByte };
constexpr int linkKinds = 6;

/// A printer's side of a transfer is a handshake, a few replies and no more.
constexpr int repliesSize = 700;

qint64 number(const QJsonObject &event, const char *key)
{
    return static_cast<qint64>(event.value(QLatin1String(key)).toDouble());
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
        // The whole file in half a second: long enough to be frozen in the middle.
        if (kind == Link::Throttle || kind == Link::Freeze)
            proxy.setThroughput(qMin(2 * wireSize, 4 * chunkBytes));
        if (kind == Link::ByteByByte) {
            proxy.setPieceSize(CuttingProxy::ToPrinter, 1);
            proxy.setPieceSize(CuttingProxy::ToClient, 1);
        }
        plan();
    }

    int freezeCount() const { return m_freezeCount; }

private:
    void plan()
    {
        if (m_interruptions-- <= 0)
            return;
        if (m_kind == Link::Freeze) {
            QTimer::singleShot(m_random.bounded(400), this, [this] {
                m_proxy.freeze();
                ++m_freezeCount;
                QTimer::singleShot(m_random.bounded(100, 3500), this, [this] {
                    m_proxy.thaw();
                    plan();
                });
            });
            return;
        }
        const bool isToClient
            = m_kind == Link::CutToClient || (m_kind != Link::CutToPrinter && m_random.bounded(2));
        const int bytes = isToClient ? m_random.bounded(repliesSize) : m_random.bounded(m_wireSize);
        m_proxy.cutAfter(isToClient ? CuttingProxy::ToClient : CuttingProxy::ToPrinter, bytes,
                         m_kind == Link::Reset ? CuttingProxy::Ending::Reset
                                               : CuttingProxy::Ending::Close);
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
    void verifyNothingIsSentInVain(const QVector<QJsonObject> &attempts, int completions);

    int m_interruptions = 0;
    int m_resumptions = 0;
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
    QRandomGenerator random(seed);
    const int largest = kind == Link::ByteByByte ? 6000 : 3 * chunkBytes;
    const qint64 size = random.bounded(largest / 10, largest);
    const QByteArray contents
        = random.bounded(2) ? randomBytes(size, seed) : compressibleBytes(size, seed);
    const QTemporaryDir local;
    const QString file = writeFile(local.filePath(QStringLiteral("local.bin")), contents);

    const QTemporaryDir directory;
    HostProcess host(directory.path());
    QVERIFY(host.port() != 0);
    CuttingProxy proxy(host.port());
    constexpr int handshakeSize = 400;
    const Mischief mischief(proxy, kind, seed, qCompress(contents).size() + handshakeSize);
    QStringList options{QStringLiteral("--stall"),
                        QString::number(kind == Link::Freeze ? 2500 : 60000)};
    if (random.bounded(2))
        options.append(QStringLiteral("--reuse"));
    SenderProcess sender(proxy.url().toString(), file, options);

    QVERIFY(sender.waitForEnd());
    m_interruptions += proxy.cutCount() + mischief.freezeCount();
    QCOMPARE(sender.exitCode(), 0);
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == contents);
    QCOMPARE(entriesOf(directory.path()), QStringList{QStringLiteral("part.bin")});
    verifyNothingIsSentInVain(sender.events("attempt"), host.events("finish").size());
    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

/// Bytes of the file, before compression. After an interruption the printer goes on behind what it
/// has acknowledged, so at most the one chunk whose acknowledgement did not arrive is sent twice.
void TestCut::verifyNothingIsSentInVain(const QVector<QJsonObject> &attempts, int completions)
{
    QJsonObject previous;
    for (const QJsonObject &attempt : attempts) {
        if (number(attempt, "offset") < 0) {
            QCOMPARE(number(attempt, "sentTo"), -1);
            continue;
        }
        m_resumptions += number(attempt, "offset") > 0;
        const qint64 offset = number(attempt, "offset");
        const bool isFirst = previous.isEmpty();
        const qint64 sentTo = isFirst ? 0 : number(previous, "sentTo");
        const qint64 received = isFirst ? 0 : number(previous, "received");
        previous = attempt;
        if (sentTo - offset <= chunkBytes && offset >= received)
            continue;
        // A completed file whose CHECK_DATA was lost cannot be told from one that never came.
        QCOMPARE(offset, 0);
        QVERIFY2(--completions > 0, qPrintable(QString::number(sentTo)));
    }
}

void TestCut::cleanupTestCase()
{
    // The link was bad indeed.
    QVERIFY2(m_interruptions >= rounds(seedCount), qPrintable(QString::number(m_interruptions)));
    QVERIFY2(m_resumptions >= rounds(seedCount) / 5, qPrintable(QString::number(m_resumptions)));
}

QTEST_GUILESS_MAIN(TestCut)
#include "tst_cut.moc"
