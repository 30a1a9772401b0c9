// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The smallest printer host: takes every file, starts every print. Usage: minimal-host DIRECTORY

#include <zysslechoserver.h>

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // Absolute, since each transfer changes the current directory.
    const QDir directory(QDir(app.arguments().value(1, QDir::tempPath())).absolutePath());
    ZySslEchoServer server(0, {}, {}, directory.path(), nullptr);

    // Answers are written into the reference arguments before the slot returns.
    QObject::connect(&server, &ZySslEchoServer::getPrintState, &server,
                     [](int &answer, const QString &, bool) { answer = 1; });
    QObject::connect(&server, &ZySslEchoServer::getFilePrintState, &server,
                     [](int &answer, const QString &, bool) { answer = 1; });
    QObject::connect(&server, &ZySslEchoServer::finish, &server,
                     [&](const QString &name, int &checkState) {
                         checkState = directory.exists(name) ? 1 : 2;
                         QTextStream(stdout) << "received " << directory.filePath(name) << Qt::endl;
                     });
    QObject::connect(
        &server, &ZySslEchoServer::checkFile, &server,
        [&](const QString &name, int &checkState) { checkState = directory.exists(name) ? 1 : 3; });

    if (!server.isListening())
        return 1;
    QTextStream(stdout) << "listening on ws://127.0.0.1:" << server.serverPort() << Qt::endl;
    return app.exec();
}
