// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Judges a printer's certificate in the TLS handshake, before anything is sent.

#include "certificatecheck.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>
#include <QWebSocket>

namespace zyws
{

CertificateCheck::CertificateCheck(const ZyTlsTrust &trust) : m_trust(trust) { }

void CertificateCheck::prepare(QWebSocket &socket)
{
    m_refused->clear();
    if (!m_trust.isRestricted())
        return; // the TLS library is not even loaded
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    // With a pinned certificate the list is empty. So Qt complains about every certificate, one
    // that the system trusts included, and none is accepted unless watch() forgives it.
    configuration.setCaCertificates(m_trust.authorities());
    socket.setSslConfiguration(configuration);
}

void CertificateCheck::watch(const QWebSocket &socket) const
{
    const auto below = socket.findChildren<QSslSocket *>();
    if (below.isEmpty())
        return;
    QSslSocket *tls = below.last(); // one that it has replaced may still wait for its deletion
    const auto judge = [tls, pinned = m_trust.fingerprint(), refused = m_refused] {
        const QString shown = ZyTlsTrust::fingerprintOf(tls->peerCertificate());
        if (!pinned.isEmpty() && shown == pinned)
            tls->ignoreSslErrors();
        else
            *refused = shown;
    };
    QObject::connect(tls, QOverload<const QList<QSslError> &>::of(&QSslSocket::sslErrors), tls,
                     judge);
}

} // namespace zyws
