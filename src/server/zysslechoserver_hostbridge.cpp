// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The questions put to the host application, and what its answers mean.
//
// A host's slot may delete the server, so nothing here touches a member after an emission
// unchecked.

#include "vocabulary.h"
#include "zysslechoserver.h"
#include "zywebhandle.h"

namespace
{

constexpr int hostSaysYes = 1;
constexpr int hostRejectsToken = -1;

int answerCode(int hostAnswer, int whenYes, int whenNo)
{
    if (hostAnswer == hostSaysYes)
        return whenYes;
    return hostAnswer == hostRejectsToken ? zyws::TokenRejected : whenNo;
}

int permission(int hostAnswer)
{
    return answerCode(hostAnswer, zyws::Allowed, zyws::Refused);
}

int outcome(int hostAnswer)
{
    return answerCode(hostAnswer, zyws::CommandDone, zyws::CommandFailed);
}

} // namespace

/// The first busy connection decides, the asking one included; Allowed when none is busy.
int ZySslEchoServer::busyAnswer() const
{
    const QList<ZyWebHandle *> handles = m_handles;
    for (ZyWebHandle *handle : handles) {
        switch (handle->status()) {
        case ZyWebHandle::ReceivingFile:
            return zyws::ReceivingFile;
        case ZyWebHandle::CheckingPrintFile:
            return zyws::CheckingPrintFile;
        default:
            break;
        }
    }
    return zyws::Allowed;
}

int ZySslEchoServer::getFileTransStatus(QString token, bool needCheckToken)
{
    const QPointer<ZySslEchoServer> self(this);
    endIdleReception();
    if (!self)
        return zyws::Refused;
    if (const int busy = busyAnswer())
        return busy;
    int printState = 0;
    Q_EMIT getPrintState(printState, token, needCheckToken);
    const int answer = permission(printState);
    // A host's slot that spins the event loop may have let another transfer begin meanwhile, and
    // two receptions would write into one temporary file.
    return answer == zyws::Allowed && self ? busyAnswer() : answer;
}

int ZySslEchoServer::getFilePrintStatus(QString token, bool needCheckToken)
{
    if (const int busy = busyAnswer())
        return busy;
    int printState = 0;
    Q_EMIT getFilePrintState(printState, token, needCheckToken);
    return permission(printState);
}

int ZySslEchoServer::getPrintPauseStatus(QString token)
{
    int pauseState = 0;
    Q_EMIT sigDoPrintPause(pauseState, token);
    return outcome(pauseState);
}

int ZySslEchoServer::getPrintStopStatus(QString token)
{
    int stopState = 0;
    Q_EMIT sigDoPrintStop(stopState, token);
    return outcome(stopState);
}

void ZySslEchoServer::getPrinterStatus(PrintStatusPara &printStatusPara, QString token)
{
    PrintStatusPara answer;
    Q_EMIT sigGetPrinterStatus(answer, token);
    printStatusPara = answer;
}

void ZySslEchoServer::setPrintPara(PrintStatusPara &printStatusPara, QString token)
{
    // Deliberate: a copy, so that nothing a host writes travels back to the slicer.
    PrintStatusPara copy(printStatusPara);
    Q_EMIT sigSetPrintPara(copy, token);
}

QString ZySslEchoServer::getVersionCheck()
{
    QString version = QLatin1String("");
    Q_EMIT sifGetVersionCheck(version);
    return version;
}

void ZySslEchoServer::onFinish(QString filePath, int &checkState)
{
    Q_EMIT finish(filePath, checkState);
}
