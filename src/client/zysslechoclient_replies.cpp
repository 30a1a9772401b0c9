// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The reply parser: each reply becomes a signal, and every reply is passed on whole.

#include "clientlog.h"
#include "envelope.h"
#include "vocabulary.h"
#include "wakeafterwards.h"
#include "zysslechoclient.h"

#include <QPointer>

namespace commands = zyws::commands;
namespace keys = zyws::keys;
namespace printstart = zyws::printstart;

struct ZySslEchoClient::ReplyRow {
    QLatin1String command;
    void (ZySslEchoClient::*handler)(const QJsonObject &);
};

void ZySslEchoClient::onTextMessageReceived(QString message)
{
    static constexpr ReplyRow table[] = {
        {commands::startFile, &ZySslEchoClient::onStartFileReply},
        {commands::startData, &ZySslEchoClient::onStartDataReply},
        {commands::checkData, &ZySslEchoClient::onCheckDataReply},
        {commands::cancelFile, &ZySslEchoClient::onCancelFileReply},
        {commands::startPrint, &ZySslEchoClient::onStartPrintReply},
        {commands::printPause, &ZySslEchoClient::onPrintPauseReply},
        {commands::printStop, &ZySslEchoClient::onPrintStopReply},
        {commands::getPrintStatus, &ZySslEchoClient::onPrintStatusReply},
        {commands::printParaSet, &ZySslEchoClient::onPrintParaReply},
        {commands::printWorkingLife, &ZySslEchoClient::onWorkingLifeReply},
    };

    const zyws::WakeAfterwards wakeAfterwards;
    // The host may delete the client in any of its slots.
    const QPointer<ZySslEchoClient> self(this);
    const QJsonObject reply = messageToJson(message);
    // Of any reply: the answer to VERSION_CHECK has no "cmd".
    if (reply.value(keys::version).toString().toInt() == 1) {
        Q_EMIT checkVersion();
        if (!self)
            return;
    }
    const QString word = reply.value(keys::cmd).toString();
    for (const ReplyRow &row : table) {
        if (word != row.command)
            continue;
        // Deliberate: the refusal of a second file during a transfer stays unseen.
        if (row.command == commands::startFile && m_isTransferring)
            return;
        (this->*row.handler)(reply);
        break;
    }
    if (self)
        Q_EMIT jsonMessageReceived(reply);
}

void ZySslEchoClient::onStartFileReply(const QJsonObject &reply)
{
    // A resumed transfer's reply has no "errorcode", which reads as 0.
    const int error = reply.value(keys::errorcode).toInt(0);
    if (error != 0)
        Q_EMIT transError(error, QString());
    else
        beginTransFile(reply);
}

void ZySslEchoClient::onStartDataReply(const QJsonObject &reply)
{
    m_chunksUnderWay = qMax(0, m_chunksUnderWay - 1);
    Q_EMIT fileTransProgress(m_keyFileMap.value(reply.value(keys::key).toString()),
                             zyws::decimalValue(reply.value(keys::size)),
                             zyws::decimalValue(reply.value(keys::received)));
}

void ZySslEchoClient::onCheckDataReply(const QJsonObject &reply)
{
    const QString key = reply.value(keys::key).toString();
    const int checkState = reply.value(keys::checkstate).toInt(0);
    qCDebug(lcZyClient) << "check_data key =" << key;
    qCDebug(lcZyClient) << "check_data checkstate =" << checkState;
    Q_EMIT finish(m_keyFileMap.value(key), checkState);
}

void ZySslEchoClient::onCancelFileReply(const QJsonObject &reply)
{
    if (reply.value(keys::errorcode).toInt(0) != 0)
        return;
    m_isCanceling = false;
    Q_EMIT cancelFinished();
}

void ZySslEchoClient::onStartPrintReply(const QJsonObject &reply)
{
    struct Code {
        QLatin1String result;
        int code;
    };
    // Deliberate: not the enumeration's own numbers; hosts interpret these.
    static constexpr Code codes[] = {
        {printstart::busy, 1},    {printstart::checking, 2},   {printstart::checkFalse, 3},
        {printstart::started, 0}, {printstart::tokenError, 4},
    };

    const QString status = reply.value(keys::status).toString();
    qCDebug(lcZyClient) << "print start cmd =" << status;
    for (const Code &entry : codes) {
        if (status == entry.result) {
            Q_EMIT printErrorCode(entry.code, reply.value(keys::filename).toString());
            return;
        }
    }
}

void ZySslEchoClient::onPrintPauseReply(const QJsonObject &reply)
{
    qCDebug(lcZyClient) << "PRINT_PAUSE received status=" << reply.value(keys::status);
}

void ZySslEchoClient::onPrintStopReply(const QJsonObject &reply)
{
    qCDebug(lcZyClient) << "PRINT_STOP received status=" << reply.value(keys::status);
}

void ZySslEchoClient::onPrintStatusReply(const QJsonObject &reply)
{
    Q_EMIT getPrinterStatusInfo(reply);
}

void ZySslEchoClient::onPrintParaReply(const QJsonObject &reply)
{
    qCDebug(lcZyClient) << "PRINT_PARA_SET status=" << reply;
}

void ZySslEchoClient::onWorkingLifeReply(const QJsonObject &reply)
{
    Q_EMIT slotGetPrinterWorkingLife(reply);
}
