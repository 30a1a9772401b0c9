// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How long a ZyFileSender waits for what, how often it tries again, how hard it compresses.

#include "zysendoptions.h"

#include <zysslechoclient.h>

#include <QtGlobal>

struct ZySendOptions::Data : QSharedData {
    int connectTimeout = 10000;
    int stallTimeout = 15000;
    int verdictTimeout = 120000;
    int cancelTimeout = 5000;
    int retries = 5;
    int firstPause = 1000;
    int longestPause = 30000;
    QString token;
    bool sendsDigest = false;
    ZyTlsTrust tlsTrust;
    int compressionLevel = ZySslEchoClient::Adaptive;
    qint64 rateLimit = 0;
};

ZySendOptions::ZySendOptions() : d(new Data) { }
ZySendOptions::ZySendOptions(const ZySendOptions &other) = default;
ZySendOptions &ZySendOptions::operator=(const ZySendOptions &other) = default;
ZySendOptions::~ZySendOptions() = default;

int ZySendOptions::connectTimeout() const
{
    return d->connectTimeout;
}

void ZySendOptions::setConnectTimeout(int milliseconds)
{
    d->connectTimeout = qMax(0, milliseconds);
}

int ZySendOptions::stallTimeout() const
{
    return d->stallTimeout;
}

void ZySendOptions::setStallTimeout(int milliseconds)
{
    d->stallTimeout = qMax(0, milliseconds);
}

int ZySendOptions::verdictTimeout() const
{
    return d->verdictTimeout;
}

void ZySendOptions::setVerdictTimeout(int milliseconds)
{
    d->verdictTimeout = qMax(0, milliseconds);
}

int ZySendOptions::cancelTimeout() const
{
    return d->cancelTimeout;
}

void ZySendOptions::setCancelTimeout(int milliseconds)
{
    d->cancelTimeout = qMax(0, milliseconds);
}

int ZySendOptions::retries() const
{
    return d->retries;
}

void ZySendOptions::setRetries(int count)
{
    d->retries = qMax(0, count);
}

int ZySendOptions::firstPause() const
{
    return d->firstPause;
}

void ZySendOptions::setFirstPause(int milliseconds)
{
    d->firstPause = qMax(0, milliseconds);
}

int ZySendOptions::longestPause() const
{
    return d->longestPause;
}

void ZySendOptions::setLongestPause(int milliseconds)
{
    d->longestPause = qMax(0, milliseconds);
}

QString ZySendOptions::token() const
{
    return d->token;
}

void ZySendOptions::setToken(const QString &token)
{
    d->token = token;
}

bool ZySendOptions::sendsDigest() const
{
    return d->sendsDigest;
}

void ZySendOptions::setSendsDigest(bool sends)
{
    d->sendsDigest = sends;
}

ZyTlsTrust ZySendOptions::tlsTrust() const
{
    return d->tlsTrust;
}

void ZySendOptions::setTlsTrust(const ZyTlsTrust &trust)
{
    d->tlsTrust = trust;
}

int ZySendOptions::compressionLevel() const
{
    return d->compressionLevel;
}

void ZySendOptions::setCompressionLevel(int level)
{
    d->compressionLevel = level;
}

qint64 ZySendOptions::rateLimit() const
{
    return d->rateLimit;
}

void ZySendOptions::setRateLimit(qint64 bytesPerSecond)
{
    d->rateLimit = qMax<qint64>(0, bytesPerSecond);
}
