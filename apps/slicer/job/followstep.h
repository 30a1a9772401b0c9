// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the printer's status, once or until the print has ended.

#ifndef FOLLOWSTEP_H
#define FOLLOWSTEP_H

#include "exchange.h"
#include "step.h"

class FollowStep : public Step
{
    Q_OBJECT

public:
    enum class Mode {
        Once,
        UntilIdle, ///< until the print under way, if there is one, has ended
        UntilDone, ///< a print was just started: until it has ended
    };

    FollowStep(PrinterLink &link, Mode mode, const QString &token);

    void start() override;
    void interrupt() override;

private:
    void ask();
    void onAnswered(const QJsonObject &answer);
    void judge(const QJsonObject &answer);
    void onIdle(const QJsonObject &answer);
    void endPrint(const QJsonObject &answer, const QString &what);
    void retry(const QString &reason);

    Mode m_mode;
    QString m_token;
    Exchange m_exchange;
    QTimer m_pause;
    bool m_wasRunning = false;
    int m_idleAnswers = 0;
    int m_failures = 0; ///< in a row
};

#endif // FOLLOWSTEP_H
