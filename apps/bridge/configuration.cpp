// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the configuration file says, and what is wrong with it.

#include "configuration.h"

#include "foundprinter.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QSysInfo>
#include <QUrl>

#include <algorithm>

namespace zybridge
{

namespace
{

constexpr quint16 plainPort = 1883;
constexpr quint16 tlsPort = 8883;

/// Reads values and remembers what was wrong with them.
class Reader
{
public:
    explicit Reader(const QString &file) : m_settings(file, QSettings::IniFormat)
    {
#if QT_VERSION_MAJOR < 6 // which always does
        m_settings.setIniCodec("UTF-8");
        // Sections are parsed once for all objects that read the file, by the first that asks.
        m_settings.allKeys();
#endif
    }

    QString text(const QString &key, const QString &otherwise = {})
    {
        m_known.append(key);
        return m_settings.value(key, otherwise).toString();
    }

    int number(const QString &key, int otherwise, int least, int most)
    {
        const QString given = text(key, QString::number(otherwise));
        bool isNumber = false;
        const int value = given.toInt(&isNumber);
        if (isNumber && value >= least && value <= most)
            return value;
        fault(QStringLiteral("%1 is no number from %2 to %3").arg(key).arg(least).arg(most), given,
              QStringLiteral("leave it out for %1").arg(otherwise));
        return otherwise;
    }

    bool yes(const QString &key)
    {
        const QString given = text(key, QStringLiteral("no"));
        const bool isYes = given == QLatin1String("yes") || given == QLatin1String("true");
        if (!isYes && given != QLatin1String("no") && given != QLatin1String("false"))
            fault(QStringLiteral("%1 is neither yes nor no").arg(key), given,
                  QStringLiteral("write yes or no"));
        return isYes;
    }

    /// The path of something that has to be there; empty when none is given.
    QString path(const QString &key, bool isDirectory)
    {
        const QString given = text(key);
        const QFileInfo info(given);
        if (!given.isEmpty() && !(isDirectory ? info.isDir() : info.isFile() && info.isReadable()))
            fault(QStringLiteral("%1 is no readable %2")
                      .arg(key, isDirectory ? QStringLiteral("directory") : QStringLiteral("file")),
                  given, QStringLiteral("check the path and its permissions"));
        return given.isEmpty() ? given : info.absoluteFilePath();
    }

    /// The path of a directory that is there, or in one that is; empty when none is given.
    QString directoryToBe(const QString &key)
    {
        const QFileInfo info(text(key));
        const bool mayBeMade = !info.exists() && QFileInfo(info.absolutePath()).isDir();
        return mayBeMade && !info.filePath().isEmpty() ? info.absoluteFilePath() : path(key, true);
    }

    QString file() const
    {
        return m_settings.fileName();
    }

    QStringList keysIn(const QString &section)
    {
        m_settings.beginGroup(section);
        QStringList keys = m_settings.allKeys();
        m_settings.endGroup();
        return keys;
    }

    QStringList list(const QString &key)
    {
        m_known.append(key);
        return m_settings.value(key).toStringList();
    }

    /// Whatever was not asked for, is probably misspelt. A key of @p sections is the name of one of
    /// the printers.
    void checkForUnknownKeys(const QStringList &sections)
    {
        for (const QString &key : m_settings.allKeys()) {
            const QString name = key.section(QLatin1Char('/'), 1);
            const bool isPrinter = sections.contains(key.section(QLatin1Char('/'), 0, 0))
                && m_settings.contains(QStringLiteral("printers/") + name);
            if (!m_known.contains(key) && !isPrinter)
                fault(QStringLiteral("unknown key"), key, QStringLiteral("see zybridge(1)"));
        }
    }

    void fault(const QString &what, const QString &value, const QString &remedy)
    {
        m_faults.append(QStringLiteral("%1: %2; %3").arg(what, value, remedy));
    }

    const QStringList &faults() const
    {
        return m_faults;
    }

private:
    QSettings m_settings;
    QStringList m_known;
    QStringList m_faults;
};

/// Whether QSettings reads @p value, as it stands in the file, as it looks. Outside of quotes it
/// makes lists at commas, drops what follows a semicolon, and drops quotes and backslashes.
bool isPlain(const QString &value)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^([^,;"\\]*|"([^"\\]|\\["\\x])*")$)"));
    return pattern.match(value.trimmed()).hasMatch();
}

void checkQuotes(Reader &reader)
{
    QFile file(reader.file());
    if (!file.open(QIODevice::ReadOnly))
        return;
    QString section;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('[')))
            section = line.mid(1, line.size() - 2);
        if (line.startsWith(QLatin1Char('[')) || line.startsWith(QLatin1Char(';')))
            continue;
        const QString key = line.section(QLatin1Char('='), 0, 0).trimmed();
        const QString value = line.section(QLatin1Char('='), 1);
        const QStringList values = section == QLatin1String("groups")
            ? value.split(QLatin1Char(','))
            : QStringList(value);
        // The value is not shown: it may be a secret.
        if (!std::all_of(values.begin(), values.end(), isPlain))
            reader.fault(QStringLiteral("a value in %1 needs quotes").arg(reader.file()),
                         QStringLiteral("%1/%2").arg(section, key),
                         QStringLiteral(R"(write %1="…", with \ before each " and \)").arg(key));
    }
}

BrokerSettings readBroker(Reader &reader)
{
    const QString given
        = reader.text(QStringLiteral("broker/url"), QStringLiteral("mqtt://localhost"));
    const QUrl url(given, QUrl::StrictMode);
    BrokerSettings broker;
    broker.isSecure = url.scheme() == QLatin1String("mqtts");
    if (given.contains(QLatin1Char('@')))
        reader.fault(QStringLiteral("broker/url in %1 names a user").arg(reader.file()),
                     given.section(QLatin1Char('@'), -1),
                     QStringLiteral("write broker/user and broker/password"));
    else if (url.host().isEmpty() || !(broker.isSecure || url.scheme() == QLatin1String("mqtt")))
        reader.fault(QStringLiteral("broker/url is no address of a broker"), given,
                     QStringLiteral("write mqtt://host:port or mqtts://host:port"));
    broker.host = url.host();
    broker.port = quint16(url.port(broker.isSecure ? tlsPort : plainPort));
    broker.user = reader.text(QStringLiteral("broker/user"));
    broker.password = reader.text(QStringLiteral("broker/password"));
    broker.caFile = reader.path(QStringLiteral("broker/ca"), false);
    broker.certFile = reader.path(QStringLiteral("broker/certificate"), false);
    broker.keyFile = reader.path(QStringLiteral("broker/key"), false);
    if (broker.certFile.isEmpty() != broker.keyFile.isEmpty())
        reader.fault(QStringLiteral("certificate and key belong together"), given,
                     QStringLiteral("give broker/certificate and broker/key, or neither"));
    return broker;
}

bool isReserved(const QString &name)
{
    return name == QLatin1String("jobs") || name == QLatin1String("bridge");
}

/// "dnssd:NAME" in place of an address, which a book of saved printers has not.
void readAnnouncedName(Reader &reader, zysession::Printer &printer)
{
    const QString address = reader.text(QStringLiteral("printers/") + printer.name);
    printer.announcedName = zydiscovery::nameInAddress(address);
    if (!printer.announcedName.isNull())
        printer.url.clear();
}

/// Empty, or what is wrong with the certificates that @p printer may show.
QString trustFault(zysession::Printer printer)
{
    if (!printer.announcedName.isEmpty()) // it may yet be found at such an address
        printer.url = QUrl(QStringLiteral("wss://localhost:1"));
    ZyTlsTrust trust;
    return printer.readTrust(trust);
}

void addPrinters(Reader &reader, QVector<zysession::Printer> &printers, const QString &file)
{
    zysession::SavedPrinters book(file);
    if (book.read() != zysession::SettingsFault::None)
        reader.fault(QStringLiteral("no readable settings"), file,
                     QStringLiteral("give a file with a section [printers]"));
    for (zysession::Printer printer : book.printers()) {
        if (book.file() == reader.file())
            readAnnouncedName(reader, printer);
        const bool isTwice
            = std::any_of(printers.begin(), printers.end(), [&](const zysession::Printer &each) {
                  return each.name == printer.name;
              });
        if (isTwice)
            continue; // the configuration's own come first
        if (!zysession::isPrinterName(printer.name) || isReserved(printer.name))
            reader.fault(
                QStringLiteral("no possible name of a printer"), printer.name,
                QStringLiteral("use letters, digits, '-' and '_', neither jobs nor bridge"));
        else if (printer.url.isEmpty() && printer.announcedName.isEmpty())
            reader.fault(QStringLiteral("printer without an address"), printer.name,
                         QStringLiteral("write name=ws://host:port"));
        else if (const QString fault = trustFault(printer); !fault.isEmpty())
            reader.fault(QStringLiteral("certificate of %1").arg(printer.name), fault,
                         QStringLiteral("check the sections [authorities] and [fingerprints]"));
        else
            printers.append(printer);
    }
}

QMap<QString, QStringList> readGroups(Reader &reader, const QVector<zysession::Printer> &printers)
{
    QMap<QString, QStringList> groups;
    for (const QString &group : reader.keysIn(QStringLiteral("groups"))) {
        if (!zysession::isPrinterName(group))
            reader.fault(QStringLiteral("no possible name of a group"), group,
                         QStringLiteral("use letters, digits, '-' and '_'"));
        for (const QString &entry : reader.list(QStringLiteral("groups/") + group)) {
            const QString member = entry.trimmed();
            const bool isKnown
                = std::any_of(printers.begin(), printers.end(),
                              [&](const zysession::Printer &each) { return each.name == member; });
            if (isKnown)
                groups[group].append(member);
            else
                reader.fault(QStringLiteral("group %1 names an unknown printer").arg(group), member,
                             QStringLiteral("add it to the section [printers]"));
        }
    }
    return groups;
}

} // namespace

QStringList Configuration::groupsOf(const QString &printer) const
{
    QStringList found;
    for (auto it = groups.cbegin(); it != groups.cend(); ++it) {
        if (it.value().contains(printer))
            found.append(it.key());
    }
    return found;
}

QStringList Configuration::read(const QString &file)
{
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable()
        || zysession::checkSettingsFile(file) != zysession::SettingsFault::None)
        return {QStringLiteral("no readable configuration file: %1; see zybridge(1)").arg(file)};
    Reader reader(file);
    checkQuotes(reader);
    name = reader.text(QStringLiteral("bridge/name"), QSysInfo::machineHostName());
    if (!zysession::isPrinterName(name))
        reader.fault(QStringLiteral("no possible name of a bridge"), name,
                     QStringLiteral("use letters, digits, '-' and '_'"));
    spool = reader.path(QStringLiteral("bridge/spool"), true);
    stateDirectory = reader.directoryToBe(QStringLiteral("bridge/state"));
    if (stateDirectory.isEmpty())
        reader.fault(QStringLiteral("bridge/state is missing"), file,
                     QStringLiteral("name a directory of the bridge's own"));
    polling = reader.number(QStringLiteral("bridge/poll"), polling, 50, 60000);
    settling = reader.number(QStringLiteral("bridge/settle"), settling, 0, 60000);
    uploads = reader.number(QStringLiteral("bridge/uploads"), uploads, 1, 100);
    announcesToHomeAssistant = reader.yes(QStringLiteral("bridge/homeassistant"));
    broker = readBroker(reader);
    addPrinters(reader, printers, file);
    const QString book = reader.path(QStringLiteral("bridge/book"), false);
    if (!book.isEmpty())
        addPrinters(reader, printers, book);
    if (printers.isEmpty())
        reader.fault(QStringLiteral("no printers"), file,
                     QStringLiteral("name them in the section [printers]"));
    groups = readGroups(reader, printers);
    reader.checkForUnknownKeys({QStringLiteral("printers"), QStringLiteral("tokens"),
                                QStringLiteral("authorities"), QStringLiteral("fingerprints")});
    return reader.faults();
}

} // namespace zybridge
