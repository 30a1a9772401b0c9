// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A program outside the tree that uses the installed library: asks a server for its version.

#include <printstatuspara.h>
#include <zyfilesender.h>
#include <zyfiletranshandle.h>
#include <zysslechoclient.h>
#include <zysslechoserver.h>
#include <zywebhandle.h>

#include <QCoreApplication>
#include <QTimer>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (ZyFileSender::checkFile(QString()).fileFault() != ZySendResult::FileFault::Missing)
        return 3;
    ZySslEchoServer server(0, QString(), QString(), QString(), nullptr);
    if (!server.isListening())
        return 1;
    QObject::connect(&server, &ZySslEchoServer::sifGetVersionCheck, &server,
                     [](QString &version) { version = QStringLiteral("1"); });
    ZySslEchoClient client(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(server.serverPort())));
    QObject::connect(&client, &ZySslEchoClient::connected, &client,
                     &ZySslEchoClient::versionCheckCmd);
    QObject::connect(&client, &ZySslEchoClient::checkVersion, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QTimer::singleShot(20000, &app, [] { QCoreApplication::exit(2); });
    return app.exec();
}
