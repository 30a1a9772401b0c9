// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer's host may ask of the server beyond the deployed protocol.

#ifndef ZYSERVEROPTIONS_H
#define ZYSERVEROPTIONS_H

#include <QSharedDataPointer>
#include <QString>
#include <QStringList>

#include <functional>

#include "zywebsocket_export.h"

class QHostAddress;
class QSslConfiguration;

/**
 * The protection of a ZySslEchoServer.
 *
 * Default-constructed it asks for none: the server then speaks the protocol exactly as deployed
 * slicers and printers do. hardened() asks for all of it. No option changes what a deployed slicer
 * sees in an ordinary transfer, except a token and TLS, which it must know.
 *
 * A value type: cheap to copy, usable in any thread. A server keeps the copy that it was made with.
 * Each field's documentation ends with what hardened() sets; the default is always off: false, 0
 * or empty. Negative numbers count as 0.
 */
class ZYWEBSOCKET_EXPORT ZyServerOptions
{
public:
    ZyServerOptions();
    ZyServerOptions(const ZyServerOptions &other);
    ZyServerOptions &operator=(const ZyServerOptions &other);
    ~ZyServerOptions();

    /// Everything that needs no decision of the host's: all but a token, TLS and callables.
    static ZyServerOptions hardened();

    // Admission.

    /// The address of this machine on which the server listens; a null one: all of them. Null.
    QHostAddress listenAddress() const;
    void setListenAddress(const QHostAddress &address);

    /// A connection beyond this number is closed right after its handshake; of those still shaking
    /// hands as many are kept, the latest. 64.
    int maxConnections() const;
    void setMaxConnections(int count);

    /// A handshake with an Origin header, as browsers send it, is answered 403 unless the origin is
    /// listed; without the header it is let in. True.
    bool checksOrigin() const;
    void setChecksOrigin(bool check);
    /// The origins that may connect, as they stand in the header: scheme, host and port. None.
    QStringList allowedOrigins() const;
    void setAllowedOrigins(const QStringList &origins);

    /// Milliseconds after which a TCP connection that has not finished its handshake, TLS
    /// included, is closed. 10000.
    int handshakeTimeout() const;
    void setHandshakeTimeout(int milliseconds);

    /**
     * Speak wss:// only, TLS 1.2 or later, with the certificate (and its chain) in @p certFile and
     * the key without pass phrase in @p keyFile, both PEM; they are read at once. Not set.
     *
     * @return empty, or why they cannot be used; the options stay as they were then.
     */
    QString useTls(const QString &certFile, const QString &keyFile);
    bool usesTls() const; ///< Whether useTls() has succeeded: wss:// and not ws://.
    /// What useTls() has set; a null configuration when the server speaks ws://.
    QSslConfiguration tls() const;

    // Requests.

    /// Bytes of UTF-8 in this secret: all commands but VERSION_CHECK and CANCEL_FILE need it and
    /// the library judges it before the host is asked; empty: it judges none. Not set.
    QString token() const;
    void setToken(const QString &token);
    /// So many commands in a row with a wrong or without a token close their connection. 10.
    int maxWrongTokens() const;
    void setMaxWrongTokens(int count);

    /**
     * START_FILE and START_PRINT are refused, without asking the host, for a name that is not plain
     * (empty, ".", "..", "wifi_tranfer.tmp", with a separator or control character, or longer than
     * 255 bytes) or is that of a directory or symbolic link in the receive directory. True.
     */
    bool needsPlainNames() const;
    void setNeedsPlainNames(bool need);
    /// Asked for each plain name; false refuses it as well. Runs in the server's thread and must
    /// not spin the event loop. Not set.
    using NameFilter = std::function<bool(const QString &name)>;
    NameFilter nameFilter() const; ///< The function; empty when none is set.
    void setNameFilter(const NameFilter &filter);

    /// START_FILE is refused unless its "size" is a decimal number from 1 to so many bytes; 0: any.
    /// 4 GiB.
    qint64 maxFileSize() const;
    void setMaxFileSize(qint64 bytes);

    /// A binary message of more bytes closes its connection with code 1009; 0: any. 1 MiB + 64 KiB.
    qint64 maxDataMessage() const;
    void setMaxDataMessage(qint64 bytes);
    /// A text message of more bytes closes its connection with code 1009, one with nested objects
    /// or arrays is ignored; 0: any. 64 KiB.
    qint64 maxTextMessage() const;
    void setMaxTextMessage(qint64 bytes);
    /// A data message that inflates to more bytes, or not at all, is answered with "errorcode" 2
    /// and not written; 0: any. 1 MiB.
    int maxChunk() const;
    void setMaxChunk(int bytes);
    /// A connection with more messages than this waiting to be handled, or more than so many KiB
    /// of replies not read by its peer, is closed; 0: any. 1024.
    int maxBacklog() const;
    void setMaxBacklog(int count);

    // Transfers.

    /**
     * Each reception belongs to its connection alone: data from others, a second START_FILE and a
     * CANCEL_FILE of another connection or for a finished or printed file change nothing, and a
     * resume record counts only when it is exactly what a server wrote there. True.
     */
    bool keepsTransfersApart() const;
    void setKeepsTransfersApart(bool apart);

    /// Milliseconds after which a connection from which nothing comes, no answer to the server's
    /// pings either, is dropped, and after which a reception without a message yields to another
    /// connection's START_FILE; 0: never. 15000.
    int silence() const;
    void setSilence(int milliseconds);

    /// The disk space of a file is reserved when it is accepted, and START_FILE refused when there
    /// is too little. True.
    bool reservesSpace() const;
    void setReservesSpace(bool reserve);
    /// Bytes that a reservation leaves free on the receive directory's file system. 64 MiB.
    qint64 keepFree() const;
    void setKeepFree(qint64 bytes);

    /// The resume record is written whenever so many more bytes have come, so that it outlives a
    /// killed process; 0: only when the connection ends. 8 MiB.
    qint64 recordInterval() const;
    void setRecordInterval(qint64 bytes);
    /// Data reach the disk before the record that vouches for them, and a finished file before its
    /// name, so that both outlive a loss of power. True.
    bool syncsToDisk() const;
    void setSyncsToDisk(bool sync);

    /// A finished file that differs from the SHA-256 digest under "sha256" in its START_FILE is
    /// deleted and answered with "checkstate" -1, without finish(). True.
    bool checksDigest() const;
    void setChecksDigest(bool check);

    /// Chunks that a sender may have under way before they are acknowledged, each 1 MiB of memory.
    /// Announced as "window" in the reply that accepts a START_FILE with that key; below 2 nothing
    /// is announced. Not set, since it protects nothing.
    int window() const;
    void setWindow(int chunks);

    // Reports.

    /// What went wrong.
    enum class Failure {
        Refused, ///< a request did not pass these options
        Dropped, ///< a connection was ended because of them
        NoSpace, ///< a file was not accepted for lack of disk space
        NotWritten, ///< data of a running reception could not be written; the disk may be full
        NotResumable, ///< an interrupted reception left no record: its temporary file is useless
        WrongDigest, ///< a finished file was not what its sender has, and is deleted
    };
    /// Called in the server's thread when the server itself turns something down or loses it, with
    /// a reason for people. Must not spin the event loop nor delete the server. Not set.
    using FailureHandler = std::function<void(Failure what, const QString &why)>;
    FailureHandler failureHandler() const; ///< The function; empty when none is set.
    void setFailureHandler(const FailureHandler &handler);

    /// What became of a transfer.
    enum class Transfer {
        Accepted, ///< before fileTranStart()
        Cancelled, ///< before cancle(); @p name is empty when none was under way
        Interrupted, ///< before fileTranDisconnet()
    };
    /// Called in the server's thread with what those signals do not say: the name under which the
    /// file was offered, and the peer as "address:port". Must not spin the event loop nor delete
    /// the server. Not set.
    using TransferHandler
        = std::function<void(Transfer what, const QString &name, const QString &peer)>;
    TransferHandler transferHandler() const; ///< The function; empty when none is set.
    void setTransferHandler(const TransferHandler &handler);

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

#endif // ZYSERVEROPTIONS_H
