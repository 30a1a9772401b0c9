// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The example programs, as a newcomer runs them.

#include "modelfiles.h"
#include "testprogram.h"
#include "waiting.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace zytest;

class TestExamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sendAFile_data();
    void sendAFile();
    void refuseAFileThatCannotBeSent_data();
    void refuseAFileThatCannotBeSent();
    void endWhenNobodyAnswers_data();
    void endWhenNobodyAnswers();

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};

namespace
{

QString example(const QString &name)
{
    return QStringLiteral(EXAMPLES "/") + name;
}

void addSlicers()
{
    QTest::addColumn<QString>("slicer");
    QTest::newRow("robust") << QStringLiteral("robust-slicer");
    QTest::newRow("minimal") << QStringLiteral("minimal-slicer");
}

/// The exit code; -1 when it does not end.
int run(const QString &slicer, const QString &url, const QString &file)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(example(slicer), {url, file});
    return process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit
        ? process.exitCode()
        : -1;
}

} // namespace

void TestExamples::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
}

void TestExamples::sendAFile_data()
{
    addSlicers();
}

void TestExamples::sendAFile()
{
    QFETCH(QString, slicer);
    QVERIFY(QDir(m_directory->path()).mkdir(QStringLiteral("received")));
    QProcess host;
    host.setWorkingDirectory(m_directory->path());
    host.start(example(QStringLiteral("minimal-host")), {QStringLiteral("received")});
    QByteArray output;
    QVERIFY(waitUntil([&] {
        output += host.readAllStandardOutput();
        return output.contains('\n');
    }));
    const QString url = QString::fromUtf8(output).section(QLatin1Char(' '), 2).trimmed();

    const QByteArray contents = compressibleBytes(2 * chunkBytes + 5);
    const QString file = writeFile(m_directory->filePath(QStringLiteral("part.zydlp")), contents);
    QCOMPARE(run(slicer, url, file), 0);
    QVERIFY(readFile(m_directory->filePath(QStringLiteral("received/part.zydlp"))) == contents);
    host.kill();
    QVERIFY(host.waitForFinished(patience));
}

void TestExamples::refuseAFileThatCannotBeSent_data()
{
    addSlicers();
}

void TestExamples::refuseAFileThatCannotBeSent()
{
    QFETCH(QString, slicer);
    const QString nobody = QStringLiteral("ws://127.0.0.1:1");
    const QString empty = writeFile(m_directory->filePath(QStringLiteral("empty")), {});
    QCOMPARE(run(slicer, nobody, empty), 1);
    QCOMPARE(run(slicer, nobody, m_directory->filePath(QStringLiteral("missing"))), 1);
}

void TestExamples::endWhenNobodyAnswers_data()
{
    addSlicers();
}

void TestExamples::endWhenNobodyAnswers()
{
    QFETCH(QString, slicer);
    const QString file = writeFile(m_directory->filePath(QStringLiteral("part")), "abc");
    QCOMPARE(run(slicer, QStringLiteral("ws://127.0.0.1:1"), file), 1);
}

ZY_TEST(TestExamples)
#include "tst_examples.moc"
