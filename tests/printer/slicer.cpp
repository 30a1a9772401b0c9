// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A slicer made of the real client: one call per thing that a person does.

#include "slicer.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace
{

constexpr int patience = 30000; // ms

} // namespace

bool Slicer::connectTo(const QUrl &url)
{
    m_replies.clear();
    m_client = std::make_unique<ZySslEchoClient>(url);
    QObject::connect(m_client.get(), &ZySslEchoClient::jsonMessageReceived, m_client.get(),
                     [this](const QJsonObject &reply) { m_replies.append(reply); });
    QSignalSpy connected(m_client.get(), &ZySslEchoClient::connected);
    return connected.wait(patience);
}

int Slicer::send(const QString &path, const QString &name)
{
    QSignalSpy finished(m_client.get(), &ZySslEchoClient::finish);
    QSignalSpy refused(m_client.get(), &ZySslEchoClient::transError);
    m_client->sendFile(path, name);
    if (!QTest::qWaitFor([&] { return finished.size() + refused.size() > 0; }, patience))
        return -1;
    return finished.isEmpty() ? -1000 - refused.at(0).at(0).toInt() : finished.at(0).at(1).toInt();
}

QVector<int> Slicer::print(const QString &name, const QString &token)
{
    constexpr int checking = 2;
    QVector<int> codes;
    const auto connection = QObject::connect(m_client.get(), &ZySslEchoClient::printErrorCode,
                                             [&codes](int code) { codes.append(code); });
    m_client->printStartCmd(name, token);
    const bool isAnswered
        = QTest::qWaitFor([&] { return !codes.isEmpty() && codes.last() != checking; }, patience);
    QObject::disconnect(connection);
    return isAnswered ? codes : QVector<int>{-1};
}

/// Sends by @p send; what was replied before does not count.
QJsonObject Slicer::reply(const QString &command, const std::function<void()> &send)
{
    m_replies.clear();
    send();
    const auto isIt = [&command](const QJsonObject &reply) {
        return reply.value(QLatin1String("cmd")).toString() == command;
    };
    const auto find = [&] { return std::find_if(m_replies.begin(), m_replies.end(), isIt); };
    if (!QTest::qWaitFor([&] { return find() != m_replies.end(); }, patience))
        return {};
    return *find();
}

QString Slicer::pause(const QString &token)
{
    return reply(QStringLiteral("PRINT_PAUSE"), [&] { m_client->printPauseCmd(token); })
        .value(QLatin1String("status"))
        .toString();
}

QString Slicer::stop(const QString &token)
{
    return reply(QStringLiteral("PRINT_STOP"), [&] { m_client->printStopCmd(token); })
        .value(QLatin1String("status"))
        .toString();
}

QJsonObject Slicer::status(const QString &token)
{
    return reply(QStringLiteral("GET_PRINT_STATUS"), [&] { m_client->getPrintStatusCmd(token); });
}

QString Slicer::printStatus(const QString &token)
{
    return status(token).value(QLatin1String("printStatus")).toString();
}

bool Slicer::reaches(const QString &word, const QString &token)
{
    return QTest::qWaitFor([&] { return printStatus(token) == word; }, patience);
}

QJsonObject Slicer::ask(const QJsonObject &request)
{
    return reply(request.value(QLatin1String("cmd")).toString(),
                 [&] { m_client->sendJsonMessage(request); });
}

QJsonObject Slicer::setParameters(const QJsonObject &parameters, const QString &token)
{
    return reply(QStringLiteral("PRINT_PARA_SET"),
                 [&] { m_client->setPrintParaCmd(parameters, token); });
}
