// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Standard output that takes nothing, or that nobody reads any more.

#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

#include <csignal>

class TestOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsThatItCannotBeWritten_data();
    void tellsThatItCannotBeWritten();
    void keepsTheExitCodeOfAnotherFailure();
    void tellsThatItIsClosed();
    void endsQuietlyWithItsReader();

private:
    PrinterProcess m_printer{{"--speed"_s, "1"_s}};
};

void TestOutput::tellsThatItCannotBeWritten_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QStringList status{"status"_s, "--to"_s, m_printer.url().toString()};
    QTest::newRow("text") << status;
    QTest::newRow("JSON") << status + QStringList("--json"_s);
    QTest::newRow("help") << QStringList{"send"_s, "--help"_s};
    QTest::newRow("version") << QStringList("--version"_s);
}

void TestOutput::tellsThatItCannotBeWritten()
{
    QFETCH(QStringList, arguments);
    EXPECT_FAILURE(runInShell("exec \"$0\" \"$@\" >/dev/full"_s, arguments), 7,
                   "standard output not writable: ");
}

void TestOutput::keepsTheExitCodeOfAnotherFailure()
{
    const SlicerResult result = runInShell("exec \"$0\" \"$@\" >/dev/full"_s,
                                           {"status"_s, "--json"_s, "--to"_s, deadUrl()});
    QCOMPARE(result.exitCode, 3);
    VERIFY_TEXT(result.errors.contains("standard output not writable: "), result.errors);
}

void TestOutput::tellsThatItIsClosed()
{
    EXPECT_FAILURE(
        runInShell("exec \"$0\" \"$@\" >&-"_s, {"status"_s, "--to"_s, m_printer.url().toString()}),
        7, "standard output not writable: Bad file descriptor");
}

void TestOutput::endsQuietlyWithItsReader()
{
    const QString url = m_printer.url().toString();
    const QTemporaryDir directory;
    const QString model = makeModel(directory.filePath("part.zydlp"_s));
    QCOMPARE(runSlicer({"send"_s, model, "--print"_s, "--to"_s, url}).exitCode, 0);
    // Follows the print for hours, unless it is ended.
    const SlicerResult result = runInShell(
        "\"$0\" \"$@\" | head -n 1; exit \"${PIPESTATUS[0]}\""_s,
        {"status"_s, "--watch"_s, "--json"_s, "--interval"_s, "0.05"_s, "--to"_s, url});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(eventsNamed("status"_s, result.output).size(), 1);
    QCOMPARE(result.exitCode, 128 + SIGPIPE);
}

ZY_TEST(TestOutput)

#include "tst_output.moc"
