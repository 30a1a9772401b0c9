// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How a ZyFileSender ended, as values and as a sentence for people.

#include "zysendresult.h"

#include "sendresultdata.h"

namespace
{

/// "text", or "text (detail)".
QString withDetail(const QString &text, const QString &detail)
{
    return detail.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, detail);
}

/// Of the other faults the system knows no more than the fault's own words.
QString connectionDetail(const ZySendResult::Data &data)
{
    using Fault = ZySendResult::ConnectionFault;
    QString fingerprint = QStringLiteral("SHA-256 ") + data.refusedFingerprint;
    switch (data.connectionFault) {
    case Fault::Network:
    case Fault::Tls:
        return data.detail;
    case Fault::CertificateUntrusted:
        return data.detail + QStringLiteral(", ") + fingerprint;
    case Fault::CertificateChanged:
        return fingerprint;
    default:
        return {};
    }
}

} // namespace

ZySendResult::ZySendResult() : d(new Data) { }
ZySendResult::ZySendResult(const Data &data) : d(new Data(data)) { }
ZySendResult::ZySendResult(const ZySendResult &other) = default;
ZySendResult &ZySendResult::operator=(const ZySendResult &other) = default;
ZySendResult::~ZySendResult() = default;

ZySendResult::Ending ZySendResult::ending() const
{
    return d->ending;
}

int ZySendResult::checkState() const
{
    return d->checkState;
}

ZySendResult::ConnectionFault ZySendResult::connectionFault() const
{
    return d->connectionFault;
}

QString ZySendResult::refusedFingerprint() const
{
    return d->refusedFingerprint;
}

ZySendResult::FileFault ZySendResult::fileFault() const
{
    return d->fileFault;
}

ZySendResult::Interruption ZySendResult::interruption() const
{
    return d->interruption;
}

QString ZySendResult::storedName() const
{
    return d->storedName;
}

qint64 ZySendResult::bytes() const
{
    return d->bytes;
}

qint64 ZySendResult::total() const
{
    return d->total;
}

bool ZySendResult::isPartDeleted() const
{
    return d->isPartDeleted;
}

QString ZySendResult::detail() const
{
    return d->detail;
}

QString ZySendResult::text(ConnectionFault fault)
{
    switch (fault) {
    case ConnectionFault::BadAddress:
        return QStringLiteral("not a ws:// or wss:// address");
    case ConnectionFault::Refused:
        return QStringLiteral("connection refused");
    case ConnectionFault::UnknownHost:
        return QStringLiteral("unknown host");
    case ConnectionFault::TimedOut:
        return QStringLiteral("timed out");
    case ConnectionFault::Tls:
        return QStringLiteral("TLS failed");
    case ConnectionFault::NotAWebSocket:
        return QStringLiteral("not a WebSocket server");
    case ConnectionFault::Network:
        return QStringLiteral("network error");
    case ConnectionFault::CertificateUntrusted:
        return QStringLiteral("certificate not trusted");
    case ConnectionFault::CertificateChanged:
        return QStringLiteral("certificate is not the expected one");
    case ConnectionFault::None:
        break;
    }
    return {};
}

QString ZySendResult::text(FileFault fault)
{
    switch (fault) {
    case FileFault::Missing:
        return QStringLiteral("no such file");
    case FileFault::NotAFile:
        return QStringLiteral("not a regular file");
    case FileFault::Unreadable:
        return QStringLiteral("file not readable");
    case FileFault::Empty:
        return QStringLiteral("file is empty");
    case FileFault::Changed:
        return QStringLiteral("file changed while it was being sent");
    case FileFault::NameEmpty:
        return QStringLiteral("no file name");
    case FileFault::NameHasSeparator:
        return QStringLiteral("path separator in the file name");
    case FileFault::NameIsDirectory:
        return QStringLiteral("file name is that of a directory");
    case FileFault::NameHasControlCharacter:
        return QStringLiteral("control character in the file name");
    case FileFault::NameReserved:
        return QStringLiteral("file name reserved by the printer");
    case FileFault::NameTooLong:
        return QStringLiteral("file name longer than 255 bytes");
    case FileFault::None:
        break;
    }
    return {};
}

QString ZySendResult::text(Interruption why)
{
    switch (why) {
    case Interruption::ConnectFailed:
        return QStringLiteral("no connection");
    case Interruption::ConnectionLost:
        return QStringLiteral("connection lost");
    case Interruption::Stalled:
        return QStringLiteral("no acknowledgement in time");
    case Interruption::NoVerdict:
        return QStringLiteral("no check result in time");
    case Interruption::StillReceiving:
        return QStringLiteral("the printer is still receiving");
    case Interruption::None:
        break;
    }
    return {};
}

QString ZySendResult::sentence() const
{
    QString pattern;
    QString reason;
    switch (d->ending) {
    case Ending::Sent:
        pattern = d->checkState == 1 ? QStringLiteral("%1 is on %2 and passed its check")
                                     : QStringLiteral("%1 is on %2");
        break;
    case Ending::CheckFailed:
        pattern = QStringLiteral("%1 is on %2, which finds it no valid model");
        reason = QStringLiteral("check state %1").arg(d->checkState);
        break;
    case Ending::BusyReceiving:
        pattern = QStringLiteral("%1 was refused: %2 is receiving a file");
        break;
    case Ending::BusyChecking:
        pattern = QStringLiteral("%1 was refused: %2 is checking a file to print");
        break;
    case Ending::Unwilling:
        pattern = QStringLiteral("%1 was refused: %2 takes no files now");
        break;
    case Ending::TokenRejected:
        pattern = QStringLiteral("%1 was refused: %2 does not accept the access token");
        break;
    case Ending::PrinterStorage:
        pattern = QStringLiteral("%1 was not stored by %2: its storage failed or is full");
        break;
    case Ending::PrinterFault:
        pattern = QStringLiteral("%1 was not sent: %2 breaks the protocol");
        reason = d->detail;
        break;
    case Ending::LocalFile:
        pattern = QStringLiteral("%1 was not sent to %2");
        reason = withDetail(text(d->fileFault), d->detail);
        break;
    case Ending::NoConnection:
        pattern = QStringLiteral("%1 was not sent: no connection to %2");
        reason = withDetail(text(d->connectionFault), connectionDetail(*d));
        break;
    case Ending::GaveUp:
        pattern = QStringLiteral("%1 was not sent to %2, which keeps what it holds");
        reason = text(d->interruption);
        break;
    case Ending::Cancelled:
        pattern = d->isPartDeleted ? QStringLiteral("%1 was cancelled, %2 has deleted its part")
                                   : QStringLiteral("%1 was cancelled, %2 keeps what it holds");
        break;
    case Ending::LeftForLater:
        pattern = d->bytes < d->total ? QStringLiteral("%1 was left, %2 keeps what it holds")
                                      : QStringLiteral("%1 was left while %2 checks it");
        break;
    }
    const QString sentence
        = pattern.arg(d->name.isEmpty() ? QStringLiteral("the file") : d->name,
                      d->printer.isEmpty() ? QStringLiteral("the printer") : d->printer);
    return reason.isEmpty() ? sentence : sentence + QStringLiteral(": ") + reason;
}
