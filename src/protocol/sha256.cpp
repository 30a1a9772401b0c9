// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The SHA-256 digest, by OpenSSL or by Qt.

#include "sha256.h"

#ifdef ZYWS_WITH_OPENSSL
#include <openssl/crypto.h>
#include <openssl/evp.h>
#else
#include <QCryptographicHash>
#endif

namespace zyws
{

#ifdef ZYWS_WITH_OPENSSL
struct Sha256::State {
    State() : context(EVP_MD_CTX_new()) { }
    ~State() { EVP_MD_CTX_free(context); }
    Q_DISABLE_COPY(State)

    void reset() { EVP_DigestInit_ex(context, EVP_sha256(), nullptr); }
    void add(const QByteArray &bytes)
    {
        EVP_DigestUpdate(context, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }
    QByteArray result()
    {
        QByteArray digest(EVP_MD_size(EVP_sha256()), '\0');
        EVP_DigestFinal_ex(context, reinterpret_cast<unsigned char *>(digest.data()), nullptr);
        return digest;
    }

    EVP_MD_CTX *context;
};
#else
struct Sha256::State {
    void reset() { hash.reset(); }
    void add(const QByteArray &bytes) { hash.addData(bytes); }
    QByteArray result() { return hash.result(); }

    QCryptographicHash hash{QCryptographicHash::Sha256};
};
#endif

Sha256::Sha256() : m_state(std::make_unique<State>())
{
    reset();
}

Sha256::~Sha256() = default;

void Sha256::reset()
{
    m_state->reset();
}

void Sha256::add(const QByteArray &bytes)
{
    m_state->add(bytes);
}

QByteArray Sha256::hexResult()
{
    return m_state->result().toHex();
}

void Sha256::leaveThread()
{
#ifdef ZYWS_WITH_OPENSSL
    OPENSSL_thread_stop();
#endif
}

} // namespace zyws
