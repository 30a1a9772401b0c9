// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Judges a request by the server's options, before its handler or the host sees it.

#include "requestguard.h"

#include "filetransfer.h"
#include "vocabulary.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

namespace zyws
{

namespace
{

struct Rule {
    QLatin1String command;
    const char *subject;
    bool needsName;
};

/// The commands that are judged. CANCEL_FILE and VERSION_CHECK carry no token, and do no harm.
constexpr Rule rules[] = {
    {commands::startFile, "a transfer", true},       {commands::startPrint, "a print", true},
    {commands::printPause, "a pause", false},        {commands::printStop, "a stop", false},
    {commands::getPrintStatus, "the status", false}, {commands::printParaSet, "parameters", false},
};

QByteArray digestOf(const QString &text)
{
    return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
}

/// In a time that tells nothing about either text: their digests are of one length, and all bytes
/// of them are looked at.
bool isSame(const QString &one, const QString &other)
{
    const QByteArray left = digestOf(one);
    const QByteArray right = digestOf(other);
    int difference = 0;
    for (int i = 0; i < left.size(); ++i)
        difference |= left.at(i) ^ right.at(i);
    return difference == 0;
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isHexDigit(QChar character)
{
    const ushort lower = character.toLower().unicode();
    return isDigit(character) || (lower >= 'a' && lower <= 'f');
}

bool isSize(const QJsonValue &value, qint64 largest)
{
    const QString text = value.toString();
    bool isNumber = false;
    const qint64 size = text.toLongLong(&isNumber, 10);
    return isNumber && std::all_of(text.begin(), text.end(), isDigit) && size > 0
        && size <= largest;
}

bool isDigest(const QJsonValue &value)
{
    constexpr int hexDigits = 64;
    const QString text = value.toString();
    return text.size() == hexDigits && std::all_of(text.begin(), text.end(), isHexDigit);
}

const char *fileFault(const QJsonObject &request, const ZyServerOptions &options)
{
    if (options.maxFileSize() > 0 && !isSize(request.value(keys::size), options.maxFileSize()))
        return "its size is not accepted";
    if (options.checksDigest() && request.contains(keys::sha256)
        && !isDigest(request.value(keys::sha256)))
        return "its SHA-256 digest is none";
    return nullptr;
}

} // namespace

bool isNameAccepted(const QString &name, const ZyServerOptions &options, const QString &directory)
{
    if (!options.needsPlainNames())
        return true;
    if (nameFault(name) != NameFault::None)
        return false;
    const QFileInfo there(directory + QLatin1Char('/') + name);
    if (there.isSymLink() || there.isDir())
        return false;
    const auto filter = options.nameFilter();
    return !filter || filter(name);
}

std::optional<RequestFault> requestFault(const QJsonObject &request, const ZyServerOptions &options,
                                         const QString &directory)
{
    const QString word = request.value(keys::cmd).toString();
    const auto rule = std::find_if(std::begin(rules), std::end(rules),
                                   [&word](const Rule &each) { return each.command == word; });
    if (rule == std::end(rules))
        return std::nullopt;
    const auto fault = [rule](bool isToken, const char *why) {
        return RequestFault{
            isToken, QLatin1String(rule->subject) + QLatin1String(": ") + QLatin1String(why)};
    };
    if (!options.token().isEmpty()
        && !isSame(request.value(keys::token).toString(), options.token()))
        return fault(true, "wrong token");
    if (rule->needsName
        && !isNameAccepted(request.value(keys::filename).toString(), options, directory))
        return fault(false, "its name is not accepted");
    if (word == commands::startFile) {
        if (const char *why = fileFault(request, options))
            return fault(false, why);
    }
    return std::nullopt;
}

} // namespace zyws
