// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How long a ZyFileSender waits for what, how often it tries again, how hard it compresses.

#ifndef ZYSENDOPTIONS_H
#define ZYSENDOPTIONS_H

#include <QSharedDataPointer>
#include <QString>

#include <zytlstrust.h>

#include "zywebsocket_export.h"

/**
 * The settings of a ZyFileSender; default-constructed ones suit a local network.
 *
 * A value type: cheap to copy, usable in any thread. All times are in milliseconds; a negative
 * number counts as 0.
 */
class ZYWEBSOCKET_EXPORT ZySendOptions
{
public:
    ZySendOptions();
    ZySendOptions(const ZySendOptions &other);
    ZySendOptions &operator=(const ZySendOptions &other);
    ~ZySendOptions();

    /// Until the connection is open, the WebSocket handshake included. 10000.
    int connectTimeout() const;
    void setConnectTimeout(int milliseconds);

    /// Until the printer answers the offer, and until it acknowledges a chunk (1 MiB at most).
    /// 15000.
    int stallTimeout() const;
    void setStallTimeout(int milliseconds);

    /// Until the printer has checked the complete file: a printer that checks is not stalled.
    /// 120000.
    int verdictTimeout() const;
    void setVerdictTimeout(int milliseconds);

    /// Until the printer confirms a cancel. 5000.
    int cancelTimeout() const;
    void setCancelTimeout(int milliseconds);

    /// Failures in a row, without a byte gained, after which the sender gives up; 0 for an
    /// application that asks its user instead. A first connection that fails is never retried. 5.
    int retries() const;
    void setRetries(int count);

    /// The pause before the first retry in a row; it doubles with each further one. 1000.
    int firstPause() const;
    void setFirstPause(int milliseconds);
    /// The pause never becomes longer than this. 30000.
    int longestPause() const;
    void setLongestPause(int milliseconds);

    /// The printer's access token, sent with the offer; empty for a printer that wants none. Empty.
    QString token() const;
    void setToken(const QString &token);

    /**
     * Whether the file's SHA-256 digest goes with the offer, so that a printer that checks it finds
     * a file that arrived otherwise, or was resumed on another file's part, bad: CheckFailed with
     * check state -1. Other printers ignore it. False.
     *
     * The file is read for it while the connection is opened, and the offer waits until it has been
     * read: ZyFileSender::reading(). It is read once more to be sent.
     */
    bool sendsDigest() const;
    void setSendsDigest(bool sends);

    /// Which certificates are accepted from a printer at a "wss" URL. Those that the system trusts.
    ZyTlsTrust tlsTrust() const;
    void setTlsTrust(const ZyTlsTrust &trust);

    /// As ZySslEchoClient::setCompressionLevel(). ZySslEchoClient::Adaptive, which is -2.
    int compressionLevel() const;
    void setCompressionLevel(int level);

    /// At most about so many bytes of the file in a second, on average: the sender rests between
    /// chunks of 1 MiB; 0 for as fast as it goes. 0.
    qint64 rateLimit() const;
    void setRateLimit(qint64 bytesPerSecond);

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

#endif // ZYSENDOPTIONS_H
