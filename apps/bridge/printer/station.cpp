// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Everything that belongs to one printer of the bridge, and the requests to it.

#include "station.h"

#include "mqtt/topics.h"
#include "transfer.h"

namespace zybridge
{

namespace
{

using Command = PrinterBridge::Command;

constexpr quint32 sessionExpiry = 7 * 24 * 3600; // s

MqttConnection::Session sessionWithWill(const QString &bridge, const QString &printer)
{
    MqttConnection::Session session = Station::sessionOf(Station::clientId(bridge, printer));
    session.will = PrinterTopics::will(printer);
    return session;
}

/// The fault of the parameters; empty when they can be sent.
QString readParameters(const QJsonObject &wanted, zysession::Parameters &parameters)
{
    if (wanted.isEmpty())
        return QStringLiteral("\"parameters\" names none");
    RequestKeys keys;
    for (const QString &key : zysession::parameterKeys())
        keys.insert(key, QJsonValue::Double);
    for (auto it = wanted.begin(); it != wanted.end(); ++it)
        parameters.insert(it.key(), QString::number(it.value().toDouble(), 'g', 12));
    return keyFault(wanted, keys);
}

/// The fault of the request; empty when @p command says what is wanted.
Failure readCommand(const QJsonObject &request, Command &command)
{
    const QString malformed = QStringLiteral("malformed");
    const QString keysFault = keyFault(request,
                                       {{QStringLiteral("command"), QJsonValue::String},
                                        {QStringLiteral("file"), QJsonValue::String},
                                        {QStringLiteral("parameters"), QJsonValue::Object}});
    if (!keysFault.isEmpty())
        return {malformed, keysFault};
    const QString word = request.value(QLatin1String("command")).toString();
    if (word == QLatin1String("print")) {
        command.kind = Command::Kind::Print;
        command.file = request.value(QLatin1String("file")).toString();
        if (command.file.isEmpty())
            return {malformed, QStringLiteral("\"file\" is missing")};
    } else if (word == QLatin1String("pause")) {
        command.kind = Command::Kind::Pause;
    } else if (word == QLatin1String("stop")) {
        command.kind = Command::Kind::Stop;
    } else if (word == QLatin1String("set")) {
        command.kind = Command::Kind::Set;
        const QString fault = readParameters(request.value(QLatin1String("parameters")).toObject(),
                                             command.parameters);
        if (!fault.isEmpty())
            return {malformed, fault};
    } else {
        return {QStringLiteral("unknown-command"),
                QStringLiteral("\"command\" is none of print, pause, stop, set")};
    }
    return {};
}

} // namespace

Station::Station(const zysession::Printer &printer, const QStringList &groups,
                 const Services &services, QObject *parent)
    : QObject(parent), m_services(services), m_printer(printer, services.polling),
      m_connection(services.settings, sessionWithWill(services.bridge, printer.name)),
      m_topics(m_printer, services.broker, m_connection)
{
    for (const QString &group : groups)
        m_connection.subscribe(topics::sharedGroup(group));
}

QString Station::clientId(const QString &bridge, const QString &printer)
{
    return QStringLiteral("zybridge/%1/%2").arg(bridge, printer);
}

MqttConnection::Session Station::sessionOf(const QString &clientId)
{
    MqttConnection::Session session;
    session.clientId = clientId;
    session.holdsMessages = true;
    session.expiry = sessionExpiry;
    return session;
}

void Station::command(const Message &message)
{
    Failure failure;
    const auto request = requestObject(message.payload, failure.word, failure.text);
    Command command;
    if (request)
        failure = readCommand(*request, command);
    if (!failure.isNone()) {
        answer(message, failure);
        return;
    }
    m_printer.ask(command, [this, message](const PrinterBridge::Result &result) {
        answer(message, failureOf(result));
    });
}

void Station::send(const Message &message)
{
    Failure failure;
    const auto request = requestObject(message.payload, failure.word, failure.text);
    FileRequest file;
    if (request) {
        const QString fault = file.read(*request, {{QStringLiteral("print"), QJsonValue::Bool}});
        if (!fault.isEmpty())
            failure = {QStringLiteral("malformed"), fault};
    }
    if (!failure.isNone()) {
        answer(message, failure);
        return;
    }
    const bool isToPrint = request->value(QLatin1String("print")).toBool();
    m_services.files.provide(file,
                             [this, file, isToPrint, message](const FileStore::Answer &found) {
                                 if (found.path.isEmpty())
                                     answer(message, {found.error, found.text});
                                 else
                                     sendFile(found.path, file, isToPrint, message);
                             });
}

void Station::sendFile(const QString &path, const FileRequest &file, bool isToPrint,
                       const Message &message)
{
    auto *transfer = new Transfer(m_printer.printer(), path, file.name, m_topics, this);
    connect(transfer, &Transfer::ended, this,
            [this, transfer, isToPrint, message](const Failure &failure, const QString &name) {
                transfer->deleteLater();
                if (failure.isNone() && isToPrint)
                    print(name, message);
                else
                    answer(message, failure, {{QStringLiteral("file"), name}});
            });
    transfer->start();
}

void Station::print(const QString &name, const Message &message)
{
    m_printer.ask({Command::Kind::Print, name, {}},
                  [this, name, message](const PrinterBridge::Result &result) {
                      answer(message, failureOf(result), {{QStringLiteral("file"), name}});
                  });
}

void Station::answer(const Message &message, const Failure &failure, QJsonObject details)
{
    if (!failure.isNone()) {
        details = failedAnswer(failure.word, failure.text);
        m_topics.publishEvent(QStringLiteral("refused"), details);
    } else {
        details.insert(QStringLiteral("ok"), true);
    }
    details.insert(QStringLiteral("printer"), m_printer.name());
    respond(m_services.broker, message, details);
}

} // namespace zybridge
