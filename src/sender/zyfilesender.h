// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Brings one file to one printer: reconnects, resumes, and ends with one result.

#ifndef ZYFILESENDER_H
#define ZYFILESENDER_H

#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

#include "zysendoptions.h"
#include "zysendresult.h"
#include "zywebsocket_export.h"

class ZySslEchoClient;

/**
 * Sends one file to one printer and does not give up silently.
 *
 * It notices what a ZySslEchoClient leaves to its application: a connection that never comes about,
 * stalls or drops, a printer that refuses or cannot store. It connects again, has the printer
 * resume what it holds, and reports exactly one finished().
 *
 * Unlike ZySslEchoClient it starts a thread, in which its client lives: the application's event
 * loop is neither nested nor blocked, and any number may send at once from one thread. The object
 * itself belongs to the thread that created it, which needs an event loop; all signals come there.
 * It may be deleted at any time, in its own slots as well. Deleting it does not wait for the
 * network; the printer then keeps its part, as after leave().
 */
class ZYWEBSOCKET_EXPORT ZyFileSender : public QObject
{
    Q_OBJECT

public:
    /// @p filePath is offered to @p printer ("ws://host:port") under @p name, or under its own file
    /// name where @p name is null. Nothing happens before start().
    ZyFileSender(const QUrl &printer, const QString &filePath, const QString &name = QString(),
                 QObject *parent = nullptr);
    ~ZyFileSender() override;

    /// Takes effect if called before start().
    void setOptions(const ZySendOptions &options);
    ZySendOptions options() const; ///< those that hold for the transfer

    /// Checks the file and begins. Every failure arrives as finished(), never before this returns.
    /// Only the first call has an effect.
    void start();
    /// Has the printer cancel the transfer and delete its part, then ends with Cancelled. Without a
    /// transfer under way it ends at once, and the printer keeps what it may hold. Where
    /// canCancel() is false it acts like leave().
    void cancel();
    /// Ends at once with LeftForLater. The printer keeps its part, and sending the same file again
    /// resumes it.
    void leave();
    /// False once the printer may hold all bytes: a cancel would delete the finished file. False
    /// before start() and after finished() as well.
    bool canCancel() const;

    /// What start() checks first, before any printer is asked: a result whose fileFault() is None
    /// for a file that can be sent, else a LocalFile result.
    static ZySendResult checkFile(const QString &filePath, const QString &name = QString());
    /// The rules that printers apply to a file name: None, or one of the faults Name…
    static ZySendResult::FileFault checkName(const QString &name);
    /// Why the first connection of @p client has failed; None while it is under way or open. A
    /// client emits nothing then, so its application asks from a timer.
    static ZySendResult::ConnectionFault connectionFault(const ZySslEchoClient &client);

Q_SIGNALS:
    /// START_FILE has been sent; again after each retry.
    void offered();
    /// The printer holds the first @p from bytes already and goes on there.
    void resumed(qint64 from);
    /// A retry begins at 0: the printer has lost its part.
    void restarted();
    /// The printer has acknowledged @p received of @p total bytes.
    void progress(qint64 received, qint64 total);
    /// After @p reason the sender pauses for @p pause ms before retry number @p attempt (1 is the
    /// first) of those allowed in a row.
    void retrying(ZySendResult::Interruption reason, int attempt, int pause);
    /// The printer waits for the offer, since the file is still being read for its digest: @p done
    /// of
    /// @p total bytes. Comes several times a second, and only where reading takes so long.
    void reading(qint64 done, qint64 total);
    /// The end, exactly once; nothing comes after it. The object may be deleted in a slot.
    void finished(const ZySendResult &result);

private:
    class Private;
    std::unique_ptr<Private> d;
};

#endif // ZYFILESENDER_H
