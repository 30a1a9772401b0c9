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
    const auto reconnect = [&] {
        printEvent("disconnected");
        client.close(); // the send loop, should one run
        QTimer::singleShot(0, &client, [&] { client.openWithUrl(url); });
    };
    QObject::connect(&client, &ZySslEchoClient::disconnected, reconnect);
    QObject::connect(&client, &ZySslEchoClient::pauseSuccess, reconnect);
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
