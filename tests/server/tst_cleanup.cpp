// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Earlier model files go when a transfer is accepted.

#include "logcapture.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace zytest;

namespace
{

const QString temporaryName = QStringLiteral("wifi_tranfer.tmp");

void fill(const TestPrinter &printer, const QStringList &names)
{
    for (const QString &name : names)
        writeFile(printer.path(name), "x");
}

/// Makes a directory read-only while it lives, for the superuser as well.
class WithoutTheRightToDelete
{
public:
    explicit WithoutTheRightToDelete(const QString &dir) : m_dir(dir.toLocal8Bit())
    {
        ::chmod(m_dir.constData(), 0555);
        if (m_user == 0 && ::seteuid(65534) != 0)
            qWarning("Cannot become an ordinary user");
    }
    ~WithoutTheRightToDelete()
    {
        if (::seteuid(m_user) != 0)
            qFatal("Cannot become the former user");
        ::chmod(m_dir.constData(), 0755);
    }

private:
    Q_DISABLE_COPY(WithoutTheRightToDelete)

    QByteArray m_dir;
    uid_t m_user = ::geteuid();
};

} // namespace

class TestCleanUp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deletesModelsAndBackupsOnly();
    void logsTwoLinesPerFileInListingOrder();
    void deletesThePreviousTransfersFile();
    void deletesBeforeTheReplyOfANewTransfer();
    void cleansTheNamedDirectory();

    void sparesADirectoryNamedLikeABackup();
    void spares_data();
    void spares();
    void sparesWhenATransferIsRefused();
    void sparesEverythingWithARelativeDirectory();
    void staysSilentAboutADirectoryThatIsNotThere();
    void logsAFileThatStaysLikeADeletedOne();
};

void TestCleanUp::deletesModelsAndBackupsOnly()
{
    TestPrinter printer;
    fill(printer,
         {QStringLiteral("a.zydlp"), QStringLiteral("b.zyline"), QStringLiteral("c.bak"),
          QStringLiteral("d.txt")});
    QVERIFY(QDir(printer.dir()).mkdir(QStringLiteral("old")));
    writeFile(printer.path(QStringLiteral("old/e.zydlp")), "x");
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("new.zydlp"), 5));
    QVERIFY(peer.waitForReplies(1));
    QCOMPARE(entriesOf(printer.dir()),
             QStringList({QStringLiteral("d.txt"), QStringLiteral("old"), temporaryName}));
    QVERIFY(QFile::exists(printer.path(QStringLiteral("old/e.zydlp"))));
}

void TestCleanUp::logsTwoLinesPerFileInListingOrder()
{
    TestPrinter printer;
    fill(printer,
         {QStringLiteral("B.zyline"), QStringLiteral("a.zydlp"), QStringLiteral("c.bak"),
          QStringLiteral("d.txt"), temporaryName});
    ZyFileTransHandle handle(nullptr, nullptr);
    LogCapture log;
    handle.removePcModelFile(printer.dir());
    // By name, whatever the letter case.
    QStringList expected;
    for (const char *name : {"a.zydlp", "B.zyline", "c.bak"}) {
        const QString path = printer.dir() + QLatin1Char('/') + QLatin1String(name);
        expected += {path, QStringLiteral("wifi remove file:  \"%1\"").arg(path)};
    }
    QCOMPARE(log.texts(), expected);
}

void TestCleanUp::deletesThePreviousTransfersFile()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("first.zydlp"), 2));
    peer.sendChunk("ab");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(entriesOf(printer.dir()), QStringList{QStringLiteral("first.zydlp")});
    peer.send(startFile(QStringLiteral("second.zydlp"), 2));
    QVERIFY(peer.waitForReplies(4));
    QCOMPARE(entriesOf(printer.dir()), QStringList{temporaryName});
}

void TestCleanUp::deletesBeforeTheReplyOfANewTransfer()
{
    TestPrinter printer;
    fill(printer, {QStringLiteral("a.zydlp")});
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    LogCapture log;
    peer.send(startFile(QStringLiteral("new.zydlp"), 5));
    QVERIFY(peer.waitForReplies(1));
    QCOMPARE(log.texts().size(), 3);
    QCOMPARE(log.texts().first(), QStringLiteral(R"(strCmd: "START_FILE")"));
    QVERIFY(!QFile::exists(printer.path(QStringLiteral("a.zydlp"))));
}

void TestCleanUp::cleansTheNamedDirectory()
{
    const QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("a.zydlp")), "x");
    writeFile(dir.filePath(QStringLiteral("model with spaces \u00e4.bak")), "x");
    ZyFileTransHandle handle(nullptr, nullptr);
    handle.removePcModelFile(dir.path());
    QCOMPARE(entriesOf(dir.path()), QStringList());
}

void TestCleanUp::sparesADirectoryNamedLikeABackup()
{
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("old.bak")));
    ZyFileTransHandle handle(nullptr, nullptr);
    LogCapture log;
    handle.removePcModelFile(dir.path());
    QCOMPARE(log.texts(), QStringList());
    QCOMPARE(entriesOf(dir.path()), QStringList{QStringLiteral("old.bak")});
}

void TestCleanUp::spares_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"A.ZYDLP", "x.Bak", "x.ZyLine", ".zydlp", ".hidden.bak", "zydlp",
                             "x.zydlp.txt", "x.zydl", "x.back", "bak", "wifi_tranfer.tmp.old"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestCleanUp::spares()
{
    QFETCH(QString, name);
    TestPrinter printer;
    fill(printer, {name, QStringLiteral("gone.zydlp")});
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("new.zydlp"), 5));
    QVERIFY(peer.waitForReplies(1));
    QVERIFY(QFile::exists(printer.path(name)));
    QVERIFY(!QFile::exists(printer.path(QStringLiteral("gone.zydlp"))));
}

void TestCleanUp::sparesWhenATransferIsRefused()
{
    TestPrinter printer;
    fill(printer, {QStringLiteral("a.zydlp")});
    printer.host().answers.getPrintState = 0;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("new.zydlp"), 5));
    QCOMPARE(peer.take(), refusal(1, 5));
    printer.host().answers.getPrintState = 1;
    // Accepted by the host, but the file cannot be sized.
    peer.send(startFile(QStringLiteral("new.zydlp"), -1));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","errorcode":2,"compress":true})"));
    QVERIFY(QFile::exists(printer.path(QStringLiteral("a.zydlp"))));
}

void TestCleanUp::sparesEverythingWithARelativeDirectory()
{
    const QTemporaryDir root;
    QVERIFY(QDir(root.path()).mkdir(QStringLiteral("receive")));
    writeFile(root.filePath(QStringLiteral("receive/a.zydlp")), "x");
    QDir::setCurrent(root.path());
    ZySslEchoServer server(0, {}, {}, QStringLiteral("receive"), nullptr);
    RecordingHost host(&server);
    RawPeer peer(server.serverPort());
    peer.send(startFile(QStringLiteral("new.zydlp"), 5));
    QVERIFY(peer.waitForReplies(1));
    QDir::setCurrent(QDir::tempPath());
    QCOMPARE(entriesOf(root.filePath(QStringLiteral("receive"))),
             QStringList({QStringLiteral("a.zydlp"), temporaryName}));
}

void TestCleanUp::staysSilentAboutADirectoryThatIsNotThere()
{
    ZyFileTransHandle handle(nullptr, nullptr);
    const QTemporaryDir dir;
    LogCapture log;
    handle.removePcModelFile(dir.filePath(QStringLiteral("nowhere")));
    handle.removePcModelFile(writeFile(dir.filePath(QStringLiteral("file.bak")), "x"));
    QCOMPARE(log.texts(), QStringList());
    QVERIFY(QFile::exists(dir.filePath(QStringLiteral("file.bak"))));
}

void TestCleanUp::logsAFileThatStaysLikeADeletedOne()
{
    const QTemporaryDir dir;
    const QString path = writeFile(dir.filePath(QStringLiteral("stays.bak")), "x");
    const WithoutTheRightToDelete withoutTheRight(dir.path());
    ZyFileTransHandle handle(nullptr, nullptr);
    LogCapture log;
    handle.removePcModelFile(dir.path());
    QVERIFY(QFile::exists(path));
    QCOMPARE(log.texts(),
             QStringList({path, QStringLiteral("wifi remove file:  \"%1\"").arg(path)}));
}

ZY_TEST(TestCleanUp)
#include "tst_cleanup.moc"
