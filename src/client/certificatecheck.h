// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Judges a printer's certificate in the TLS handshake, before anything is sent.

#ifndef CERTIFICATECHECK_H
#define CERTIFICATECHECK_H

#include "zytlstrust.h"

#include <memory>

class QWebSocket;

namespace zyws
{

/// Of one socket that opens one connection after the other. Without a restriction Qt judges alone,
/// and the check only remembers what was refused.
class CertificateCheck
{
public:
    explicit CertificateCheck(const ZyTlsTrust &trust);

    const ZyTlsTrust &trust() const { return m_trust; }
    /// Before @p socket opens a connection.
    void prepare(QWebSocket &socket);
    /// Right after that, when its TLS socket exists.
    void watch(const QWebSocket &socket) const;
    /// Of the certificate that this connection was refused for; empty while it was not.
    QString refused() const { return *m_refused; }

private:
    ZyTlsTrust m_trust;
    /// Shared with the handshake, which may outlive the check.
    std::shared_ptr<QString> m_refused = std::make_shared<QString>();
};

} // namespace zyws

#endif // CERTIFICATECHECK_H
