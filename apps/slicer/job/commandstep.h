// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command with one answer: pause, stop, version, cancel.

#ifndef COMMANDSTEP_H
#define COMMANDSTEP_H

#include "exchange.h"
#include "step.h"

/// A command of one question and one answer.
struct Command {
    QString title; ///< for people, in messages
    QString answerWord;
    Exchange::Question question;
    std::function<Event(const QJsonObject &answer)> report; ///< what the answer tells
    bool isJudged = false; ///< the answer's "status" says whether it was done
};

Command pauseCommand(const QString &token);
Command stopCommand(const QString &token);
Command versionCommand();
Command cancelCommand();

class CommandStep : public Step
{
    Q_OBJECT

public:
    CommandStep(PrinterLink &link, const Command &command);

    void start() override;

private:
    void onAnswered(const QJsonObject &answer);

    Command m_command;
    Exchange m_exchange;
};

#endif // COMMANDSTEP_H
