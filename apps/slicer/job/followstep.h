// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the printer's status, once or until the print has ended.

#ifndef FOLLOWSTEP_H
#define FOLLOWSTEP_H

#include "step.h"

#include <QTimer>

namespace zyslicer
{

class FollowStep : public Step
{
    Q_OBJECT

public:
    enum class Mode {
        Once,
        UntilIdle, ///< until the print under way, if there is one, has ended
        UntilDone, ///< a print was just started: until it has ended
    };

    FollowStep(JobContext &context, Mode mode);

    void start() override;
    void interrupt() override;

private:
    void onEnded(const zysession::Exchange::Result &result);
    void judge(const zysession::PrinterStatus &status);
    bool isEarly(const zysession::PrinterStatus &status);
    void onReady(const zysession::PrinterStatus &status);
    void endPrint(const zysession::PrinterStatus &status, const QString &what);
    void retry(const QString &reason, bool isSilent = false);
    bool wasRunning() const { return m_lastJob.hasJob(); }

    Mode m_mode;
    zysession::Exchange m_exchange;
    QTimer m_pause;
    zysession::PrinterStatus m_lastJob; ///< Unknown until a print is seen
    bool m_wasLost = false; ///< the connection, at any time
    bool m_isRetrying = false; ///< after the pause
    int m_earlyAnswers = 0;
    int m_failures = 0; ///< in a row
};

} // namespace zyslicer

#endif // FOLLOWSTEP_H
