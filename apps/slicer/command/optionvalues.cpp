// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the values of the options to a request; what no single option can check is checked here.

#include "optionvalues.h"

#include "validators.h"

#include <QFile>
#include <QFileInfo>

#include <zytlstrust.h>

#include <algorithm>

namespace zyslicer
{

namespace
{

QStringList toTexts(const std::vector<std::string> &values)
{
    QStringList texts;
    for (const std::string &value : values)
        texts.append(zyapp::fromArgument(value));
    return texts;
}

int milliseconds(double seconds)
{
    return static_cast<int>(seconds * 1000);
}

/// Text that cannot be turned back would name another file, or none.
void requireText(const std::string &argument)
{
    if (QFile::encodeName(zyapp::fromArgument(argument)).toStdString() != argument)
        throw CLI::ValidationError("file name '" + argument
                                   + "' is not valid in this locale's encoding, such as UTF-8");
}

/// Null when the option is not given, and never null when it is.
QString given(const CLI::App &command, const std::string &option, const std::string &value)
{
    const CLI::Option *found = command.get_option_no_throw(option);
    if (found == nullptr || found->count() == 0)
        return {};
    return QLatin1String("") + zyapp::fromArgument(value);
}

zysession::Parameters toParameters(const std::vector<std::string> &assignments)
{
    zysession::Parameters parameters;
    const QStringList texts = toTexts(assignments);
    for (const QString &assignment : texts) {
        const QString key = assignment.section(QLatin1Char('='), 0, 0);
        if (!assignment.contains(QLatin1Char('=')))
            throw CLI::ValidationError("'" + assignment.toStdString()
                                       + "' is no assignment of the form key=value");
        if (!zysession::parameterKeys().contains(key))
            throw CLI::ValidationError("unknown parameter '" + key.toStdString() + "', known are "
                                       + parameterNames());
        if (parameters.contains(key))
            throw CLI::ValidationError("parameter '" + key.toStdString() + "' is given twice");
        parameters.insert(key, assignment.section(QLatin1Char('='), 1));
    }
    return parameters;
}

} // namespace

std::string parameterNames()
{
    return zysession::parameterKeys().join(QLatin1String(", ")).toStdString();
}

void OptionValues::fill(Request &request) const
{
    const CLI::App *command = app;
    if (app->get_subcommands().empty())
        throw CLI::RequiredError("A command");
    while (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    request.command = commands.at(command);
    request.printers = toTexts(printers);
    request.isAll = isAll;
    request.members = toTexts(members);
    request.token = given(*command, "--token", token);
    request.isPrinting = isPrinting;
    request.isWatching = isWatching;
    request.isWaiting = isWaiting;
    request.isKeeping = isKeeping;
    request.parameters = toParameters(parameters);
    request.savedName = zyapp::fromArgument(savedName);
    request.savedUrl = zyapp::fromArgument(savedUrl);
    request.settingsFile = zyapp::fromArgument(settingsFile);
    request.isJson = isJson;
    request.isQuiet = isQuiet;
    request.isVerbose = isVerbose;
    fillTrust(*command, request);
    fillLimits(request);
    fillFiles(*command, request);
}

void OptionValues::fillTrust(const CLI::App &command, Request &request) const
{
    request.authorities = given(command, "--ca", authorities);
    request.fingerprint = given(command, "--fingerprint", fingerprint);
    const bool mayForget = request.command == Request::Command::PrintersAdd;
    if (!request.authorities.isNull() && !(mayForget && authorities.empty())) {
        const QString fault = ZyTlsTrust().useAuthorities(request.authorities);
        if (!fault.isEmpty())
            throw CLI::ValidationError("--ca '" + authorities + "': " + fault.toStdString());
        // It may be saved, and used from another directory.
        request.authorities = QFileInfo(request.authorities).absoluteFilePath();
    }
    if (!request.fingerprint.isNull() && !(mayForget && fingerprint.empty())) {
        if (ZyTlsTrust::canonical(request.fingerprint).isEmpty())
            throw CLI::ValidationError("--fingerprint '" + fingerprint
                                       + "' is no SHA-256: 64 hex digits, with or without colons");
        request.fingerprint = ZyTlsTrust::canonical(request.fingerprint);
    }
}

void OptionValues::fillLimits(Request &request) const
{
    request.limits = {milliseconds(connecting), milliseconds(reply), milliseconds(check)};
    request.sending.setConnectTimeout(milliseconds(connecting));
    request.sending.setStallTimeout(milliseconds(stall));
    request.sending.setVerdictTimeout(milliseconds(check));
    request.sending.setCancelTimeout(milliseconds(std::min(stall, reply)));
    request.sending.setRetries(retries);
    request.sending.setFirstPause(milliseconds(backOff));
    request.sending.setRateLimit(rateOf(rateLimit));
    if (compressionLevel)
        request.sending.setCompressionLevel(*compressionLevel);
    request.sending.setSendsDigest(!isWithoutDigest);
    request.pollInterval = milliseconds(interval);
    request.searchTime = milliseconds(searching);
}

void OptionValues::fillFiles(const CLI::App &command, Request &request) const
{
    requireText(asName);
    requireText(printName);
    request.printName = zyapp::fromArgument(printName);
    if (request.command == Request::Command::Print && request.printName.isEmpty())
        throw CLI::ValidationError("NAME is empty");
    if (request.command != Request::Command::Send)
        return;
    const bool isNamed = command.count("--as") > 0;
    if (files.size() > 1 && (isNamed || isPrinting))
        throw CLI::ValidationError(std::string(isNamed ? "--as" : "--print")
                                   + " takes a single file");
    for (const std::string &file : files) {
        requireText(file);
        const QString path = zyapp::fromArgument(file);
        request.files.append(
            {path, isNamed ? zyapp::fromArgument(asName) : QFileInfo(path).fileName()});
    }
}

} // namespace zyslicer
