// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer in the test's own process, which can be switched off and on again.

#include "restartableprinter.h"

#include <zyfiletranshandle.h>

RestartablePrinter::RestartablePrinter()
{
    status.initExposure = QStringLiteral("30");
    status.delayLight = QStringLiteral("0.5");
    status.printExposure = QStringLiteral("2.5");
    status.printHeight = QStringLiteral("6");
    status.eleSpeed = QStringLiteral("3");
    status.bottomExposureNum = QStringLiteral("5");
    start();
}

void RestartablePrinter::start()
{
    m_server = std::make_unique<ZySslEchoServer>(m_port, QString(), QString(), m_directory.path(),
                                                 nullptr);
    m_port = m_server->serverPort();
    answerQuestions();
}

void RestartablePrinter::stop()
{
    m_server.reset();
}

int RestartablePrinter::connections() const
{
    return m_server ? int(m_server->findChildren<ZyFileTransHandle *>().size()) : 0;
}

QUrl RestartablePrinter::url() const
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(m_port));
}

void RestartablePrinter::answerQuestions()
{
    const auto *server = m_server.get();
    connect(server, &ZySslEchoServer::getPrintState, this,
            [this](int &answer, const QString &token) {
                offeredToken = token;
                if (onOffer)
                    onOffer();
                answer = mayReceive;
            });
    connect(server, &ZySslEchoServer::getFilePrintState, this,
            [this](int &answer) { answer = mayPrint; });
    connect(server, &ZySslEchoServer::checkFile, this,
            [this](const QString &, int &answer) { answer = printCheck; });
    connect(server, &ZySslEchoServer::finish, this,
            [this](const QString &, int &answer) { answer = modelCheck; });
    connect(server, &ZySslEchoServer::sigDoPrintPause, this,
            [this](int &answer) { answer = pauseAnswer; });
    connect(server, &ZySslEchoServer::sigDoPrintStop, this,
            [this](int &answer) { answer = stopAnswer; });
    connect(server, &ZySslEchoServer::sifGetVersionCheck, this,
            [this](QString &text) { text = version; });
    connect(server, &ZySslEchoServer::sigGetPrinterStatus, this, [this](PrintStatusPara &record) {
        ++statusRequests;
        record = status;
    });
    connect(server, &ZySslEchoServer::sigSetPrintPara, this,
            [this](const PrintStatusPara &wanted) { takeParameters(wanted); });
}

void RestartablePrinter::takeParameters(const PrintStatusPara &wanted)
{
    if (!takesParameters)
        return;
    status.initExposure = wanted.initExposure;
    status.delayLight = wanted.delayLight;
    status.printExposure = wanted.printExposure;
    status.printHeight = wanted.printHeight;
    status.eleSpeed = wanted.eleSpeed;
    status.bottomExposureNum = wanted.bottomExposureNum;
}
