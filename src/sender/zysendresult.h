// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How a ZyFileSender ended.

#ifndef ZYSENDRESULT_H
#define ZYSENDRESULT_H

#include <QMetaType>
#include <QObject>
#include <QSharedDataPointer>
#include <QString>

#include "zywebsocket_export.h"

/// How a transfer ended, why, and what the printer holds. A value type, usable in any thread.
class ZYWEBSOCKET_EXPORT ZySendResult
{
    Q_GADGET

public:
    /// How it ended.
    enum class Ending {
        Sent, ///< the printer holds the file and found it good, or has no opinion (check state 0)
        CheckFailed, ///< the printer holds the file and found it bad: checkState()
        BusyReceiving, ///< refused: the printer is receiving a file on some connection
        BusyChecking, ///< refused: the printer is checking a file before a print
        Unwilling, ///< refused: the printer's host does not take a file now
        TokenRejected, ///< refused: the printer wants a token, or another one
        PrinterStorage, ///< the printer cannot create or write its file
        PrinterFault, ///< the printer's answers contradict the file or the protocol
        LocalFile, ///< fileFault()
        NoConnection, ///< the first connection failed, or a certificate: connectionFault()
        GaveUp, ///< ZySendOptions::retries() used up: interruption()
        Cancelled, ///< cancel(); the sentence says whether the printer has deleted its part
        LeftForLater, ///< leave(); sending the same file again resumes
    };
    Q_ENUM(Ending)

    /// Why there was no connection.
    enum class ConnectionFault {
        None,
        BadAddress, ///< no ws:// or wss:// URL with a host
        Refused,
        UnknownHost,
        TimedOut,
        Tls,
        NotAWebSocket, ///< something answers at the address, but it is no WebSocket server
        Network, ///< anything else, in the system's words in sentence()
        CertificateUntrusted, ///< nothing vouches for the printer's certificate:
                              ///< refusedFingerprint()
        CertificateChanged, ///< another one than the pinned: refusedFingerprint()
    };
    Q_ENUM(ConnectionFault)

    /// Why the file, or its name on the printer, cannot be sent.
    enum class FileFault {
        None,
        Missing,
        NotAFile, ///< a directory, a device
        Unreadable,
        Empty, ///< it would never complete on the printer
        Changed, ///< in size, while it was being sent
        NameEmpty,
        NameHasSeparator, ///< '/' or '\'
        NameIsDirectory, ///< "." or ".."
        NameHasControlCharacter,
        NameReserved, ///< the printer's own file, "wifi_tranfer.tmp" in any letter case
        NameTooLong, ///< more than 255 bytes of UTF-8
    };
    Q_ENUM(FileFault)

    /// Why an attempt ended before the file was sent.
    enum class Interruption {
        None,
        ConnectFailed, ///< on a retry; a first connection that fails ends in NoConnection
        ConnectionLost,
        Stalled, ///< ZySendOptions::stallTimeout()
        NoVerdict, ///< ZySendOptions::verdictTimeout()
        StillReceiving, ///< refused as busy on a retry: it may not have noticed the lost connection
    };
    Q_ENUM(Interruption)

    struct Data; ///< the library's own

    /// Sent, of no bytes.
    ZySendResult();
    explicit ZySendResult(const Data &data); ///< the library's own
    ZySendResult(const ZySendResult &other);
    ZySendResult &operator=(const ZySendResult &other);
    ~ZySendResult();

    Ending ending() const; ///< how it ended
    bool isSent() const { return ending() == Ending::Sent; } ///< whether ending() is Sent

    /// The printer's verdict from CHECK_DATA: 1 good, 0 no opinion, anything else bad. Only with
    /// Sent and CheckFailed.
    int checkState() const;
    /// None unless the ending is NoConnection, or GaveUp after ConnectFailed.
    ConnectionFault connectionFault() const;
    /// The SHA-256 fingerprint of the certificate that was refused, as
    /// ZyTlsTrust::fingerprintOf() writes it; empty with any other connectionFault().
    QString refusedFingerprint() const;
    /// None unless the ending is LocalFile.
    FileFault fileFault() const;
    /// None unless the ending is GaveUp.
    Interruption interruption() const;

    /// The name under which the printer stored the file. A resumed reception keeps the name it was
    /// first offered under. Empty unless the ending is Sent or CheckFailed.
    QString storedName() const;
    /// Bytes of the file that the printer has acknowledged, at most total().
    qint64 bytes() const;
    /// The file's size in bytes; 0 when it could not be read.
    qint64 total() const;
    /// The printer has confirmed the cancel and deleted its part.
    bool isPartDeleted() const;
    /// More about the ending, in English or in the system's language: its words for the connection
    /// that failed, how a printer broke the protocol. Often empty.
    QString detail() const;

    /// For people, in English, in a few words: "connection refused", "file is empty", "connection
    /// lost".
    static QString text(ConnectionFault fault);
    static QString text(FileFault fault); ///< The same for a fault of the file.
    static QString text(Interruption why); ///< The same for an interruption.

    /// The whole result as one English sentence for people, without a full stop.
    QString sentence() const;

private:
    QSharedDataPointer<Data> d;
};

Q_DECLARE_METATYPE(ZySendResult)

#endif // ZYSENDRESULT_H
