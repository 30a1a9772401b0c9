// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which certificates a client accepts from a printer that speaks wss://.

#ifndef ZYTLSTRUST_H
#define ZYTLSTRUST_H

#include <QList>
#include <QSharedDataPointer>
#include <QString>

#include "zywebsocket_export.h"

class QSslCertificate;

/**
 * Which printers a ZySslEchoClient or a ZyFileSender talks to over TLS; counts for "wss" URLs
 * alone.
 *
 * Default-constructed, it trusts whom the system trusts, as a client without one does. Neither a
 * command nor a file goes to a printer whose certificate is refused: the connection fails.
 *
 * A value type: cheap to copy, usable in any thread. A restricted one that could not be set up
 * trusts nobody.
 */
class ZYWEBSOCKET_EXPORT ZyTlsTrust
{
public:
    ZyTlsTrust();
    ZyTlsTrust(const ZyTlsTrust &other);
    ZyTlsTrust &operator=(const ZyTlsTrust &other);
    ~ZyTlsTrust();

    /// Trusts only certificates that one of those in the PEM file @p file vouches for, and that
    /// name the URL's host; one of the file itself does. Returns empty, or what is wrong with the
    /// file, in English; nobody is trusted then. The file is read at once.
    QString useAuthorities(const QString &file);
    QList<QSslCertificate> authorities() const; ///< The certificates of that file.

    /// Trusts only the certificate with this SHA-256 fingerprint, whoever vouches for it, whatever
    /// host it names and however old it is; authorities no longer count. @p fingerprint: 64 hex
    /// digits of any case, with colons or spaces or without. False for anything else; nobody is
    /// trusted then.
    bool pin(const QString &fingerprint);
    /// The pinned one as fingerprintOf() writes it; empty without one.
    QString fingerprint() const;

    /// False for a default-constructed one.
    bool isRestricted() const;

    /// The SHA-256 fingerprint of @p certificate as people compare it: pairs of upper-case hex
    /// digits between colons. Empty for a null certificate.
    static QString fingerprintOf(const QSslCertificate &certificate);
    /// The same form of a fingerprint that was entered; empty when it is none.
    static QString canonical(const QString &fingerprint);

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

#endif // ZYTLSTRUST_H
