// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A file sender's half in its own thread: the client, the clock, and what the machine decides.

#ifndef SENDWORKER_H
#define SENDWORKER_H

#include "filedigest.h"
#include "sendmachine.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <atomic>
#include <memory>
#include <optional>

class QJsonObject;
class ZySslEchoClient;

namespace zyws
{

/// What is to be sent where.
struct SendJob {
    QUrl printer;
    QString path;
    QString name;
    ZySendOptions options;
};

/**
 * Feeds the machine with what its client and its clock say, and does what it answers.
 *
 * All slots run in the worker's thread, many of them inside the client's send loop, which ends as
 * soon as the client is deleted. Nothing is emitted after finished().
 */
class SendWorker : public QObject
{
    Q_OBJECT

public:
    explicit SendWorker(const SendJob &job);
    ~SendWorker() override;

    void start();
    void cancel();
    void leave();
    /// From any thread.
    bool canCancel() const { return m_canCancel; }

Q_SIGNALS:
    void offered();
    void resumed(qint64 from);
    void restarted();
    void progress(qint64 received, qint64 total);
    void retrying(ZySendResult::Interruption reason, int attempt, int pause);
    void reading(qint64 done, qint64 total);
    void finished(const ZySendResult &result);

private:
    void connectToPrinter();
    void dropConnection();
    void watchConnecting();
    void onConnected();
    void onRead(qint64 done);
    void onTransferError(int code);
    void onReply(const QJsonObject &reply);
    void onStartFileReply(const QJsonObject &reply);
    void pace(qint64 acknowledged);
    void endRest();

    void feed(const SendEvent &event);
    void perform(const SendAction &action);
    bool feedFileFault();
    bool feedSizeChange();
    qint64 transferOffset() const;
    int transferWindow() const;

    const SendJob m_job;
    std::optional<SendMachine> m_machine; ///< once the file's size is known
    qint64 m_size = 0;
    std::unique_ptr<ZySslEchoClient> m_client;
    std::optional<FileDigest> m_digest; ///< where one is to be sent
    QTimer m_timeLimit;
    QTimer m_connectWatch;
    QElapsedTimer m_sincePaced; ///< since the first chunk of the attempt was acknowledged
    qint64 m_pacedFrom = 0; ///< bytes acknowledged at that time
    QTimer m_restEnd;
    QPointer<QEventLoop> m_rest; ///< null while the sender does not rest
    std::atomic_bool m_canCancel{false};
};

} // namespace zyws

#endif // SENDWORKER_H
