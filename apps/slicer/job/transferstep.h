// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends one file: watches for stalls, reconnects, and has the printer resume what it holds.

#ifndef TRANSFERSTEP_H
#define TRANSFERSTEP_H

#include "modelfile.h"
#include "step.h"

#include <QElapsedTimer>
#include <QTimer>

namespace zyslicer
{

class TransferStep : public Step
{
    Q_OBJECT

public:
    TransferStep(JobContext &context, const ModelFile &file);

    void start() override;
    void interrupt() override;

private:
    zysession::PrinterLink &link() const { return context().link; }

    enum class Stage {
        Opening,
        Offering, ///< START_FILE is sent
        Sending, ///< the printer has acknowledged a chunk
        AwaitingVerdict, ///< the printer holds all bytes and checks them
        Pausing, ///< before the next attempt
        Cancelling,
    };

    void attempt();
    void onOpened();
    void onProgress(const QString &path, qint64 total, qint64 received);
    void onMessage(const QJsonObject &message);
    void onStartFileReply(const QJsonObject &reply);
    void onFinish(const QString &path, int checkState);
    void onTransferError(int code);
    void onTimeLimit();

    void reportProgress(Event::Kind kind, qint64 received, qint64 total);
    void refused(const QJsonObject &reply);
    void retry(const QString &reason);
    void completeWhenSettled();
    void endCheckFailed();
    void endWith(ExitCode code, const QString &what, const QString &advice);

    ModelFile m_file;
    Stage m_stage = Stage::Opening;
    QTimer m_timeLimit; ///< for the stage
    int m_failures = 0; ///< in a row, without a byte gained
    int m_attempts = 0;
    qint64 m_mostReceived = 0; ///< over all attempts
    QString m_storedName; ///< from the START_FILE reply, which is told after the transfer
    bool m_hasVerdict = false;
    int m_checkState = 0;
};

} // namespace zyslicer

#endif // TRANSFERSTEP_H
