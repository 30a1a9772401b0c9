// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A network that really goes away: two network namespaces, a slow cable between them, link down.
//
// The test starts itself again in a namespace of its own, and the printer in another one below it.
// Both vanish with their processes, so nothing is left to clean up.

#include "faultprocess.h"
#include "modelfiles.h"
#include "rounds.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

#include <unistd.h>

using namespace zytest;

namespace
{

constexpr char insideMark[] = "ZY_FAULTS_INSIDE_NAMESPACE";
constexpr char senderAddress[] = "192.0.2.1/30"; // an address for documentation: nobody's
constexpr char printerAddress[] = "192.0.2.2/30";
constexpr char printerHost[] = "192.0.2.2";
constexpr int fileSize = 8 * chunkBytes; // four seconds at the link's rate

/// Runs a shell command; true when it succeeds.
bool run(const QString &command)
{
    QProcess shell;
    shell.setProcessChannelMode(QProcess::ForwardedChannels);
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    return shell.waitForFinished(patience) && shell.exitCode() == 0;
}

} // namespace

class TestNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void arrivesThoughTheLinkWasDown_data();
    void arrivesThoughTheLinkWasDown();

private:
    bool layCable(qint64 printerPid);
};

void TestNetwork::initTestCase()
{
    if (!qEnvironmentVariableIsSet(insideMark))
        QSKIP("This system does not let us make network namespaces (unshare --net)");
    if (!run(QStringLiteral("ip link set lo up && ip link add zyprobe0 type veth peer name zyprobe1"
                            " && tc qdisc add dev zyprobe0 root tbf rate 16mbit burst 32k latency"
                            " 200ms && ip link del zyprobe0")))
        QSKIP("This system does not let us make a slow link (ip, tc, veth, tbf)");
}

/// Between our namespace and the one of @p printerPid.
bool TestNetwork::layCable(qint64 printerPid)
{
    return run(QStringLiteral("ip link add zysender type veth peer name zyprinter netns %1"
                              " && ip addr add %2 dev zysender && ip link set zysender up"
                              " && tc qdisc add dev zysender root tbf rate 16mbit burst 32k latency"
                              " 200ms"
                              " && nsenter --target %1 --net ip addr add %3 dev zyprinter"
                              " && nsenter --target %1 --net ip link set zyprinter up")
                   .arg(printerPid)
                   .arg(QLatin1String(senderAddress), QLatin1String(printerAddress)));
}

void TestNetwork::arrivesThoughTheLinkWasDown_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("limit");
    QTest::newRow("the connection survives") << 2 << 20000;
    QTest::newRow("the sender connects again") << 2 << 1000;
    if (isSoak())
        QTest::newRow("for long") << 30 << 10000;
}

void TestNetwork::arrivesThoughTheLinkWasDown()
{
    QFETCH(int, seconds);
    QFETCH(int, limit);
    const QByteArray contents = randomBytes(fileSize);
    const QTemporaryDir local;
    const QString file = writeFile(local.filePath(QStringLiteral("local.bin")), contents);
    const QTemporaryDir directory;
    HostProcess host(directory.path(), {}, {QStringLiteral("unshare"), QStringLiteral("--net")});
    QVERIFY(host.port() != 0);
    QVERIFY(layCable(host.processId()));

    // Connecting fails at once while the link is down, and the printer takes long to notice.
    SenderProcess sender(
        QStringLiteral("ws://%1:%2").arg(QLatin1String(printerHost)).arg(host.port()), file,
        {QStringLiteral("--limit"), QString::number(limit), QStringLiteral("--retries"),
         QStringLiteral("100000")});
    QVERIFY(sender.waitForEvents("progress", 2));
    QVERIFY(run(QStringLiteral("ip link set zysender down")));
    QTest::qWait(seconds * 1000);
    QVERIFY(sender.isRunning());
    const bool isAgain = limit < seconds * 1000;
    QVERIFY(!isAgain || sender.waitForEvents("retrying"));
    QVERIFY(run(QStringLiteral("ip link set zysender up")));

    QCOMPARE(sender.waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(!sender.events("retrying").isEmpty(), isAgain);
    QCOMPARE(sender.resumedFrom() >= 2 * chunkBytes, isAgain);
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == contents);
    QCOMPARE(host.events("finish").size(), 1);
    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet(insideMark)
        && run(QStringLiteral("unshare --map-root-user --net true 2>/dev/null"))) {
        qputenv(insideMark, "1");
        std::vector<char *> command;
        for (const char *word : {"unshare", "--map-root-user", "--net"})
            command.push_back(const_cast<char *>(word));
        command.insert(command.end(), argv, argv + argc);
        command.push_back(nullptr);
        ::execvp(command.front(), command.data());
    }
    QCoreApplication application(argc, argv);
    TestNetwork test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_network.moc"
