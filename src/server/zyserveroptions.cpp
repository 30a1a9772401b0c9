// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer's host may ask of the server beyond the deployed protocol.

#include "zyserveroptions.h"

#include "tlsidentity.h"

#include <QHostAddress>
#include <QSslConfiguration>

#include <optional>

namespace
{

constexpr qint64 KiB = 1024;
constexpr qint64 MiB = 1024 * KiB;

} // namespace

struct ZyServerOptions::Data : QSharedData {
    QHostAddress listenAddress;
    int maxConnections = 0;
    bool checksOrigin = false;
    QStringList allowedOrigins;
    int handshakeTimeout = 0;
    std::optional<QSslConfiguration> tls; ///< even an empty one loads the TLS library
    QString token;
    int maxWrongTokens = 0;
    bool needsPlainNames = false;
    NameFilter nameFilter;
    qint64 maxFileSize = 0;
    qint64 maxDataMessage = 0;
    qint64 maxTextMessage = 0;
    int maxChunk = 0;
    int maxBacklog = 0;
    bool keepsTransfersApart = false;
    int silence = 0;
    bool reservesSpace = false;
    qint64 keepFree = 0;
    qint64 recordInterval = 0;
    bool syncsToDisk = false;
    bool checksDigest = false;
    int window = 0;
    FailureHandler failureHandler;
    TransferHandler transferHandler;
};

ZyServerOptions::ZyServerOptions() : d(new Data) { }
ZyServerOptions::ZyServerOptions(const ZyServerOptions &other) = default;
ZyServerOptions &ZyServerOptions::operator=(const ZyServerOptions &other) = default;
ZyServerOptions::~ZyServerOptions() = default;

ZyServerOptions ZyServerOptions::hardened()
{
    ZyServerOptions options;
    Data &data = *options.d;
    data.maxConnections = 64;
    data.checksOrigin = true;
    data.handshakeTimeout = 10000;
    data.maxWrongTokens = 10;
    data.needsPlainNames = true;
    data.maxFileSize = 4096 * MiB;
    data.maxDataMessage = MiB + 64 * KiB;
    data.maxTextMessage = 64 * KiB;
    data.maxChunk = int(MiB);
    data.maxBacklog = 1024;
    data.keepsTransfersApart = true;
    data.silence = 15000;
    data.reservesSpace = true;
    data.keepFree = 64 * MiB;
    data.recordInterval = 8 * MiB;
    data.syncsToDisk = true;
    data.checksDigest = true;
    return options;
}

QString ZyServerOptions::useTls(const QString &certFile, const QString &keyFile)
{
    QSslConfiguration configuration;
    QString fault = zyws::readTlsIdentity(certFile, keyFile, configuration);
    if (fault.isEmpty())
        d->tls = configuration;
    return fault;
}

QHostAddress ZyServerOptions::listenAddress() const
{
    return d->listenAddress;
}

void ZyServerOptions::setListenAddress(const QHostAddress &address)
{
    d->listenAddress = address;
}

int ZyServerOptions::maxConnections() const
{
    return d->maxConnections;
}

void ZyServerOptions::setMaxConnections(int count)
{
    d->maxConnections = qMax(0, count);
}

bool ZyServerOptions::checksOrigin() const
{
    return d->checksOrigin;
}

void ZyServerOptions::setChecksOrigin(bool check)
{
    d->checksOrigin = check;
}

QStringList ZyServerOptions::allowedOrigins() const
{
    return d->allowedOrigins;
}

void ZyServerOptions::setAllowedOrigins(const QStringList &origins)
{
    d->allowedOrigins = origins;
}

int ZyServerOptions::handshakeTimeout() const
{
    return d->handshakeTimeout;
}

void ZyServerOptions::setHandshakeTimeout(int milliseconds)
{
    d->handshakeTimeout = qMax(0, milliseconds);
}

bool ZyServerOptions::usesTls() const
{
    return d->tls.has_value();
}

QSslConfiguration ZyServerOptions::tls() const
{
    return d->tls.value_or(QSslConfiguration());
}

QString ZyServerOptions::token() const
{
    return d->token;
}

void ZyServerOptions::setToken(const QString &token)
{
    d->token = token;
}

int ZyServerOptions::maxWrongTokens() const
{
    return d->maxWrongTokens;
}

void ZyServerOptions::setMaxWrongTokens(int count)
{
    d->maxWrongTokens = qMax(0, count);
}

bool ZyServerOptions::needsPlainNames() const
{
    return d->needsPlainNames;
}

void ZyServerOptions::setNeedsPlainNames(bool need)
{
    d->needsPlainNames = need;
}

ZyServerOptions::NameFilter ZyServerOptions::nameFilter() const
{
    return d->nameFilter;
}

void ZyServerOptions::setNameFilter(const NameFilter &filter)
{
    d->nameFilter = filter;
}

qint64 ZyServerOptions::maxFileSize() const
{
    return d->maxFileSize;
}

void ZyServerOptions::setMaxFileSize(qint64 bytes)
{
    d->maxFileSize = qMax(qint64(0), bytes);
}

qint64 ZyServerOptions::maxDataMessage() const
{
    return d->maxDataMessage;
}

void ZyServerOptions::setMaxDataMessage(qint64 bytes)
{
    d->maxDataMessage = qMax(qint64(0), bytes);
}

qint64 ZyServerOptions::maxTextMessage() const
{
    return d->maxTextMessage;
}

void ZyServerOptions::setMaxTextMessage(qint64 bytes)
{
    d->maxTextMessage = qMax(qint64(0), bytes);
}

int ZyServerOptions::maxChunk() const
{
    return d->maxChunk;
}

void ZyServerOptions::setMaxChunk(int bytes)
{
    d->maxChunk = qMax(0, bytes);
}

int ZyServerOptions::maxBacklog() const
{
    return d->maxBacklog;
}

void ZyServerOptions::setMaxBacklog(int count)
{
    d->maxBacklog = qMax(0, count);
}

bool ZyServerOptions::keepsTransfersApart() const
{
    return d->keepsTransfersApart;
}

void ZyServerOptions::setKeepsTransfersApart(bool apart)
{
    d->keepsTransfersApart = apart;
}

int ZyServerOptions::silence() const
{
    return d->silence;
}

void ZyServerOptions::setSilence(int milliseconds)
{
    d->silence = qMax(0, milliseconds);
}

bool ZyServerOptions::reservesSpace() const
{
    return d->reservesSpace;
}

void ZyServerOptions::setReservesSpace(bool reserve)
{
    d->reservesSpace = reserve;
}

qint64 ZyServerOptions::keepFree() const
{
    return d->keepFree;
}

void ZyServerOptions::setKeepFree(qint64 bytes)
{
    d->keepFree = qMax(qint64(0), bytes);
}

qint64 ZyServerOptions::recordInterval() const
{
    return d->recordInterval;
}

void ZyServerOptions::setRecordInterval(qint64 bytes)
{
    d->recordInterval = qMax(qint64(0), bytes);
}

bool ZyServerOptions::syncsToDisk() const
{
    return d->syncsToDisk;
}

void ZyServerOptions::setSyncsToDisk(bool sync)
{
    d->syncsToDisk = sync;
}

bool ZyServerOptions::checksDigest() const
{
    return d->checksDigest;
}

void ZyServerOptions::setChecksDigest(bool check)
{
    d->checksDigest = check;
}

int ZyServerOptions::window() const
{
    return d->window;
}

void ZyServerOptions::setWindow(int chunks)
{
    d->window = qMax(0, chunks);
}

ZyServerOptions::FailureHandler ZyServerOptions::failureHandler() const
{
    return d->failureHandler;
}

void ZyServerOptions::setFailureHandler(const FailureHandler &handler)
{
    d->failureHandler = handler;
}

ZyServerOptions::TransferHandler ZyServerOptions::transferHandler() const
{
    return d->transferHandler;
}

void ZyServerOptions::setTransferHandler(const TransferHandler &handler)
{
    d->transferHandler = handler;
}
