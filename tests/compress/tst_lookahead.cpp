// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Chunks read and compressed ahead are those that reading late would give.

#include "filetransfer.h"
#include "lookahead.h"
#include "modelfiles.h"
#include "testprogram.h"
#include "waiting.h"
#include "workerpool.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <future>
#include <new>

#ifdef Q_OS_LINUX
#include <malloc.h>
#include <sys/resource.h>
#endif

using zytest::chunkBytes;
using zytest::compressibleBytes;
using zyws::Compression;
using zyws::LookAhead;

class TestLookAhead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void givesTheChunksOfTheFile_data();
    void givesTheChunksOfTheFile();
    void readsAsFarAheadAsThreadsNeed_data();
    void readsAsFarAheadAsThreadsNeed();
    void takesALevelForWhatIsNotCompressedYet();
    void saysWhenAChunkIsReady();

    void readsAgainWhatHasChanged_data();
    void readsAgainWhatHasChanged();
    void readsOnInARemovedFile();
    void sharesWhatSeveralSend_data();
    void sharesWhatSeveralSend();
    void sharesNothingOfAnotherKind();
    void keepsLittleForASlowOne();
    void compressesAnewWhatNobodyWanted();
    void leavesBusyThreadsAlone();
    void passesAnExceptionOn();
};

namespace
{

/// A file that is being read ahead.
struct Reading {
    /// One more reader of a file.
    explicit Reading(const QString &existing) : path(existing), file(path)
    {
        isOpen = file.open(QIODevice::ReadOnly);
        ahead = std::make_unique<LookAhead>(file, true, [] {});
    }
    explicit Reading(
        const QByteArray &contents, bool compress = true, std::function<void()> ring = [] {})
        : path(zytest::writeFile(directory.filePath(QStringLiteral("local.bin")), contents)),
          file(path), isOpen(file.open(QIODevice::ReadOnly)),
          ahead(std::make_unique<LookAhead>(file, compress, std::move(ring)))
    {
    }

    bool isReady(const Compression &compression)
    {
        ahead->prepare(compression);
        return zytest::waitUntil([this] { return ahead->isReady(); });
    }

    /// The payloads of all chunks from here on.
    QByteArrayList rest(const Compression &compression)
    {
        QByteArrayList payloads;
        while (isReady(compression)) {
            const auto chunk = ahead->take();
            if (chunk->size() < 1)
                break;
            payloads.append(chunk->payload());
            ahead->prepare(compression);
            ahead->acknowledgedUpTo(0);
        }
        return payloads;
    }

    QTemporaryDir directory;
    QString path;
    QFile file;
    bool isOpen = false;
    std::unique_ptr<LookAhead> ahead;
};

QByteArrayList compressedChunks(const QByteArray &contents, int level = -1)
{
    QByteArrayList payloads;
    for (const QByteArray &chunk : zytest::chunksOf(contents))
        payloads.append(qCompress(chunk, level));
    return payloads;
}

/// Keeps all threads of the pool from work until it is opened.
class Gate
{
public:
    Gate()
    {
        for (int i = 0; i < mostThreads; ++i) {
            const auto wait = [this, isOpen = m_isOpen] {
                ++m_waiting;
                isOpen.wait();
            };
            if (!zyws::startInPool(wait, mostThreads))
                qFatal("no thread for the gate");
        }
        while (m_waiting < mostThreads)
            std::this_thread::yield();
    }
    void open() { m_open.set_value(); }

private:
    static constexpr int mostThreads = 16;

    std::promise<void> m_open;
    const std::shared_future<void> m_isOpen = m_open.get_future();
    std::atomic_int m_waiting{0};
};

/// So much later that the file system's clock has moved on.
void letTimePass()
{
    QTest::qWait(20);
}

} // namespace

void TestLookAhead::initTestCase()
{
#ifdef Q_OS_LINUX
    mallopt(M_MMAP_THRESHOLD, 64 * 1024); // what is freed goes back to the system
#endif
}

void TestLookAhead::givesTheChunksOfTheFile_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("threads");
    for (const qint64 size : {0, 1, chunkBytes, chunkBytes + 1, 7 * chunkBytes / 2}) {
        for (const int threads : {0, 1, 3, -1, 1000})
            QTest::addRow("%lld bytes, %d threads", size, threads) << size << threads;
    }
}

void TestLookAhead::givesTheChunksOfTheFile()
{
    QFETCH(qint64, size);
    QFETCH(int, threads);
    const QByteArray contents = compressibleBytes(size);
    QVERIFY(Reading(contents, false).rest({-1, threads}) == zytest::chunksOf(contents));
    QVERIFY(Reading(contents).rest({-1, threads}) == compressedChunks(contents));
    QVERIFY(Reading(contents).rest({9, threads}) == compressedChunks(contents, 9));
    QByteArray inflated;
    for (const QByteArray &payload : Reading(contents).rest({zyws::adaptiveLevel, threads}))
        inflated += qUncompress(payload);
    QVERIFY(inflated == contents);
}

void TestLookAhead::readsAsFarAheadAsThreadsNeed_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<int>("chunks");
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("one") << 1 << 2;
    QTest::newRow("three") << 3 << 4;
}

void TestLookAhead::readsAsFarAheadAsThreadsNeed()
{
    QFETCH(int, threads);
    QFETCH(int, chunks);
    Reading reading(compressibleBytes(9 * chunkBytes));
    for (int taken = 0; taken < 3; ++taken) {
        QVERIFY(reading.isReady({-1, threads}));
        QCOMPARE(reading.file.pos(), (taken + chunks) * qint64(chunkBytes));
        reading.ahead->take();
    }
}

void TestLookAhead::takesALevelForWhatIsNotCompressedYet()
{
    const QByteArray contents = compressibleBytes(3 * chunkBytes);
    Reading reading(contents);
    QVERIFY(reading.isReady({9, 0}));
    QByteArrayList payloads{reading.ahead->take()->payload()};
    reading.ahead->prepare({9, 0});
    payloads += reading.rest({1, 0});
    QVERIFY(payloads
            == compressedChunks(contents, 9).mid(0, 2) + compressedChunks(contents, 1).mid(2));
}

void TestLookAhead::saysWhenAChunkIsReady()
{
    std::atomic_int rings{0};
    Reading reading(compressibleBytes(3 * chunkBytes), true, [&] { ++rings; });
    QVERIFY(!reading.ahead->isReady());
    QVERIFY(reading.isReady({-1, 2}));
    QVERIFY(zytest::waitUntil([&] { return rings == 3; }));
    QVERIFY(reading.isOpen);
}

void TestLookAhead::readsAgainWhatHasChanged_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<QByteArray>("after");
    const QByteArray longer = compressibleBytes(5 * chunkBytes, 2);
    for (const int threads : {0, 3}) {
        const auto row = [&](const char *tag, const QByteArray &after) {
            QTest::addRow("%s, %d threads", tag, threads) << threads << after;
        };
        row("other bytes", longer.left(5 * chunkBytes / 2));
        row("shorter", longer.left(3 * chunkBytes / 2));
        row("shorter than what was taken", longer.left(chunkBytes / 2));
        row("longer", longer);
    }
}

void TestLookAhead::readsAgainWhatHasChanged()
{
    QFETCH(int, threads);
    QFETCH(QByteArray, after);
    const Compression compression{-1, threads};
    const QByteArray before = compressibleBytes(5 * chunkBytes / 2, 1);
    Reading reading(before);
    QVERIFY(reading.isReady(compression));
    const QByteArray first = reading.ahead->take()->payload();
    QVERIFY(first == qCompress(before.left(chunkBytes)));
    QVERIFY(reading.isReady(compression));
    letTimePass();

    zytest::writeFile(reading.path, after);

    QVERIFY(reading.rest(compression) == compressedChunks(after.mid(chunkBytes)));
}

void TestLookAhead::readsOnInARemovedFile()
{
    const QByteArray contents = compressibleBytes(5 * chunkBytes);
    Reading reading(contents);
    QVERIFY(reading.isReady({-1, 1}));
    QVERIFY(QFile::remove(reading.path));
    QVERIFY(reading.rest({-1, 1}) == compressedChunks(contents));
}

void TestLookAhead::sharesWhatSeveralSend_data()
{
    QTest::addColumn<int>("level");
    QTest::newRow("default level") << -1;
    QTest::newRow("adaptive") << zyws::adaptiveLevel;
}

void TestLookAhead::sharesWhatSeveralSend()
{
    QFETCH(int, level);
    const QByteArray contents = compressibleBytes(9 * chunkBytes / 2);
    Reading first(contents);
    Reading second(first.path);
    Reading slow(first.path);
    for (Reading *reading : {&first, &second, &slow})
        QVERIFY(reading->isReady({level, 2}));

    // One runs away, one stays beside it, one comes long after.
    QByteArrayList payloads[3];
    for (int i = 0; i < 5; ++i) {
        for (Reading *reading : {&first, &second}) {
            QVERIFY(reading->isReady({level, 2}));
            payloads[reading == &second].append(reading->ahead->take()->payload());
        }
    }
    payloads[2] = slow.rest({level, 2});

    QByteArray inflated;
    for (int i = 0; i < 5; ++i) {
        inflated += qUncompress(payloads[0].at(i));
        for (const QByteArrayList &others : payloads)
            QCOMPARE(others.at(i).constData(), payloads[0].at(i).constData()); // the same memory
    }
    QVERIFY(inflated == contents);
}

void TestLookAhead::sharesNothingOfAnotherKind()
{
    const QByteArray contents = compressibleBytes(chunkBytes);
    Reading first(contents);
    Reading otherLevel(first.path);
    Reading withoutThreads(first.path);
    QVERIFY(first.isReady({-1, 2}));
    QVERIFY(otherLevel.isReady({9, 2}));
    QVERIFY(withoutThreads.isReady({-1, 0}));
    const QByteArray payload = first.ahead->take()->payload();
    QVERIFY(otherLevel.ahead->take()->payload() == qCompress(contents, 9));
    QVERIFY(withoutThreads.ahead->take()->payload().constData() != payload.constData());
    letTimePass();
    const QByteArray changed = compressibleBytes(chunkBytes, 2);
    zytest::writeFile(first.path, changed);
    Reading afterwards(first.path);
    QVERIFY(afterwards.rest({-1, 2}) == compressedChunks(changed));
}

void TestLookAhead::keepsLittleForASlowOne()
{
    constexpr int chunks = 70; // more than are kept
    const QByteArray contents = zytest::randomBytes(chunkBytes).repeated(chunks);
    Reading fast(contents);
    Reading slow(fast.path);
    const Compression stored{0, 2};
    QVERIFY(slow.isReady(stored));
    const QByteArrayList payloads = fast.rest(stored);
    const QByteArrayList later = slow.rest(stored);
    QCOMPARE(later.size(), chunks);
    QVERIFY(payloads == later);
    int shared = 0;
    for (int i = 0; i < chunks; ++i)
        shared += later.at(i).constData() == payloads.at(i).constData();
    QVERIFY2(shared >= 60 && shared < chunks, qPrintable(QString::number(shared)));
}

void TestLookAhead::compressesAnewWhatNobodyWanted()
{
    Gate gate;
    const QByteArray contents = compressibleBytes(2 * chunkBytes);
    Reading first(contents);
    Reading second(first.path);
    first.ahead->prepare({-1, 2});
    first.ahead.reset();
    second.ahead->prepare({-1, 2});
    gate.open();
    QVERIFY(second.rest({-1, 2}) == compressedChunks(contents));
}

void TestLookAhead::leavesBusyThreadsAlone()
{
    Gate gate;
    std::atomic_int rings{0};
    Reading reading(compressibleBytes(3 * chunkBytes), true, [&] { ++rings; });
    reading.ahead->prepare({-1, 1});
    QVERIFY(!reading.ahead->isReady());

    reading.ahead.reset(); // would wait for good, if it waited

    gate.open();
    Gate afterwards; // all threads have gone on
    afterwards.open();
    QCOMPARE(rings.load(), 0);
}

void TestLookAhead::passesAnExceptionOn()
{
#if defined(Q_OS_LINUX) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    Gate gate;
    Reading reading(zytest::randomBytes(chunkBytes));
    reading.ahead->prepare({-1, 1});
    Reading beside(reading.path);
    beside.ahead->prepare({-1, 1});
    rlimit usual{};
    QCOMPARE(getrlimit(RLIMIT_DATA, &usual), 0);
    const rlimit none{4096, usual.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_DATA, &none), 0);
    gate.open();
    while (!reading.ahead->isReady())
        std::this_thread::yield();
    QCOMPARE(setrlimit(RLIMIT_DATA, &usual), 0);
    const auto chunk = reading.ahead->take();
    QCOMPARE(chunk->size(), chunkBytes);
    QVERIFY_EXCEPTION_THROWN(chunk->payload(), std::bad_alloc);
    Reading later(reading.path); // tries anew
    QVERIFY(later.isReady({-1, 1}));
    QCOMPARE(qUncompress(later.ahead->take()->payload()).size(), chunkBytes);
#else
    QSKIP("memory cannot be made to run out here");
#endif
}

ZY_TEST(TestLookAhead)
#include "tst_lookahead.moc"
