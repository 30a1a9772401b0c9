// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge: its connection to the broker, its printers, and which message goes to whom.

#include "bridge.h"

#include "homeassistant.h"
#include "metrics.h"
#include "mqtt/topics.h"

#include <QDir>
#include <QJsonArray>

#include <utility>

namespace zybridge
{

namespace
{

constexpr int metricsInterval = 1000; // ms
constexpr qint64 unchangedInterval = 5000; // ms, while the groups have nothing new
constexpr quint32 bridgeWillDelay = 3; // s, so that a short loss makes no other bridge step in
constexpr quint32 bridgeSession = 10; // s; a will is delayed no longer than the session lasts

MqttConnection::Session sessionOf(const QString &bridge)
{
    MqttConnection::Session session;
    session.clientId = QStringLiteral("zybridge/") + bridge;
    session.expiry = bridgeSession;
    session.willDelay = bridgeWillDelay;
    session.will.topic = topics::ofBridge(bridge, "availability");
    session.will.payload = "offline";
    session.will.isRetained = true;
    return session;
}

} // namespace

Bridge::Bridge(const Configuration &configuration, QObject *parent)
    : QObject(parent), m_configuration(configuration),
      m_broker(configuration.broker, sessionOf(configuration.name)),
      m_files(configuration.spool, configuration.stateDirectory + QLatin1String("/fetched")),
      m_peers(configuration.name),
      m_jobs(configuration.name, m_broker, m_stations, configuration.groups, m_peers, m_files,
             configuration.uploads),
      m_heir(configuration.broker, m_peers, configuration.groups.keys())
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(configuration.settling);
    m_metrics.setInterval(metricsInterval);
    connect(&m_broker, &MqttConnection::opened, this, &Bridge::onOpened);
    connect(&m_broker, &MqttConnection::lost, this, &Bridge::onLost);
    connect(&m_broker, &MqttConnection::failed, this, [this](const QString &why) {
        Q_EMIT said(QStringLiteral("the broker cannot be reached: %1; trying again").arg(why));
    });
    connect(&m_peers, &Peers::selfIsTwice, this, [this] {
        Q_EMIT said(
            QStringLiteral("another bridge has the name %1: stopping").arg(m_configuration.name));
        Q_EMIT nameTaken();
    });
    connect(&m_broker, &MqttConnection::received, this, &Bridge::onReceived);
    connect(&m_jobs, &JobDesk::said, this, &Bridge::said);
    connect(&m_jobs, &JobDesk::failed, this, &Bridge::ledgerFailed);
    connect(&m_heir, &SessionHeir::said, this, &Bridge::said);
    connect(&m_heir, &SessionHeir::received, this,
            [this](MqttConnection *connection, const Message &message) {
                m_jobs.take(*connection, message);
            });
    connect(&m_settle, &QTimer::timeout, this, &Bridge::takeJobs);
    connect(&m_metrics, &QTimer::timeout, this, [this] {
        if (groupMetrics() != m_groupMetrics || m_sinceMetrics.hasExpired(unchangedInterval))
            publishMetrics();
    });
    for (const char *filter : {"zy/+/command", "zy/+/send", "zy/+/availability", "zy/bridge/+/+"})
        m_broker.subscribe(QLatin1String(filter));
    for (const QString &group : configuration.groups.keys())
        m_broker.subscribe(topics::ofJob(group, QStringLiteral("+")));
}

Bridge::~Bridge() = default;

QString Bridge::start()
{
    for (const zysession::Printer &printer : m_configuration.printers)
        addStation(printer);
    QDir().mkdir(m_configuration.stateDirectory);
    QString fault = m_jobs.start(m_configuration.stateDirectory + QLatin1String("/jobs.sqlite"));
    if (!fault.isEmpty())
        return fault;
    lookForPrinters();
    m_broker.open();
    m_metrics.start();
    return {};
}

void Bridge::lookForPrinters()
{
    for (const zysession::Printer &printer : m_configuration.printers) {
        if (printer.announcedName.isEmpty() || m_browser)
            continue;
        m_browser.emplace();
        connect(&*m_browser, &zydiscovery::PrinterBrowser::changed, this, &Bridge::onFoundChanged);
    }
}

/// A printer that is not announced any more keeps its address, and may answer there.
void Bridge::onFoundChanged()
{
    const QVector<zydiscovery::FoundPrinter> found = m_browser->printers();
    for (const auto &each : m_stations) {
        PrinterBridge &printer = each.second->printer();
        const QString name = printer.printer().announcedName;
        const QUrl url = zydiscovery::printerNamed(name, found).url;
        if (!name.isEmpty() && !url.isEmpty())
            printer.moveTo(url);
    }
    const QString fault = m_browser->fault();
    if (std::exchange(m_browserFault, fault) != fault && !fault.isEmpty())
        Q_EMIT said(QStringLiteral("printers cannot be looked for: %1").arg(fault));
}

void Bridge::addStation(const zysession::Printer &printer)
{
    const Services services{m_configuration.broker, m_configuration.name, m_configuration.polling,
                            m_broker, m_files};
    auto station
        = std::make_unique<Station>(printer, m_configuration.groupsOf(printer.name), services);
    connect(&station->printer(), &PrinterBridge::onlineChanged, this,
            [this, each = &station->printer()] {
                Q_EMIT said(QStringLiteral("%1 is %2")
                                .arg(each->name(),
                                     each->isOnline() ? QStringLiteral("online")
                                                      : QStringLiteral("offline; trying again")));
            });
    connect(&station->connection(), &MqttConnection::received, this,
            [this, each = &station->connection()](const Message &message) {
                m_jobs.take(*each, message);
            });
    station->printer().start();
    m_stations[printer.name] = std::move(station);
}

void Bridge::onOpened()
{
    Q_EMIT said(QStringLiteral("connected to the broker %1:%2")
                    .arg(m_configuration.broker.host)
                    .arg(m_configuration.broker.port));
    Message message = sessionOf(m_configuration.name).will;
    message.payload = "online";
    m_broker.publish(message);
    m_jobs.publishAll();
    publishMetrics();
    if (m_configuration.announcesToHomeAssistant) {
        for (const auto &each : m_stations) {
            for (const Message &config : homeAssistantMessages(each.first))
                m_broker.publish(config);
        }
    }
    m_settle.start();
}

void Bridge::onLost(const QString &why)
{
    Q_EMIT said(QStringLiteral("the broker is lost: %1; trying again").arg(why));
    ++m_brokerLosses;
    takeNoJobs();
}

void Bridge::takeNoJobs()
{
    m_settle.stop();
    m_jobs.setActive(false);
    m_heir.setActive(false);
    // They cannot notice it themselves.
    for (const auto &each : m_stations)
        each.second->connection().close();
}

/// The other bridges have had the time to come back and to say which jobs are theirs.
void Bridge::takeJobs()
{
    for (const auto &each : m_stations)
        each.second->connection().open();
    m_jobs.setActive(true);
    m_heir.setActive(true);
}

void Bridge::onReceived(const Message &message)
{
    m_peers.take(message);
    const QStringList levels = message.topic.split(QLatin1Char('/'));
    if (levels.size() == 4 && levels[1] == QLatin1String("jobs")) {
        m_jobs.takeRecord(message);
        return;
    }
    const bool isCommand = levels.last() == QLatin1String("command");
    // A retained request would be done again at each connection.
    if (levels.size() != 3 || message.isRetained || levels[1] == QLatin1String("jobs")
        || !(isCommand || levels.last() == QLatin1String("send")))
        return;
    const auto station = m_stations.find(levels[1]);
    if (station == m_stations.end())
        answerUnknownPrinter(message, levels[1]);
    else if (isCommand)
        station->second->command(message);
    else
        station->second->send(message);
}

void Bridge::answerUnknownPrinter(const Message &message, const QString &printer)
{
    if (!m_peers.isPrinterKnown(printer) && m_peers.isLeader())
        respond(m_broker, message,
                failedAnswer(QStringLiteral("unknown-printer"),
                             QStringLiteral("no bridge has a printer %1").arg(printer)));
}

QJsonObject Bridge::groupMetrics() const
{
    QJsonObject groups;
    for (auto it = m_configuration.groups.cbegin(); it != m_configuration.groups.cend(); ++it)
        groups.insert(it.key(),
                      QJsonObject{{QStringLiteral("printers"), it.value().size()},
                                  {QStringLiteral("free"), m_jobs.freePrinters(it.key())},
                                  {QStringLiteral("waiting"), m_jobs.waitingJobs(it.key())}});
    return groups;
}

void Bridge::publishMetrics()
{
    m_groupMetrics = groupMetrics();
    m_sinceMetrics.start();
    QJsonArray names;
    int online = 0;
    for (const auto &each : m_stations) {
        names.append(each.first);
        online += each.second->printer().isOnline() ? 1 : 0;
    }
    QJsonObject metrics = processMetrics();
    metrics.insert(QStringLiteral("instance"), m_peers.instance());
    metrics.insert(QStringLiteral("printers"), names);
    metrics.insert(QStringLiteral("online"), online);
    metrics.insert(QStringLiteral("brokerLosses"), m_brokerLosses);
    metrics.insert(QStringLiteral("groups"), m_groupMetrics);
    metrics.insert(QStringLiteral("printsEnded"), m_jobs.printsEnded());
    metrics.insert(QStringLiteral("time"), now());
    Message message;
    message.topic = topics::ofBridge(m_configuration.name, "metrics");
    message.payload = toJson(metrics);
    message.isRetained = true;
    m_broker.publish(message);
}

} // namespace zybridge
