// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge's connections, and its answers about file transfers.

#include "hostbridge.h"

#include "machine.h"
#include "modelreader.h"
#include "modelstore.h"
#include "printerlog.h"

#include <zysslechoserver.h>

#include <QLocale>

#include <utility>

namespace zyprinter
{

HostBridge::HostBridge(ZySslEchoServer *server, Machine *machine, ModelStore *store,
                       PrinterLog *log, Policy policy, QObject *parent)
    : QObject(parent), m_machine(machine), m_store(store), m_log(log), m_policy(std::move(policy))
{
    using Server = ZySslEchoServer;
    // Direct by default, since the bridge lives in the server's thread.
    connect(server, &Server::getPrintState, this, &HostBridge::answerTransfer);
    connect(server, &Server::finish, this, &HostBridge::answerFinish);
    connect(server, &Server::getFilePrintState, this, &HostBridge::answerPrint);
    connect(server, &Server::checkFile, this, &HostBridge::answerCheckFile);
    connect(server, &Server::sigDoPrintPause, this, &HostBridge::answerPause);
    connect(server, &Server::sigDoPrintStop, this, &HostBridge::answerStop);
    connect(server, &Server::sigGetPrinterStatus, this, &HostBridge::answerStatus);
    connect(server, &Server::sigSetPrintPara, this, &HostBridge::takeParameters);
    connect(server, &Server::sifGetVersionCheck, this, &HostBridge::answerVersion);
}

bool HostBridge::isAccepted(const QString &token) const
{
    return m_policy.token.isEmpty() || token == m_policy.token;
}

/// The answer to a question that is allowed or not, and a line in the log when it is not.
HostBridge::Answer HostBridge::permission(const char *what, const QString &token,
                                          bool needCheckToken, bool isPossible,
                                          const QString &obstacle)
{
    const QString subject = QLatin1String(what);
    if (needCheckToken && !isAccepted(token)) {
        m_log->add(QStringLiteral("refused %1: wrong token").arg(subject));
        return TokenRejected;
    }
    if (m_policy.refuse || !isPossible) {
        m_log->add(QStringLiteral("refused %1: %2")
                       .arg(subject,
                            m_policy.refuse ? QStringLiteral("asked for by --refuse") : obstacle));
        return No;
    }
    return Yes;
}

void HostBridge::answerTransfer(int &answer, const QString &token, bool needCheckToken)
{
    // Also while printing: the print reads from a file of its own.
    answer = permission("a transfer", token, needCheckToken, m_store->canReceive(),
                        QStringLiteral("%1 has gone").arg(m_store->directory()));
}

void HostBridge::answerFinish(const QString &receivedName, int &modelState)
{
    modelState = NoModel;
    const QString refusal = m_store->keep(receivedName);
    if (!refusal.isEmpty()) {
        m_log->add(QStringLiteral("received \"%1\": not kept: %2").arg(receivedName, refusal));
        return;
    }
    QString fault;
    const auto model = openChecked(receivedName, fault);
    if (!model) {
        m_log->add(QStringLiteral("received \"%1\": no valid model: %2").arg(receivedName, fault));
        return;
    }
    modelState = ValidModel;
    m_log->add(QStringLiteral("received \"%1\": %2, valid model, %3 layers")
                   .arg(receivedName, QLocale::c().formattedDataSize(model->fileSize()))
                   .arg(model->layerCount()));
}

/// The model @p name, every layer of which has been checked; null and the fault otherwise.
std::unique_ptr<zymodel::ModelReader> HostBridge::openChecked(const QString &name,
                                                              QString &fault) const
{
    const QString path = m_store->path(name);
    if (path.isEmpty()) {
        fault = ModelStore::nameFault(name);
        return nullptr;
    }
    auto model = std::make_unique<zymodel::ModelReader>();
    if (model->open(path) && model->checkAllLayers())
        return model;
    fault = model->error();
    return nullptr;
}

} // namespace zyprinter
