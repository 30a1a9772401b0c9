// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One printer as the panel sees it: connection, transfer, print and status, without any widget.

#ifndef PANEL_PRINTERSESSION_H
#define PANEL_PRINTERSESSION_H

#include "notice.h"
#include "printerstatus.h"
#include "words.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <memory>

class QJsonObject;
class ZySslEchoClient;

namespace zypanel
{

/**
 * Keeps a ZySslEchoClient and adds what the client leaves to its application: noticing that a
 * connection never came about or has died, ending the transfer then, and offering to resume it.
 *
 * A client serves one connection only and is replaced for the next. So no flag of an ended transfer
 * can outlive it, and a client that has become unable to send (transError(-2)) is gone as well.
 *
 * The client's send loop runs nested inside the event loop, and so do all slots here while a file
 * is being sent. Nothing in this program may therefore open a nested loop of its own (no exec() of
 * a dialog): the transfer would stand still until it returned.
 */
class PrinterSession : public QObject
{
    Q_OBJECT

public:
    enum class Link { Closed, Connecting, Open };
    Q_ENUM(Link)

    enum class Transfer {
        Idle,
        Offered, ///< START_FILE is sent, no answer yet
        Sending,
        Cancelling,
        Interrupted, ///< can be resumed
    };
    Q_ENUM(Transfer)

    /// All in ms.
    struct Timeouts {
        int connecting = 10000;
        int transferStall = 30000; ///< without an acknowledgement
        int cancelling = 5000;
        int answering = 5000; ///< to a status request, before the printer is called silent
        int polling = 1000; ///< between status requests
        int offeringAgain = 1000; ///< between attempts to resume
    };

    struct Job {
        QString path;
        QString name; ///< on the printer
        qint64 received = 0;
        qint64 total = 0;
    };

    explicit PrinterSession(QObject *parent = nullptr);
    ~PrinterSession() override;

    void setTimeouts(const Timeouts &timeouts);

    Link link() const { return m_link; }
    Transfer transfer() const { return m_transfer; }
    bool isTransferring() const;
    const Job &job() const { return m_job; }
    const PrinterStatus &status() const { return m_status; }
    QUrl url() const { return m_url; }

    void connectTo(const QUrl &url, const QString &token);
    /// For the commands to come; the connection stays.
    void setToken(const QString &token) { m_token = token; }
    /// An unfinished transfer can be resumed afterwards.
    void disconnectFromPrinter();

    /// Sends @p path under the name @p name; false, with a notice, for a file that cannot be sent.
    bool send(const QString &path, const QString &name);
    /// Ends the transfer; the printer deletes what it has received.
    void cancelTransfer();
    /// Goes on with an interrupted transfer, on a new connection if need be.
    void resumeTransfer();
    /// Forgets an interrupted transfer; the printer keeps what it has.
    void forgetTransfer();

    void startPrint(const QString &name);
    void pausePrint();
    void stopPrint();
    /// @p parameters should hold all six: the printer reads a missing one as empty.
    void setParameters(const Parameters &parameters);

Q_SIGNALS:
    void linkChanged(zypanel::PrinterSession::Link link);
    void transferChanged(zypanel::PrinterSession::Transfer transfer);
    void transferProgress(qint64 received, qint64 total);
    /// The printer holds the whole file.
    void fileStored(const QString &name);
    void statusChanged(const zypanel::PrinterStatus &status);
    /// Whether the printer took new parameters is known; these are its values now.
    void parametersSettled(const zypanel::Parameters &current);
    void noticed(const zypanel::Notice &notice);

private:
    // Connection.
    void watchConnecting();
    void onConnected();
    void onDisconnected();
    void setLink(Link link);
    void failConnecting(LinkFault fault);
    void dropLink(const Notice &notice);
    void endClient();
    QString printerName() const;

    // Transfer.
    void offerFile();
    void onProgress(qint64 total, qint64 received);
    void onFinished(int checkState);
    void onTransferError(int code);
    void onFileRefused(const QJsonObject &message);
    void onCancelled();
    void onStalled();
    void onCancelUnconfirmed();
    void setTransfer(Transfer transfer);

    // Print and status.
    void poll();
    void onStatusReply(const QJsonObject &reply);
    void onReply(const QJsonObject &message);
    void reportState(const PrinterStatus &before);
    void compareParameters();
    void setStatus(const PrinterStatus &status);

    Timeouts m_timeouts;
    std::unique_ptr<ZySslEchoClient> m_client;
    QUrl m_url;
    QString m_token;
    Link m_link = Link::Closed;
    QTimer m_connectWatch;
    QElapsedTimer m_connectingSince;

    Transfer m_transfer = Transfer::Idle;
    Job m_job;
    bool m_isResuming = false; ///< the offer under way goes on with an interrupted transfer
    bool m_resumeOnceConnected = false;
    int m_offersLeft = 0; ///< further attempts to resume
    QTimer m_offerTimer;
    QTimer m_stallTimer;
    QTimer m_cancelTimer;

    PrinterStatus m_status;
    QTimer m_pollTimer;
    QElapsedTimer m_askedSince;
    bool m_isStatusAwaited = false;
    bool m_isSilent = false;
    Parameters m_wantedParameters; ///< to be compared with the next status
    bool m_areParametersAnswered = false;
};

} // namespace zypanel

#endif // PANEL_PRINTERSESSION_H
