// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyslicer with settings of its own.

#ifndef SLICERPROCESS_H
#define SLICERPROCESS_H

#include "programs.h"
#include "scriptedprinter.h"

#include <QJsonObject>
#include <QVector>

using zytest::deadUrl;

/// QVERIFY with the bytes that were looked at.
#define VERIFY_TEXT(condition, text) QVERIFY2(condition, QByteArray(text).constData())

/// So long apart, two signals are two interruptions; in ms.
constexpr int notOneInterruption = 100;

class SlicerProcess : public zytest::ChildProcess
{
public:
    explicit SlicerProcess(const QStringList &arguments, const QString &settings = {});
    ~SlicerProcess() override;

    /// False when it still runs after a long time, or crashed.
    bool waitForExit();
    /// Waits for a line of --json whose "event" is @p event; empty when none comes.
    QJsonObject waitForEvent(const QString &event);

    /// SIGINT, as Ctrl-C gives it.
    void interrupt();
    void terminate(); ///< SIGTERM

private:
    QTemporaryDir m_directory;
};

using SlicerResult = zytest::RunResult;

SlicerResult runSlicer(const QStringList &arguments, const QString &settings = {});

/// Runs a bash @p script in which "$0" is the program and "$@" are its arguments. The test's event
/// loop stands still meanwhile.
SlicerResult runInShell(const QString &script, const QStringList &arguments);

/// The objects of --json; ends the test program on a line that is not one object.
QVector<QJsonObject> jsonLines(const QByteArray &output);
/// Those with this "event".
QVector<QJsonObject> eventsNamed(const QString &event, const QByteArray &output);

/// Whether @p errors is one line of the form "zyslicer: what: value; advice" with @p part in it.
bool isOneErrorLine(const QByteArray &errors, const QByteArray &part);

/// The exit code, and the one line on standard error with its part in it.
#define EXPECT_FAILURE(result, code, part)                                                         \
    do {                                                                                           \
        const SlicerResult failed = (result);                                                      \
        VERIFY_TEXT(isOneErrorLine(failed.errors, part), failed.errors);                           \
        QCOMPARE(failed.exitCode, code);                                                           \
    } while (false)

#endif // SLICERPROCESS_H
