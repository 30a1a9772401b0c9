// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends one file; and what can be wrong with files before any printer is asked.

#ifndef SENDSTEP_H
#define SENDSTEP_H

#include "step.h"

#include <QElapsedTimer>
#include <QTimer>

#include <zyfilesender.h>

namespace zyslicer
{

/// Empty unless the files cannot be sent at all: two of them have one name, so the second would
/// replace the first, or each of them has a fault. One that has a fault does not stop the others.
Outcomes checkModelFiles(const QVector<ModelFile> &files);

class SendStep : public Step
{
    Q_OBJECT

public:
    SendStep(JobContext &context, const ModelFile &file);

    void start() override;
    /// Cancels the transfer; leaves it to be resumed where the user wants that, or where a cancel
    /// would delete the complete file.
    void interrupt() override;

private:
    void onOffered();
    void onProgress(qint64 received);
    void watchSilence();
    void onRetrying(ZySendResult::Interruption reason, int attempt, int pause);
    void onFinished(const ZySendResult &result);
    void endNotSent(const ZySendResult &result);
    void reportStored(const ZySendResult &result);
    void report(Event::Kind kind, qint64 received = 0);

    QString reasonText(ZySendResult::Interruption reason) const;
    QString cancelText(const ZySendResult &result) const;
    void endWith(ExitCode code, const QString &what, const QString &advice);

    ModelFile m_file;
    ZyFileSender m_sender;
    qint64 m_size;
    int m_attempts = 1;
    bool m_isOffered = false; ///< in this attempt
    bool m_isRefused = false;
    bool m_isKept = false; ///< left by the user, with bytes still to come
    qint64 m_received = 0;
    QTimer m_silenceWatch; ///< runs while the printer is to acknowledge something
    QElapsedTimer m_sinceAnswer;
    qint64 m_longestGap = 0; ///< ms, between two acknowledgements
};

} // namespace zyslicer

#endif // SENDSTEP_H
