// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads the certificate and the key with which the server speaks TLS.

#include "tlsidentity.h"

#include <QFile>
#include <QHostAddress>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpSocket>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace zyws
{

namespace
{

QSslKey privateKey(const QByteArray &pem)
{
    for (const QSsl::KeyAlgorithm algorithm : {QSsl::Rsa, QSsl::Ec, QSsl::Dsa}) {
        QSslKey key(pem, algorithm, QSsl::Pem);
        if (!key.isNull())
            return key;
    }
    return {};
}

/// Has Qt make the TLS context: the only way to learn from it that key and certificate do not
/// belong together before a slicer does.
bool isUsable(const QSslConfiguration &configuration)
{
#ifdef Q_OS_UNIX
    QTcpSocket carrier;
    if (!carrier.bind(QHostAddress::LocalHost))
        return true;
    QSslSocket probe;
    // A socket of its own, never connected; only its backend has to be there.
    if (!probe.setSocketDescriptor(::dup(int(carrier.socketDescriptor()))))
        return true;
    probe.setSslConfiguration(configuration);
    probe.startServerEncryption();
    return probe.error() == QAbstractSocket::UnknownSocketError;
#else
    return !configuration.isNull();
#endif
}

} // namespace

QString readTlsIdentity(const QString &certFile, const QString &keyFile,
                        QSslConfiguration &configuration)
{
    QFile certificates(certFile);
    if (!certificates.open(QIODevice::ReadOnly))
        return QStringLiteral("certificate cannot be read: ") + certificates.errorString();
    const QList<QSslCertificate> chain = QSslCertificate::fromDevice(&certificates, QSsl::Pem);
    if (chain.isEmpty())
        return QStringLiteral("certificate file holds no PEM certificate");
    QFile keys(keyFile);
    if (!keys.open(QIODevice::ReadOnly))
        return QStringLiteral("key cannot be read: ") + keys.errorString();
    const QSslKey key = privateKey(keys.readAll());
    if (key.isNull())
        return QStringLiteral("key file holds no PEM key without pass phrase");

    configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setLocalCertificateChain(chain);
    configuration.setPrivateKey(key);
    return isUsable(configuration) ? QString()
                                   : QStringLiteral("certificate and key do not belong together");
}

} // namespace zyws
