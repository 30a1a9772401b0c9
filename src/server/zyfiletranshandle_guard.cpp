// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The answers to requests that the server's options do not let through to their handlers.

#include "report.h"
#include "requestguard.h"
#include "vocabulary.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QWebSocket>

namespace keys = zyws::keys;

/// False when the request has been refused and answered.
bool ZyFileTransHandle::passes(const QJsonObject &request)
{
    if (!m_server) // a handle that stands alone
        return true;
    const ZyServerOptions &options = m_server->options();
    const auto fault = zyws::requestFault(request, options, m_fileDir);
    if (!fault || !fault->isToken)
        m_wrongTokens = 0;
    if (!fault)
        return true;
    zyws::report(options, ZyServerOptions::Failure::Refused, fault->why);
    sendMessage(refusal(request, fault->isToken));
    if (fault->isToken && ++m_wrongTokens == options.maxWrongTokens()) {
        zyws::report(options, ZyServerOptions::Failure::Dropped,
                     QStringLiteral("too many wrong tokens"));
        m_socket->close(QWebSocketProtocol::CloseCodePolicyViolated);
    }
    return false;
}

QJsonObject ZyFileTransHandle::refusal(const QJsonObject &request, bool isToken)
{
    const QString word = request.value(keys::cmd).toString();
    if (word == zyws::commands::startFile)
        return transferRefusal(isToken ? zyws::TokenRejected : zyws::Refused);
    if (word == zyws::commands::startPrint)
        return printStartReply(isToken ? PRINT_TOKEN_ERROR : CHECK_FALSE,
                               request.value(keys::filename).toString());
    if (word == zyws::commands::getPrintStatus) {
        PrintStatusPara record;
        record.printStatus = statusOfWrongToken;
        return statusReply(record);
    }
    return {{keys::cmd, word}, {keys::status, zyws::results::tokenError}};
}

QJsonObject ZyFileTransHandle::transferRefusal(int answer) const
{
    return {
        {keys::cmd, commandWord(START_FILE)},
        {keys::errorcode, answer == zyws::TokenRejected ? TOKEN_ERROR : SERVER_BUSY},
        {keys::compress, m_isCompress},
        {keys::wifistate, answer},
    };
}
