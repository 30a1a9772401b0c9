// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer in the test's own process, which can be switched off and on again.

#ifndef RESTARTABLEPRINTER_H
#define RESTARTABLEPRINTER_H

#include <zysslechoserver.h>

#include <QObject>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>
#include <memory>

class RestartablePrinter : public QObject
{
    Q_OBJECT

public:
    RestartablePrinter();

    /// Listens, after stop() on the same port again.
    void start();
    /// Drops every connection, as a printer that is switched off.
    void stop();
    QUrl url() const;
    QString pathOf(const QString &name) const { return m_directory.filePath(name); }

    // The host's answers.
    int mayReceive = 1;
    int mayPrint = 1;
    int printCheck = 1;
    int modelCheck = 1;
    int pauseAnswer = 1;
    int stopAnswer = 1;
    bool takesParameters = true;
    QString version = QStringLiteral("1");
    PrintStatusPara status;
    std::function<void()> onOffer; ///< runs when a file is offered

    int statusRequests = 0;
    QString offeredToken; ///< of the last file that was offered
    /// How many are open.
    int connections() const;

private:
    void answerQuestions();
    void takeParameters(const PrintStatusPara &wanted);

    QTemporaryDir m_directory;
    quint16 m_port = 0;
    std::unique_ptr<ZySslEchoServer> m_server;
};

#endif // RESTARTABLEPRINTER_H
