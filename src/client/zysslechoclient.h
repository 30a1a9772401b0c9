// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The slicer's end: sends commands and files to a printer and turns its replies into signals.

#ifndef ZYSSLECHOCLIENT_H
#define ZYSSLECHOCLIENT_H

#include <QAbstractSocket>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QMetaObject>
#include <QObject>
#include <QQueue>
#include <QSslError>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

#include "zywebsocket_export.h"

class QFile;
class QTimer;
class QWebSocket;
class ZyTlsTrust;

namespace zyws
{
class CertificateCheck;
class DeliveryQueue;
class HeldSocket;
} // namespace zyws

/**
 * One connection to a printer.
 *
 * Everything runs in the thread that created the client, on its event loop; only compression may be
 * moved to others, see setCompressionThreads(). No operation returns an error or throws: failures
 * arrive as signals, or show in socketConnectStatus(). Nothing re-opens a dropped connection by
 * itself.
 *
 * While a file is being sent, its send loop spins the event loop: every slot of the application may
 * run nested inside it. Two clients that send at the same time belong in two threads, since the
 * outer loop in one thread waits for the inner one to end.
 *
 * The client may be deleted at any time, inside a slot connected to its own signals as well; a
 * transfer under way ends at once.
 */
class ZYWEBSOCKET_EXPORT ZySslEchoClient : public QObject
{
    Q_OBJECT

public:
    /// Opens the connection to @p url ("ws://host:port") at once. A first attempt that fails emits
    /// nothing; it shows in socketConnectStatus().
    explicit ZySslEchoClient(const QUrl &url, QObject *parent = nullptr);
    /// The same for a "wss" URL whose printer has to be one that @p trust accepts; holds for all
    /// connections of this client.
    ZySslEchoClient(const QUrl &url, const ZyTlsTrust &trust, QObject *parent = nullptr);
    /// Closes the connection (code 1000).
    ~ZySslEchoClient() override;

    /// Opens a connection to @p url and remembers it. Neither closes a current connection first
    /// nor resets a transfer's state.
    void openWithUrl(const QUrl &url);
    /// Ends a transfer under way and closes the connection (code 1000); answered by pauseSuccess().
    void close();
    /// The socket's state.
    QAbstractSocket::SocketState socketConnectStatus() const;
    /**
     * Why the last attempt to connect failed or the connection ended; UnknownSocketError while
     * neither has, and after close().
     *
     * As Qt 5.15 has it: ConnectionRefusedError; HostNotFoundError; RemoteHostClosedError for a
     * server that hangs up, whatever it answered, and for a connection that the printer ended;
     * SslHandshakeFailedError for a "wss" URL at a server without TLS. A server that answers
     * anything but a WebSocket's handshake and stays connected leaves the state at ConnectingState
     * and the code at UnknownSocketError: only socketErrorText() says so. A silent one leaves no
     * trace. An invalid URL leaves its text alone, too.
     */
    QAbstractSocket::SocketError socketError() const;
    /// The same in Qt's words, in the application's language; "Unknown error" without one. The
    /// text about a handshake or a URL stays for the life of the client.
    QString socketErrorText() const;
    /// What the client was made with; an unrestricted one without.
    ZyTlsTrust tlsTrust() const;
    /// The SHA-256 fingerprint, as ZyTlsTrust::fingerprintOf() writes it, of the certificate for
    /// which the last attempt to connect was refused; empty when it was not. socketErrorText() then
    /// says what is wrong with a certificate, unless a pinned one was expected.
    QString refusedFingerprint() const;
    /// The WebSocket close code with which the last connection ended, the peer's own where it sent
    /// one: 1011, for instance, from a peer that failed.
    int closeCode() const;

    /// Sends VERSION_CHECK; a printer of version "1" is answered by checkVersion().
    void versionCheckCmd();
    /// Sends START_PRINT for a file on the printer; answered by printErrorCode(), twice when the
    /// file is checked.
    void printStartCmd(QString filename, QString token);
    /// Sends PRINT_PAUSE; the result is only in jsonMessageReceived().
    void printPauseCmd(QString token);
    /// Sends PRINT_STOP; the result is only in jsonMessageReceived().
    void printStopCmd(QString token);
    /// Sends GET_PRINT_STATUS; answered by getPrinterStatusInfo().
    void getPrintStatusCmd(QString token);
    /// Sends PRINT_WORKING_LIFE. Deliberate: the server of this library never answers it.
    void getPrintworkingLife(QString token);
    /// Sends PRINT_PARA_SET with the keys of @p para as they are, "token" and "cmd" excepted. The
    /// printer reads "initExposure", "delayLight", "printExposure", "printHeight", "eleSpeed" and
    /// "bottomExposureNum", each as a JSON string.
    void setPrintParaCmd(QJsonObject para, QString token);

    /// Sends one message as compact JSON; silently lost while not connected.
    void sendJsonMessage(QJsonObject message);
    /// The object in a text message; empty for anything that is not one JSON object.
    QJsonObject messageToJson(QString message) const;

    /**
     * Offers the local file @p filePath to the printer under the name @p fileName.
     *
     * Returns once START_FILE is sent. The transfer then runs by itself: fileTransProgress() for
     * each chunk, finish() at the end. A file of which the printer already holds a part goes on
     * from there. transError(-1) when the file is missing or cannot be read, transError(-2) when
     * it cannot be opened once the printer has accepted it (the client then starts no further
     * transfer), transError() with the printer's code when it refuses.
     *
     * An empty file never completes on the printer; do not send one. A dropped connection is not
     * noticed by the transfer: call close() on disconnected() or on a stall, then openWithUrl()
     * and sendFile() again to resume.
     */
    void sendFile(QString filePath, QString fileName);
    /// Sent as "token" with each START_FILE to come; an empty one, the default, is left out. A
    /// printer asks its host to check the token only when there is one.
    void setFileToken(const QString &token);
    /// Sent as "sha256" with each START_FILE to come: the SHA-256 digest of the whole file as 64
    /// hex digits. An empty one, the default, is left out. A printer that checks it answers -1 in
    /// finish() for a file that arrived otherwise; deployed ones ignore it.
    void setFileDigest(const QString &sha256);
    /// A compression level that is chosen for each chunk, so that neither the network nor the
    /// processor waits for the other: hard for a slow network, little for a fast one, not at all
    /// for what does not shrink.
    static constexpr int Adaptive = -2;
    /**
     * How hard the chunks are compressed: Adaptive, 0 (not at all) to 9 (smallest); any other
     * number, the initial -1 included, leaves it to zlib. Every printer reads every level.
     *
     * Holds from the next chunk on that is not compressed yet. One chunk is compressed while the
     * one before it is under way; more with setCompressionThreads().
     */
    void setCompressionLevel(int level);
    int compressionLevel() const; ///< The level as it was set.
    /**
     * In how many threads of the library's own chunks are compressed: 0, the default, starts none
     * and compresses in the client's own thread, which meanwhile handles no events; up to 16; -1 is
     * one for each processor core, but at most four.
     *
     * The threads are shared by all clients of the process, start with the first chunk, and end in
     * the destructor of the application object. One chunk more than there are threads is read and
     * compressed ahead, so that a transfer needs up to 2 MiB of memory for each of them. What is
     * still being compressed when a transfer ends, or the client is deleted, is left to its thread.
     * Takes effect with the next chunk.
     */
    void setCompressionThreads(int count);
    int compressionThreads() const; ///< The number as it was set.
    /**
     * How many chunks may be under way before the printer acknowledges them: 1, the default, to 16.
     *
     * Holds from the next START_FILE on, which says so under "window", with a printer that answers
     * how many it bears; any other gets one chunk at a time. A further chunk is sent when the
     * system has taken the one before, so that commands wait for little more than one.
     */
    void setWindow(int chunks);
    int window() const; ///< The number as it was set.
    /// Computes the key of @p file and sends START_FILE; false when there is no key.
    bool sendFileStart(QFile &file, QString fileName);
    /// The file key from the last four bytes of @p file; empty when it cannot be read.
    QString getFileKey(QFile &file);
    /// Sends the file that @p reply accepts; returns when the transfer has ended.
    void beginTransFile(QJsonObject reply);
    /// The byte from which the printer wanted the last transfer that began, as its START_FILE reply
    /// says; -1 before the first. Known from the first acknowledgement on, while the reply itself
    /// reaches jsonMessageReceived() only after the transfer.
    qint64 transferOffset() const;
    /// How many chunks of that transfer may be under way at once; see setWindow().
    int transferWindow() const;
    /// Cancels the transfer on the printer, answered by cancelFinished(). While unconnected it
    /// sends nothing and re-opens the last URL.
    void cancel();

Q_SIGNALS:
    /// The connection has ended without close() having been called.
    void disconnected();
    /// The connection is open.
    void connected();
    /// Every reply, whole, after the signals it caused; empty for text that is not a JSON object.
    /// Only a START_FILE reply that arrives during a transfer is dropped.
    void jsonMessageReceived(QJsonObject message);
    /// START_DATA: the printer holds @p received of @p total bytes. @p filePath is the local path,
    /// empty when the printer names an unknown key.
    void fileTransProgress(QString filePath, qlonglong total, qlonglong received);
    /// CHECK_DATA: the printer has the whole file; @p checkstate is its host's verdict.
    void finish(QString filePath, int checkstate);
    /// A transfer could not start: 1 printer busy or unwilling, 2 its temporary file failed, 4
    /// token rejected, -1 and -2 the local file; @p message is always empty.
    void transError(int code, QString message);
    /// CANCEL_FILE: the printer has cancelled.
    void cancelFinished();
    /// The connection has ended after close(). Deliberate name: it has nothing to do with pausing
    /// a print, but hosts connect to it.
    void pauseSuccess();
    /// START_PRINT: 0 started, 1 busy, 2 checking, 3 check failed, 4 token rejected. Deliberate:
    /// not the numbers of STAET_PRINT_STATUS; hosts interpret these.
    void printErrorCode(int errorcode, QString filename);
    void printBusy(QString filename); ///< Never emitted; see printErrorCode().
    void printFileChecking(QString filename); ///< Never emitted; see printErrorCode().
    void printFileCheckFailed(QString filename); ///< Never emitted; see printErrorCode().
    void startPrintSuccess(QString filename); ///< Never emitted; see printErrorCode().
    /// Some reply carried "version" "1".
    void checkVersion();
    /// GET_PRINT_STATUS: the whole reply.
    void getPrinterStatusInfo(QJsonObject infoJsn);
    /// PRINT_WORKING_LIFE: the whole reply.
    void slotGetPrinterWorkingLife(QJsonObject infoJsn);

private Q_SLOTS:
    void onConnected();
    void onDisConnected();
    void onTextMessageReceived(QString message);
    void onSslErrors(const QList<QSslError> &errors);
    void trying();
    void onPong(qulonglong elapsedTime, const QByteArray &payload);
    void onStateChanged(QAbstractSocket::SocketState state);

private:
    struct ReplyRow;

    void onStartFileReply(const QJsonObject &reply);
    void onStartDataReply(const QJsonObject &reply);
    void onCheckDataReply(const QJsonObject &reply);
    void onCancelFileReply(const QJsonObject &reply);
    void onStartPrintReply(const QJsonObject &reply);
    void onPrintPauseReply(const QJsonObject &reply);
    void onPrintStopReply(const QJsonObject &reply);
    void onPrintStatusReply(const QJsonObject &reply);
    void onPrintParaReply(const QJsonObject &reply);
    void onWorkingLifeReply(const QJsonObject &reply);

    void open(const QUrl &url);
    void sendFrom(QFile &file, const QJsonObject &reply);
    void sendChunks(QFile &file, bool compress);
    bool pumpOut();
    bool pumpUntil(const std::function<bool()> &hasCome);

    std::unique_ptr<zyws::CertificateCheck> m_certificateCheck;
    std::unique_ptr<zyws::HeldSocket> m_heldSocket;
    QWebSocket &m_webSocket;
    QMap<QString, QString> m_keyFileMap;
    bool m_isSending = false;
    bool m_isActiveClose = false;
    bool m_isCanceling = false;
    QUrl m_url;
    int m_chunksUnderWay = 0; ///< chunks that no START_DATA has answered
    bool m_isTransferring = false;
    QTimer *m_timer;
    bool m_isPingPending = false;
    int m_pingCount = 0;
    int m_compressionLevel = -1;
    int m_compressionThreads = 0;
    int m_window = 1;
    QString m_fileToken;
    QString m_fileDigest;
    qint64 m_transferOffset = -1;
    int m_transferWindow = 1;

    std::unique_ptr<zyws::DeliveryQueue> m_deliveries;
    QQueue<QAbstractSocket::SocketState> m_waitingStates; ///< to be logged in turn
    QMetaObject::Connection m_textConnection;
    QMetaObject::Connection m_disconnectConnection;
};

#endif // ZYSSLECHOCLIENT_H
