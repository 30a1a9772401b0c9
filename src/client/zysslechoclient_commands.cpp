// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command builders and the one routine that sends their messages.

#include "envelope.h"
#include "heldsocket.h"
#include "vocabulary.h"
#include "zysslechoclient.h"

#include <utility>

namespace commands = zyws::commands;
namespace keys = zyws::keys;

namespace
{

QJsonObject tokenCommand(QLatin1String command, const QString &token)
{
    return {{keys::token, token}, {keys::cmd, command}};
}

} // namespace

void ZySslEchoClient::versionCheckCmd()
{
    sendJsonMessage({{keys::cmd, commands::versionCheck}});
}

void ZySslEchoClient::printStartCmd(QString filename, QString token)
{
    QJsonObject request = tokenCommand(commands::startPrint, token);
    request.insert(keys::filename, filename);
    sendJsonMessage(request);
}

void ZySslEchoClient::printPauseCmd(QString token)
{
    sendJsonMessage(tokenCommand(commands::printPause, token));
}

void ZySslEchoClient::printStopCmd(QString token)
{
    sendJsonMessage(tokenCommand(commands::printStop, token));
}

void ZySslEchoClient::getPrintStatusCmd(QString token)
{
    sendJsonMessage(tokenCommand(commands::getPrintStatus, token));
}

void ZySslEchoClient::getPrintworkingLife(QString token)
{
    sendJsonMessage(tokenCommand(commands::printWorkingLife, token));
}

void ZySslEchoClient::setPrintParaCmd(QJsonObject para, QString token)
{
    para.insert(keys::token, token);
    para.insert(keys::cmd, commands::printParaSet);
    sendJsonMessage(para);
}

void ZySslEchoClient::sendJsonMessage(QJsonObject message)
{
    m_webSocket.sendTextMessage(zyws::messageText(message));
}

QJsonObject ZySslEchoClient::messageToJson(QString message) const
{
    return zyws::parseMessage(message);
}
