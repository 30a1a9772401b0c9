// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to a printer: at most one ZyFileSender, and what its user can do about it.

#ifndef PANEL_UPLOAD_H
#define PANEL_UPLOAD_H

#include "notice.h"

#include <savedprinters.h>

#include <zysendoptions.h>
#include <zysendresult.h>

#include <QObject>

#include <memory>

class ZyFileSender;

namespace zypanel
{

/**
 * Sends without retries: an interrupted file waits until its user resumes it, which starts a new
 * sender. It is bound to the printer that it was offered to.
 *
 * Not to be deleted in a slot connected to its signals.
 */
class Upload : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,
        Offered, ///< connecting, or no answer yet
        Sending,
        Checking, ///< the printer holds all bytes
        Cancelling,
        Interrupted, ///< can be resumed
        Sent,
        Cancelled,
        Failed,
    };
    Q_ENUM(State)

    struct Job {
        zysession::Printer printer;
        QString path;
        QString name; ///< on the printer
        qint64 received = 0;
        qint64 total = 0;
    };

    explicit Upload(QObject *parent = nullptr);
    /// The printer keeps its part of a file under way.
    ~Upload() override;

    /// For the files to come. The number of retries is not used.
    void setOptions(const ZySendOptions &options) { m_options = options; }

    State state() const { return m_state; }
    static bool isUnderWay(State state);
    bool isUnderWay() const { return isUnderWay(m_state); }
    const Job &job() const { return m_job; }

    /// Sends @p path under the name @p name; false, with a notice, for a file that cannot be sent.
    bool send(const zysession::Printer &printer, const QString &path, const QString &name);
    /// The printer deletes what it has received, unless it may have the whole file by now.
    void cancel();
    /// Ends the connection; what is under way can be resumed.
    void interrupt();
    /// Goes on with an interrupted file. It stays interrupted when @p token is the wrong one.
    void resume(const QString &token);
    /// Forgets what became of the last file; of an interrupted one the printer keeps what it has.
    void forget();

Q_SIGNALS:
    void stateChanged(zypanel::Upload::State state);
    /// The printer holds the first @p from bytes; only the rest is sent.
    void resumed(qint64 from);
    void progressed(qint64 received, qint64 total);
    /// The file is still being read, before it is offered.
    void reading(qint64 done, qint64 total);
    /// The printer holds the whole file under this name.
    void stored(const QString &name);
    void noticed(const zypanel::Notice &notice);

private:
    void start();
    void onProgress(qint64 received, qint64 total);
    void onFinished(const ZySendResult &result);
    void setState(State state);

    ZySendOptions m_options;
    Job m_job;
    State m_state = State::Idle;
    bool m_isResuming = false; ///< an interrupted file, which stays one when it is refused
    std::unique_ptr<ZyFileSender> m_sender; ///< while one is under way
};

} // namespace zypanel

#endif // PANEL_UPLOAD_H
