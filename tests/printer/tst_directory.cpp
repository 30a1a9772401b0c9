// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter's directories: one process at a time, and nothing is lost that is no file.

#include "models.h"
#include "printerprocess.h"
#include "programs.h"
#include "slicer.h"
#include "testprogram.h"

#include <QDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{

const QString model = QStringLiteral("part.zydlp");
const QString lockName = QStringLiteral(".zyprinter.lock");
const QVector<int> checkedAndStarted{2, 0};
const QVector<int> checkFailed{2, 3};

bool makeFifo(const QString &path)
{
    return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}

bool isFifo(const QString &path)
{
    struct stat status {
    };
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

class TestPrinterDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isFreeAgainWhenThePrinterEnds_data();
    void isFreeAgainWhenThePrinterEnds();
    void takesOverALockThatNobodyHolds();

    void rejectsItsDirectory_data();
    void rejectsItsDirectory();
    void refusesADirectoryInUse_data();
    void refusesADirectoryInUse();
    void keepsItsDirectoryForMonths();
    void keepsItsLockFileFromSlicers();
    void refusesALockFileThatIsNone();
    void refusesTransfersWhenItHasGone();
    void leavesWhatACrashLeftAndCannotBeTakenOver();
    void leavesAModelAloneThatIsNoFile();
    void leavesAPictureAloneThatIsNoFile();
    void leavesAPictureAloneThatIsNoFileAnyMore();

private:
    RunResult runInTheSame(const QString &directory);

    std::unique_ptr<PrinterProcess> m_printer;
    std::unique_ptr<QTemporaryDir> m_local;
    Slicer m_slicer;
};

void TestPrinterDirectory::init()
{
    m_printer = std::make_unique<PrinterProcess>(PrinterProcess::NotStarted);
    m_local = std::make_unique<QTemporaryDir>();
}

RunResult TestPrinterDirectory::runInTheSame(const QString &directory)
{
    return runPrinter({QStringLiteral("--dir"), directory});
}

void TestPrinterDirectory::isFreeAgainWhenThePrinterEnds_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::addColumn<bool>("leavesLock");
    QTest::newRow("stopped") << SIGTERM << false;
    QTest::newRow("killed") << SIGKILL << true;
}

void TestPrinterDirectory::isFreeAgainWhenThePrinterEnds()
{
    QFETCH(const int, signalNumber);
    QFETCH(const bool, leavesLock);
    QVERIFY(m_printer->start());
    QVERIFY(QFile::exists(m_printer->path(lockName)));
    m_printer->stop(signalNumber);
    QCOMPARE(QFile::exists(m_printer->path(lockName)), leavesLock);
    QVERIFY(m_printer->start());
    QVERIFY(m_printer->waitForOutput(": 0 there"));
    QVERIFY(readFile(m_printer->path(lockName))
                .startsWith(QByteArray::number(m_printer->processId()) + '\n'));
}

/// As after a power failure, with another process under the number that the lock file holds.
void TestPrinterDirectory::takesOverALockThatNobodyHolds()
{
    PrinterProcess elsewhere(PrinterProcess::NotStarted);
    QVERIFY(elsewhere.start());
    writeFile(m_printer->path(lockName), readFile(elsewhere.path(lockName)));
    QVERIFY(m_printer->start());
    QCOMPARE(m_printer->errors(), QByteArray());
    QCOMPARE(runInTheSame(m_printer->path({})).exitCode, 3);
}

void TestPrinterDirectory::rejectsItsDirectory_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArray>("fault");
    // Not even root may write into /proc.
    QTest::newRow("missing") << QStringLiteral("/nonexistent/models")
                             << QByteArray("does not exist");
    QTest::newRow("below a file") << QStringLiteral("/dev/null/models")
                                  << QByteArray("does not exist");
    QTest::newRow("a file") << QStringLiteral("/dev/null") << QByteArray("is no directory");
    QTest::newRow("not writable") << QStringLiteral("/proc") << QByteArray("is not writable");
}

void TestPrinterDirectory::rejectsItsDirectory()
{
    QFETCH(const QString, directory);
    QFETCH(const QByteArray, fault);
    const RunResult result = runInTheSame(directory);
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.errors,
             "zyprinter: receive directory " + fault + ": " + directory.toUtf8()
                 + "; give --dir a directory of its own that can be written\n");
    QCOMPARE(result.output, QByteArray());
}

void TestPrinterDirectory::refusesADirectoryInUse_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("under its name") << QStringLiteral("%1");
    QTest::newRow("with a tail") << QStringLiteral("%1/.incoming/..");
    QTest::newRow("by way of a link") << QStringLiteral("%2");
}

void TestPrinterDirectory::refusesADirectoryInUse()
{
    QFETCH(QString, directory);
    const QString link = m_local->filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(m_printer->path({}), link));
    directory.replace(QLatin1String("%1"), m_printer->path({}));
    directory.replace(QLatin1String("%2"), link);
    writeFile(m_local->filePath(model), smallModel(5));

    QVERIFY(m_printer->start());
    const RunResult second = runInTheSame(directory);
    QCOMPARE(second.exitCode, 3);
    QCOMPARE(second.errors,
             "zyprinter: receive directory is in use by another zyprinter, process "
                 + QByteArray::number(m_printer->processId()) + ": " + directory.toUtf8()
                 + "; give --dir a directory of its own that can be written\n");
    QCOMPARE(second.output, QByteArray());

    // The first notices nothing, and still has the directory.
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 1);
    QCOMPARE(runInTheSame(directory).exitCode, 3);
}

void TestPrinterDirectory::keepsItsDirectoryForMonths()
{
    QVERIFY(m_printer->start());
    const timespec longAgo[] = {{1000000000, 0}, {1000000000, 0}};
    const QByteArray path = QFile::encodeName(m_printer->path(lockName));
    QCOMPARE(utimensat(AT_FDCWD, path.constData(), longAgo, 0), 0);
    QCOMPARE(runInTheSame(m_printer->path({})).exitCode, 3);
}

void TestPrinterDirectory::keepsItsLockFileFromSlicers()
{
    writeFile(m_local->filePath(model), smallModel(5));
    QVERIFY(m_printer->start());
    QVERIFY(m_printer->waitForOutput(": 0 there"));
    const QByteArray lock = readFile(m_printer->path(lockName));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), lockName), 2);
    QVERIFY(m_printer->waitForOutput(
        "received \".zyprinter.lock\": not kept: a name that begins with a dot "
        "is not accepted"));
    QCOMPARE(m_slicer.print(lockName), checkFailed);
    m_slicer.client().cancel();
    QCOMPARE(m_slicer.printStatus(), QStringLiteral("PRINT_GENERAL"));
    QCOMPARE(readFile(m_printer->path(lockName)), lock);
    QCOMPARE(runInTheSame(m_printer->path({})).exitCode, 3);
}

void TestPrinterDirectory::refusesALockFileThatIsNone()
{
    const QString path = m_local->filePath(lockName);
    QVERIFY(makeFifo(path));
    const RunResult result = runInTheSame(m_local->path());
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.errors.contains("has a lock file (.zyprinter.lock) that cannot be used"),
             result.errors.constData());
    QVERIFY(isFifo(path));
}

void TestPrinterDirectory::refusesTransfersWhenItHasGone()
{
    writeFile(m_local->filePath(model), smallModel(5));
    QVERIFY(m_printer->start());
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QVERIFY(QDir(m_printer->path(QStringLiteral(".incoming"))).removeRecursively());
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 1);

    const QDir directory = QFileInfo(m_printer->path(lockName)).dir();
    QVERIFY(QDir(directory).removeRecursively());
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), -1001);
    QVERIFY(m_printer->waitForOutput("refused a transfer: " + directory.path().toUtf8()
                                     + " has gone\n"));
    QVERIFY(QDir().mkpath(directory.path()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 1);
    QVERIFY(QFile::exists(m_printer->path(model)));
}

void TestPrinterDirectory::leavesWhatACrashLeftAndCannotBeTakenOver()
{
    // Killed between the end of a transfer and its taking over; since then, its name was taken.
    const QString received = m_printer->path(QStringLiteral(".incoming/") + model);
    QVERIFY(QDir().mkdir(m_printer->path(QStringLiteral(".incoming"))));
    writeFile(received, smallModel(5));
    QVERIFY(QDir().mkdir(m_printer->path(model)));
    QVERIFY(m_printer->start());
    QVERIFY(m_printer->waitForOutput("left in .incoming: \"" + model.toUtf8()
                                     + "\": what has that name cannot be replaced"));
    QCOMPARE(readFile(received), smallModel(5));
}

void TestPrinterDirectory::leavesAModelAloneThatIsNoFile()
{
    writeFile(m_local->filePath(model), smallModel(5));
    QVERIFY(makeFifo(m_printer->path(model)));
    QVERIFY(m_printer->start());
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.print(model), checkFailed);
    QVERIFY(m_printer->waitForOutput("it is no regular file"));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 2);
    QVERIFY(m_printer->waitForOutput("not kept: what has that name cannot be replaced"));
    QVERIFY(isFifo(m_printer->path(model)));
    QVERIFY(!QFile::exists(m_printer->path(QStringLiteral(".incoming/") + model)));
}

void TestPrinterDirectory::leavesAPictureAloneThatIsNoFile()
{
    const QString picture = m_local->filePath(QStringLiteral("layer.png"));
    QVERIFY(makeFifo(picture));
    const RunResult result = runPrinter({QStringLiteral("--dir"), m_printer->path({}),
                                         QStringLiteral("--preview"), m_local->path()});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.errors,
             "zyprinter: preview directory has a layer.png that cannot be replaced (it is there "
             "and no regular file): "
                 + m_local->path().toUtf8() + "; give --preview a directory that can be written\n");
    QVERIFY(isFifo(picture));
}

void TestPrinterDirectory::leavesAPictureAloneThatIsNoFileAnyMore()
{
    writeFile(m_local->filePath(model), smallModel(50));
    // So slow that several pictures are due.
    QVERIFY(m_printer->start({QStringLiteral("--preview"), m_local->path(),
                              QStringLiteral("--speed"), QStringLiteral("200")}));
    const QString picture = m_local->filePath(QStringLiteral("layer.png"));
    QVERIFY(makeFifo(picture));
    QVERIFY(m_slicer.connectTo(m_printer->url()));
    QCOMPARE(m_slicer.send(m_local->filePath(model), model), 1);
    QCOMPARE(m_slicer.print(model), checkedAndStarted);
    QVERIFY(m_slicer.reaches(QStringLiteral("PRINT_COMPLETE")));
    // Said once, not for each picture.
    QVERIFY(m_printer->waitForOutput("complete: "));
    QCOMPARE(m_printer->output().count("no preview: it is there and no regular file"), 1);
    QVERIFY(isFifo(picture));
}

ZY_TEST(TestPrinterDirectory)
#include "tst_directory.moc"
