// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command to a printer, and what came of it.

#ifndef EXCHANGE_H
#define EXCHANGE_H

#include "printerlink.h"
#include "printerstatus.h"

#include <QTimer>

#include <functional>

namespace zysession
{

/**
 * Asks on an open link, waits for the answer within the link's time limits, and judges it.
 *
 * One command at a time: a new one takes the place of one under way, which then has no end. Several
 * exchanges may share a link, since each looks only at the answers to its own kind of command. The
 * object may be deleted in its own slots.
 */
class Exchange : public QObject
{
    Q_OBJECT

public:
    enum class Ending {
        Done,
        Busy, ///< print: the printer prints, receives or checks
        CheckFailed, ///< print: the printer lacks the file, or finds it no valid model
        Refused, ///< pause, stop, set: not now
        NotTaken, ///< set: the printer keeps other values: Result::kept
        TokenRejected,
        NoAnswer, ///< within the time limit
        ConnectionLost, ///< or not open when the command was to be sent
    };

    struct Result {
        Ending ending = Ending::Done;
        QJsonObject answer; ///< the last one, as it came; empty without one
        QStringList kept; ///< keys of parameters
        int timeLimit = 0; ///< NoAnswer: the one that has passed, in ms
    };

    /// @p link must outlive the exchange.
    explicit Exchange(PrinterLink &link, QObject *parent = nullptr);

    /// For the commands to come; of these, version and cancel carry none.
    void setToken(const QString &token) { m_token = token; }
    bool isUnderWay() const { return m_judge != nullptr; }
    /// Forgets the command under way; the printer may still do it.
    void abandon();

    /// Prints a file that is on the printer. A paused print goes on.
    void print(const QString &fileName);
    void pause();
    void stop();
    /// The answer is one for PrinterStatus::fromReply().
    void askStatus();
    /// The answer's "version": see versionOf().
    void askVersion();
    /**
     * Sets some of the parameters. The printer's answer says nothing about the outcome, and one
     * left out reaches the printer as empty text. So the current values are read first, all six are
     * sent, and the status is read again: it is Result::answer, and what differs is Result::kept.
     *
     * One that takes the place of another set sets what either names, and its end is that of both.
     */
    void set(const Parameters &parameters);
    /// Sends a cancel. A printer cancels only what was sent on the same connection.
    void cancelFile();

    static QString versionOf(const QJsonObject &answer);

Q_SIGNALS:
    /// print: the printer checks the file first; the end comes within TimeLimits::check.
    void checking();
    /// Exactly once for each command that is not abandoned.
    void ended(const zysession::Exchange::Result &result);

private:
    using Question = std::function<void(ZySslEchoClient &)>;
    using Judge = void (Exchange::*)(const QJsonObject &);

    void ask(QLatin1String word, Judge judge, const Question &question);
    void askStatusFor(Judge judge);
    void onReceived(const QJsonObject &message);
    void onTimeLimit();
    void end(Ending ending, const QJsonObject &answer = {}, const QStringList &kept = {});

    void acknowledge(const QJsonObject &answer);
    void judgeCommand(const QJsonObject &answer);
    void judgePrint(const QJsonObject &answer);
    void judgeStatus(const QJsonObject &answer);
    void sendParameters(const QJsonObject &status);
    void readParametersBack(const QJsonObject &answer);
    void compareParameters(const QJsonObject &status);

    PrinterLink &m_link;
    QString m_token;
    QLatin1String m_word; ///< the answer's "cmd", or "version", which stands alone
    Judge m_judge = nullptr;
    QTimer m_timeLimit;
    bool m_isChecking = false;
    Parameters m_parameters; ///< set
};

} // namespace zysession

#endif // EXCHANGE_H
