// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command builders and the one routine that sends their messages.

#include "envelope.h"
#include "heldsocket.h"
#include "messagekeys.h"
#include "vocabulary.h"
#include "zysslechoclient.h"

#include <utility>

namespace keys = zyws::keys;
using zyws::Command;

namespace
{

QJsonObject tokenCommand(Command command, const QString &token)
{
    return {{keys::token, token}, {keys::cmd, zyws::wireWord(command)}};
}

} // namespace

void ZySslEchoClient::versionCheckCmd()
{
    sendJsonMessage({{keys::cmd, zyws::wireWord(Command::VersionCheck)}});
}

void ZySslEchoClient::printStartCmd(QString filename, QString token)
{
    QJsonObject request = tokenCommand(Command::StartPrint, token);
    request.insert(keys::filename, filename);
    sendJsonMessage(request);
}

void ZySslEchoClient::printPauseCmd(QString token)
{
    sendJsonMessage(tokenCommand(Command::PrintPause, token));
}

void ZySslEchoClient::printStopCmd(QString token)
{
    sendJsonMessage(tokenCommand(Command::PrintStop, token));
}

void ZySslEchoClient::getPrintStatusCmd(QString token)
{
    sendJsonMessage(tokenCommand(Command::GetPrintStatus, token));
}

void ZySslEchoClient::getPrintworkingLife(QString token)
{
    sendJsonMessage(tokenCommand(Command::PrintWorkingLife, token));
}

void ZySslEchoClient::setPrintParaCmd(QJsonObject para, QString token)
{
    para.insert(keys::token, token);
    para.insert(keys::cmd, zyws::wireWord(Command::PrintParaSet));
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
