// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The controller on made-up files, processors and lines.

#include "levelcontroller.h"
#include "testprogram.h"

#include <QTest>

#include <deque>
#include <functional>

using zyws::LevelController;
using zyws::rungCount;

namespace
{

constexpr int chunk = 1024 * 1024;
constexpr double ms = 1e-3;
constexpr int settlingTime = 8; // chunks

/// What each rung costs, in ms, and leaves of a chunk.
struct File {
    double cost[rungCount];
    double share[rungCount];
};

constexpr File layers{{0.1, 9, 19, 25}, {1, 0.638, 0.621, 0.619}};
constexpr File layersByZlib{{0.3, 17, 101, 102}, {1, 0.654, 0.630, 0.628}};
constexpr File mesh{{0.1, 6.5, 9.2, 13.7}, {1, 0.514, 0.516, 0.516}};
constexpr File noise{{0.1, 8.2, 10.3, 9.3}, {1, 1, 1, 1}};
constexpr File text{{0.1, 9, 25, 60}, {1, 0.4, 0.33, 0.31}};

struct Line {
    double rate; ///< Mbit/s
    double inflating = 2.5; ///< ms for a chunk that was not stored
};

double lineTime(const Line &line, double share, int rung)
{
    return chunk * share * 8 / (line.rate * 1e6) + (rung > 0 ? line.inflating * ms : 0) + 1 * ms;
}

/// Runs a controller against a file and a line, either of which may change at any chunk.
class Transfer
{
public:
    explicit Transfer(int workers) : m_workers(workers) { m_controller.setWorkers(workers); }

    std::function<double(int chunkNumber)> costNoise = [](int) { return 1.0; };
    std::function<double(int chunkNumber)> lineNoise = [](int) { return 1.0; };

    /// The rungs of the next @p count chunks.
    QVector<int> send(int count, const File &file, const Line &line)
    {
        QVector<int> rungs;
        for (int i = 0; i < count; ++i, ++m_number) {
            const int rung = m_controller.choose();
            rungs.append(rung);
            const double share = file.share[rung];
            m_controller.compressed(rung, chunk, static_cast<int>(chunk * share),
                                    file.cost[rung] * ms * costNoise(m_number));
            m_underWay.push_back({rung, share});
            // Chunks are compressed ahead of those that are acknowledged.
            if (m_underWay.size() > static_cast<std::size_t>(m_workers)) {
                const auto [oldRung, oldShare] = m_underWay.front();
                m_underWay.pop_front();
                m_controller.acknowledged(oldRung, chunk, static_cast<int>(chunk * oldShare),
                                          lineTime(line, oldShare, oldRung) * lineNoise(m_number));
            }
        }
        return rungs;
    }

private:
    struct Sent {
        int rung;
        double share;
    };

    LevelController m_controller;
    int m_workers;
    int m_number = 0;
    std::deque<Sent> m_underWay;
};

/// How long the chunks take one after another, against the best rung for all of them.
double timeAgainstBest(const QVector<int> &rungs, const File &file, const Line &line, int workers)
{
    const auto cycle = [&](int rung) {
        const double cost = file.cost[rung] * ms;
        const double onLine = lineTime(line, file.share[rung], rung);
        return workers > 0 ? qMax(cost / workers, onLine) : cost + onLine;
    };
    double best = cycle(0);
    for (int rung = 1; rung < rungCount; ++rung)
        best = qMin(best, cycle(rung));
    double sum = 0;
    for (const int rung : rungs)
        sum += cycle(rung);
    return sum / (best * double(rungs.size()));
}

QString listed(const QVector<int> &rungs)
{
    QString line;
    for (const int rung : rungs)
        line += QString::number(rung);
    return line;
}

int countOf(const QVector<int> &rungs, int rung)
{
    return static_cast<int>(rungs.count(rung));
}

} // namespace

Q_DECLARE_METATYPE(File)
Q_DECLARE_METATYPE(Line)

class TestLevelController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsAtTheFirstRung();
    void settlesWithinEightChunks_data();
    void settlesWithinEightChunks();
    void staysNearTheBestRung_data() { settlesWithinEightChunks_data(); }
    void staysNearTheBestRung();

    void ignoresANoisyChunk_data();
    void ignoresANoisyChunk();
    void followsTheLine_data();
    void followsTheLine();
    void followsTheFile_data();
    void followsTheFile();
    void triesIncompressibleFilesLessAndLess();
    void learnsThatThePrinterInflatesSlowly();
    void learnsThatThreadsShareTheProcessor();
    void takesNothingFromTinyMessages();
    void goesOnWhenATrialIsNeverHeardOf();
};

void TestLevelController::beginsAtTheFirstRung()
{
    LevelController controller;
    controller.setWorkers(2);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(controller.choose(), 1);
}

void TestLevelController::settlesWithinEightChunks_data()
{
    QTest::addColumn<File>("file");
    QTest::addColumn<Line>("line");
    QTest::addColumn<int>("workers");
    QTest::addColumn<int>("rung");
    QTest::newRow("layers, slow line") << layers << Line{60} << 2 << 2;
    QTest::newRow("layers, slow line, one worker") << layers << Line{60} << 1 << 2;
    QTest::newRow("layers, line as fast as compression") << layers << Line{300} << 1 << 2;
    QTest::newRow("layers, fast line, no overlap") << layers << Line{1000} << 0 << 0;
    QTest::newRow("layers, very fast line") << layers << Line{10000} << 2 << 0;
    QTest::newRow("layers by zlib, slow line") << layersByZlib << Line{60} << 2 << 2;
    QTest::newRow("layers by zlib, one worker") << layersByZlib << Line{60} << 1 << 1;
    QTest::newRow("layers by zlib, faster line") << layersByZlib << Line{300} << 2 << 1;
    QTest::newRow("mesh, slow line") << mesh << Line{60} << 2 << 1;
    QTest::newRow("mesh, fast line") << mesh << Line{1000} << 2 << 1;
    QTest::newRow("text, slow line") << text << Line{60} << 2 << 3;
    QTest::newRow("noise, slow line") << noise << Line{60} << 2 << 0;
    QTest::newRow("noise, fast line") << noise << Line{1000} << 2 << 0;
}

void TestLevelController::settlesWithinEightChunks()
{
    QFETCH(File, file);
    QFETCH(Line, line);
    QFETCH(int, workers);
    QFETCH(int, rung);
    Transfer transfer(workers);
    // Before the first acknowledgement, which so many chunks run ahead of, nothing is known.
    const QVector<int> rungs = transfer.send(workers + settlingTime + 24, file, line);
    const QVector<int> settled = rungs.mid(workers + settlingTime);
    QVERIFY2(countOf(settled, rung) >= settled.size() - 4, qPrintable(listed(rungs)));
}

void TestLevelController::staysNearTheBestRung()
{
    QFETCH(File, file);
    QFETCH(Line, line);
    QFETCH(int, workers);
    Transfer transfer(workers);
    const QVector<int> rungs = transfer.send(64, file, line);
    const double ratio = timeAgainstBest(rungs, file, line, workers);
    QVERIFY2(ratio < 1.15, qPrintable(QStringLiteral("%1: %2").arg(ratio).arg(listed(rungs))));
}

void TestLevelController::ignoresANoisyChunk_data()
{
    QTest::addColumn<double>("cost");
    QTest::addColumn<double>("line");
    QTest::newRow("compression took ten times as long") << 10.0 << 1.0;
    QTest::newRow("the line took ten times as long") << 1.0 << 10.0;
    QTest::newRow("the line seemed ten times as fast") << 1.0 << 0.1;
    QTest::newRow("all took ten times as long") << 10.0 << 10.0;
}

void TestLevelController::ignoresANoisyChunk()
{
    QFETCH(double, cost);
    QFETCH(double, line);
    for (int noisy = 14; noisy < 24; ++noisy) {
        Transfer calm(2);
        Transfer disturbed(2);
        disturbed.costNoise = [=](int number) { return number == noisy ? cost : 1.0; };
        disturbed.lineNoise = [=](int number) { return number == noisy ? line : 1.0; };
        QCOMPARE(listed(disturbed.send(40, layers, {60})), listed(calm.send(40, layers, {60})));
    }
}

void TestLevelController::followsTheLine_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("after");
    QTest::addColumn<int>("rung");
    QTest::newRow("slower") << 10000.0 << 60.0 << 2;
    QTest::newRow("faster") << 60.0 << 10000.0 << 0;
    QTest::newRow("a little slower") << 300.0 << 250.0 << 2;
}

void TestLevelController::followsTheLine()
{
    QFETCH(double, before);
    QFETCH(double, after);
    QFETCH(int, rung);
    Transfer transfer(2);
    transfer.send(40, layers, {before});
    const QVector<int> rungs = transfer.send(40, layers, {after});
    const QVector<int> settled = rungs.mid(2 + settlingTime);
    QVERIFY2(countOf(settled, rung) >= settled.size() - 4, qPrintable(listed(rungs)));
}

void TestLevelController::followsTheFile_data()
{
    QTest::addColumn<File>("before");
    QTest::addColumn<File>("after");
    QTest::addColumn<int>("rung");
    QTest::newRow("becomes incompressible") << layers << noise << 0;
    QTest::newRow("becomes compressible") << noise << layers << 2;
}

void TestLevelController::followsTheFile()
{
    QFETCH(File, before);
    QFETCH(File, after);
    QFETCH(int, rung);
    Transfer transfer(2);
    transfer.send(16, before, {60});
    const QVector<int> rungs = transfer.send(64, after, {60});
    // A file whose kind has changed is noticed by a trial, so later.
    const QVector<int> settled = rungs.mid(40);
    QVERIFY2(countOf(settled, rung) >= settled.size() - 4, qPrintable(listed(rungs)));
}

void TestLevelController::triesIncompressibleFilesLessAndLess()
{
    Transfer transfer(2);
    transfer.send(10, noise, {1000});
    const QVector<int> rungs = transfer.send(256, noise, {1000});
    const auto trials = rungs.size() - countOf(rungs, 0);
    QVERIFY2(trials > 1 && trials < 10, qPrintable(listed(rungs)));
}

void TestLevelController::learnsThatThePrinterInflatesSlowly()
{
    const Line line{1000, 30};
    Transfer transfer(4);
    const QVector<int> rungs = transfer.send(40, layers, line).mid(4 + settlingTime);
    QVERIFY2(countOf(rungs, 0) >= rungs.size() - 2, qPrintable(listed(rungs)));
}

void TestLevelController::learnsThatThreadsShareTheProcessor()
{
    // Two threads, but only one processor for them: a chunk every 17 ms at the first rung, while a
    // stored one needs 8.4 + 1.
    const Line line{1000, 0};
    const double slowed = 1.9;
    LevelController controller;
    controller.setWorkers(2);
    QVector<int> rungs;
    for (int i = 0; i < 40; ++i) {
        const int rung = controller.choose();
        rungs.append(rung);
        const auto packed = static_cast<int>(chunk * layers.share[rung]);
        const double cost = layers.cost[rung] * ms * slowed;
        const double onLine = lineTime(line, layers.share[rung], rung);
        controller.compressed(rung, chunk, packed, cost);
        if (cost > onLine)
            controller.starved(rung, chunk, cost);
        controller.acknowledged(rung, chunk, packed, onLine);
    }
    QVERIFY2(countOf(rungs.mid(settlingTime), 0) > 26, qPrintable(listed(rungs)));
}

void TestLevelController::takesNothingFromTinyMessages()
{
    LevelController controller;
    controller.setWorkers(1);
    for (int i = 0; i < 20; ++i) {
        const int rung = controller.choose();
        controller.compressed(rung, chunk, chunk / 2, 10 * ms);
        controller.acknowledged(rung, chunk, chunk / 2, 1 * ms);
    }
    QCOMPARE(controller.choose(), 0);
    // Zeros: the round trip alone, for a thousandth of the bytes.
    for (int i = 0; i < 3; ++i)
        controller.acknowledged(1, chunk, chunk / 1000, 1 * ms);
    QCOMPARE(controller.choose(), 0);
}

void TestLevelController::goesOnWhenATrialIsNeverHeardOf()
{
    LevelController controller;
    controller.setWorkers(1);
    int fromLostChunks = 0;
    QVector<int> rungs;
    for (int i = 0; i < 60; ++i) {
        const int rung = controller.choose();
        rungs.append(rung);
        if (rung == 2 && fromLostChunks < 1) {
            ++fromLostChunks; // its file changed before it was sent
            continue;
        }
        controller.compressed(rung, chunk, static_cast<int>(chunk * layers.share[rung]),
                              layers.cost[rung] * ms);
        controller.acknowledged(rung, chunk, static_cast<int>(chunk * layers.share[rung]),
                                lineTime({60}, layers.share[rung], rung));
    }
    QVERIFY2(countOf(rungs.mid(30), 2) > 20, qPrintable(listed(rungs)));
}

ZY_TEST(TestLevelController)
#include "tst_levelcontroller.moc"
