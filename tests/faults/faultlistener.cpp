// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A slicer as a process of its own that offers a file and then listens to whatever a printer says.

#include "eventlines.h"

#include <zysslechoclient.h>

#include <QCoreApplication>
#include <QTimer>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const QUrl url(arguments.at(1));

    ZySslEchoClient client(url);
    QObject::connect(&client, &ZySslEchoClient::connected, [&] {
        printEvent("connected");
        client.sendFile(arguments.at(2), QStringLiteral("part.bin"));
    });
    // Polled, since a connection that ends within its handshake is told by no signal.
    QTimer watch;
    watch.callOnTimeout(&client, [&] {
        if (client.socketConnectStatus() != QAbstractSocket::UnconnectedState)
            return;
        client.close(); // ends the send loop, should one run
        client.openWithUrl(url);
    });
    watch.start(1);
    QObject::connect(&client, &ZySslEchoClient::checkVersion, [] { printEvent("checkVersion"); });
    QObject::connect(&client, &ZySslEchoClient::getPrinterStatusInfo,
                     [](const QJsonObject &info) { printEvent("status", info); });
    QObject::connect(&client, &ZySslEchoClient::finish, [](const QString &path, int checkState) {
        printEvent("finish",
                   {{QStringLiteral("path"), path}, {QStringLiteral("checkstate"), checkState}});
    });
    quitWithStandardInput();
    return QCoreApplication::exec();
}
