// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A host application that gives prepared answers and records every question.

#ifndef RECORDINGHOST_H
#define RECORDINGHOST_H

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

#include <printstatuspara.h>

class ZySslEchoServer;

namespace zytest
{

/// Connected directly to all twelve signals of a server.
class RecordingHost : public QObject
{
public:
    /// The answers; an unset one leaves the server's initial value standing.
    struct Answers {
        std::optional<int> getPrintState = 1;
        std::optional<int> getFilePrintState = 1;
        std::optional<int> checkFile = 1;
        std::optional<int> finish = 1;
        std::optional<int> sigDoPrintPause = 1;
        std::optional<int> sigDoPrintStop = 1;
        std::optional<QString> version = QStringLiteral("1");
        std::optional<PrintStatusPara> status;
        std::optional<PrintStatusPara> parameters; ///< written over what sigSetPrintPara brings
    };

    explicit RecordingHost(ZySslEchoServer *server);

    Answers answers;

    /// Runs @p hook inside every slot for the signal @p name, after the call is recorded and before
    /// it is answered. An empty hook takes it away.
    void during(const QString &name, std::function<void()> hook);

    /// Every emission so far, in order, as "name(argument, …)" with the arguments as they came in.
    const QStringList &calls() const { return m_calls; }
    /// The calls since the last takeCalls().
    QStringList takeCalls();
    /// How often the signal @p name has been emitted so far.
    int count(const QString &name) const;

    /// The record that the last sigGetPrinterStatus or sigSetPrintPara brought.
    const PrintStatusPara &lastRecord() const { return m_lastRecord; }

private:
    void connectTransfers(ZySslEchoServer *server);
    void connectPrints(ZySslEchoServer *server);
    void connectStatus(ZySslEchoServer *server);
    void received(const QString &name, const QStringList &arguments);

    QStringList m_calls;
    int m_taken = 0;
    QHash<QString, std::function<void()>> m_hooks;
    PrintStatusPara m_lastRecord;
};

/// The twelve texts of @p record in declaration order, then its `printStatus`, joined by "|".
QString recordText(const PrintStatusPara &record);

} // namespace zytest

#endif // RECORDINGHOST_H
