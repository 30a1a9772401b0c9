// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which certificates a client accepts from a printer that speaks wss://.

#include "zytlstrust.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSslCertificate>

#include <algorithm>

struct ZyTlsTrust::Data : QSharedData {
    bool isRestricted = false;
    QList<QSslCertificate> authorities;
    QString fingerprint;
};

ZyTlsTrust::ZyTlsTrust() : d(new Data) { }
ZyTlsTrust::ZyTlsTrust(const ZyTlsTrust &other) = default;
ZyTlsTrust &ZyTlsTrust::operator=(const ZyTlsTrust &other) = default;
ZyTlsTrust::~ZyTlsTrust() = default;

QString ZyTlsTrust::useAuthorities(const QString &file)
{
    d->isRestricted = true;
    d->authorities.clear();
    if (file.isEmpty())
        return QStringLiteral("no file is named");
    QFile pem(file);
    if (!pem.open(QIODevice::ReadOnly))
        return pem.errorString();
    d->authorities = QSslCertificate::fromDevice(&pem, QSsl::Pem);
    return d->authorities.isEmpty() ? QStringLiteral("it holds no PEM certificate") : QString();
}

QList<QSslCertificate> ZyTlsTrust::authorities() const
{
    return d->authorities;
}

bool ZyTlsTrust::pin(const QString &fingerprint)
{
    d->isRestricted = true;
    d->authorities.clear();
    d->fingerprint = canonical(fingerprint);
    return !d->fingerprint.isEmpty();
}

QString ZyTlsTrust::fingerprint() const
{
    return d->fingerprint;
}

bool ZyTlsTrust::isRestricted() const
{
    return d->isRestricted;
}

QString ZyTlsTrust::fingerprintOf(const QSslCertificate &certificate)
{
    if (certificate.isNull())
        return {};
    const QByteArray digest = certificate.digest(QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.toHex(':')).toUpper();
}

QString ZyTlsTrust::canonical(const QString &fingerprint)
{
    QString digits = fingerprint.toUpper();
    digits.remove(QLatin1Char(':')).remove(QLatin1Char(' '));
    const auto isDigit = [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            || (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
    };
    if (digits.size() != 64 || !std::all_of(digits.cbegin(), digits.cend(), isDigit))
        return {};
    return QString::fromLatin1(QByteArray::fromHex(digits.toLatin1()).toHex(':')).toUpper();
}
