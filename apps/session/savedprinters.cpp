// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers by their address, and those that the user has given a name.

#include "savedprinters.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace zysession
{

namespace
{

constexpr int longestName = 64;
const QLatin1String printersGroup("printers");
const QLatin1String tokensGroup("tokens");

/// What a printer may have besides its address, each in a group of its own.
struct Extra {
    QLatin1String group;
    QString Printer::*value;
};
const Extra extras[] = {
    {tokensGroup, &Printer::token},
    {QLatin1String("authorities"), &Printer::authorities},
    {QLatin1String("fingerprints"), &Printer::fingerprint},
};

QString keyIn(QLatin1String group, const QString &name)
{
    return group + QLatin1Char('/') + name;
}

/// Whoever edits the file may forget the quotes: a comma makes a list then, which as a text would
/// be none, and for a printer without authorities the system's would do.
QString textOf(const QVariant &value)
{
    return value.toStringList().join(QLatin1Char(','));
}

QString settingsPath(const QString &file)
{
    if (!file.isEmpty())
        return file;
    QString named = qEnvironmentVariable("ZYSLICER_SETTINGS");
    if (!named.isEmpty())
        return named;
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zyWebsocket"),
                     QStringLiteral("zyslicer"))
        .fileName();
}

QStringList keysOf(QSettings &settings, QLatin1String group)
{
    settings.beginGroup(group);
    QStringList keys = settings.allKeys();
    settings.endGroup();
    return keys;
}

void keepToOwner(const QString &path)
{
    constexpr QFile::Permissions owners = QFile::ReadOwner | QFile::WriteOwner;
    constexpr QFile::Permissions others
        = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if (QFile::permissions(path) & others)
        QFile::setPermissions(path, owners);
}

/// So that a secret is never in a file that others may read, not even for a moment.
void prepareForSecrets(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile(path).open(QIODevice::Append); // made if it is not there
    keepToOwner(path);
}

} // namespace

QString Printer::label() const
{
    if (!name.isEmpty())
        return name;
    return announcedName.isEmpty() ? url.toString() : announcedName;
}

QString Printer::description() const
{
    const QString address = url.toString();
    return label() == address ? address : QStringLiteral("%1 (%2)").arg(label(), address);
}

bool Printer::isEncrypted() const
{
    return url.scheme() == QLatin1String("wss");
}

QString Printer::readTrust(ZyTlsTrust &trust) const
{
    if (!authorities.isEmpty()) {
        const QString fault = trust.useAuthorities(authorities);
        if (!fault.isEmpty())
            return QStringLiteral("%1: %2").arg(authorities, fault);
    }
    if (!fingerprint.isEmpty() && !trust.pin(fingerprint))
        return QStringLiteral("no SHA-256 fingerprint: %1").arg(fingerprint);
    if (trust.isRestricted() && !isEncrypted())
        return QStringLiteral("%1 has no certificate: only wss:// has").arg(url.toString());
    return {};
}

ZyTlsTrust Printer::trust() const
{
    ZyTlsTrust trust;
    readTrust(trust);
    return trust;
}

QUrl printerUrl(const QString &text)
{
    QString address = text.trimmed();
    if (!address.contains(QLatin1String("://")))
        address.prepend(QLatin1String("ws://"));
    const QUrl url(address, QUrl::StrictMode);
    const bool isWebSocket
        = url.scheme() == QLatin1String("ws") || url.scheme() == QLatin1String("wss");
    const bool isPrinter = url.isValid() && isWebSocket && !url.host().isEmpty() && url.port(1) > 0
        && url.userInfo().isEmpty();
    return isPrinter ? url : QUrl();
}

bool isPrinterName(const QString &text)
{
    // Neither '.' nor ':', so that no address is mistaken for a name.
    const auto isAllowed = [](QChar c) {
        return c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_');
    };
    return !text.isEmpty() && text.size() <= longestName
        && std::all_of(text.begin(), text.end(), isAllowed);
}

SavedPrinters::SavedPrinters(const QString &file) : m_file(settingsPath(file)) { }

SettingsFault SavedPrinters::read()
{
    m_printers.clear();
    const SettingsFault fault = checkSettingsFile(m_file);
    if (fault != SettingsFault::None)
        return fault;
    QSettings settings(m_file, QSettings::IniFormat);
    const QStringList names = keysOf(settings, printersGroup);
    for (const QString &name : names) {
        // A QUrl, as early versions saved it, converts to its text.
        const QString address = settings.value(keyIn(printersGroup, name)).toString();
        Printer printer{name, printerUrl(address)};
        for (const Extra &extra : extras)
            printer.*extra.value = textOf(settings.value(keyIn(extra.group, name)));
        m_printers.append(printer);
    }
    std::stable_sort(m_printers.begin(), m_printers.end(),
                     [](const Printer &left, const Printer &right) {
                         return left.name.compare(right.name, Qt::CaseInsensitive) < 0;
                     });
    if (!keysOf(settings, tokensGroup).isEmpty())
        keepToOwner(m_file);
    return SettingsFault::None;
}

Printer SavedPrinters::find(const QString &name) const
{
    const auto found = std::find_if(m_printers.begin(), m_printers.end(),
                                    [&](const Printer &each) { return each.name == name; });
    return found == m_printers.end() ? Printer() : *found;
}

Printer SavedPrinters::resolve(const QString &nameOrAddress) const
{
    const QString text = nameOrAddress.trimmed();
    return isPrinterName(text) ? find(text) : Printer{{}, printerUrl(text)};
}

SettingsFault SavedPrinters::save(const Printer &printer)
{
    return change([&](QSettings &settings) {
        settings.setValue(keyIn(printersGroup, printer.name), printer.url.toString());
        for (const Extra &extra : extras) {
            if ((printer.*extra.value).isEmpty())
                settings.remove(keyIn(extra.group, printer.name));
            else
                settings.setValue(keyIn(extra.group, printer.name), printer.*extra.value);
        }
    });
}

SettingsFault SavedPrinters::remove(const QString &name)
{
    return change([&](QSettings &settings) {
        settings.remove(keyIn(printersGroup, name));
        for (const Extra &extra : extras)
            settings.remove(keyIn(extra.group, name));
    });
}

SettingsFault SavedPrinters::change(const std::function<void(QSettings &)> &edit)
{
    const SettingsFault fault = checkSettingsFile(m_file);
    if (fault != SettingsFault::None)
        return fault;
    QSettings settings(m_file, QSettings::IniFormat);
    edit(settings);
    if (!keysOf(settings, tokensGroup).isEmpty())
        prepareForSecrets(m_file);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return SettingsFault::NotWritable;
    return read();
}

} // namespace zysession
