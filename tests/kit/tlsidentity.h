// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The self-signed certificates with which printers of the tests speak wss://: of one name and host,
// and different for all that.

#ifndef TLSIDENTITY_H
#define TLSIDENTITY_H

#include <QSslCertificate>
#include <QStringList>

#include <zytlstrust.h>

namespace zytest
{

struct TlsIdentity {
    QString certificate; ///< PEM file
    QString key; ///< PEM file

    static TlsIdentity localhost()
    {
        return {QStringLiteral(ZYTEST_TLS "/localhost.pem"),
                QStringLiteral(ZYTEST_TLS "/localhost.key")};
    }
    static TlsIdentity other()
    {
        return {QStringLiteral(ZYTEST_TLS "/other.pem"), QStringLiteral(ZYTEST_TLS "/other.key")};
    }

    QString fingerprint() const
    {
        return ZyTlsTrust::fingerprintOf(QSslCertificate::fromPath(certificate).value(0));
    }
    /// For a zyprinter process.
    QStringList options() const
    {
        return {QStringLiteral("--cert"), certificate, QStringLiteral("--key"), key};
    }
};

} // namespace zytest

#endif // TLSIDENTITY_H
