// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads the certificate and the key with which the server speaks TLS.

#ifndef TLSIDENTITY_H
#define TLSIDENTITY_H

#include <QString>

class QSslConfiguration;

namespace zyws
{

/// Sets @p configuration up for a server with the PEM certificate (and its chain) in @p certFile
/// and the PEM key in @p keyFile. Returns empty, or what is wrong with them.
QString readTlsIdentity(const QString &certFile, const QString &keyFile,
                        QSslConfiguration &configuration);

} // namespace zyws

#endif // TLSIDENTITY_H
