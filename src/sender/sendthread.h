// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The thread of one file sender, which may outlive its sender but not the application.

#ifndef SENDTHREAD_H
#define SENDTHREAD_H

#include "sendworker.h"

#include <QThread>

namespace zyws
{

/**
 * Runs a worker, and is abandoned when its sender is deleted meanwhile: a chunk that is being
 * compressed would make the sender's thread wait. It then ends by itself and is deleted by the
 * event loop, or, at the latest, when the application object goes, which waits for it.
 */
class SendThread : public QThread
{
    Q_OBJECT

public:
    explicit SendThread(const SendJob &job);
    ~SendThread() override;

    SendWorker &worker() { return m_worker; }

    /// The worker ends without anybody waiting for it. Deletes this object, sooner or later.
    void abandon();

protected:
    void run() override;

private:
    SendWorker m_worker;
};

} // namespace zyws

#endif // SENDTHREAD_H
