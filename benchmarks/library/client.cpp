// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The slicer's end through the library's public headers: sends one file.

#include "clientoptions.h"
#include "transferclock.h"

#include <zysslechoclient.h>

#include <QCoreApplication>
#include <QFileInfo>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const zybench::ClientOptions options = zybench::clientOptions(app);
    zybench::TransferClock clock;
    ZySslEchoClient client(options.url);
    client.setCompressionLevel(options.level);
    client.setCompressionThreads(options.threads);
    client.setFileDigest(options.sha256);
    QObject::connect(&client, &ZySslEchoClient::connected, &client, [&] {
        clock.start();
        client.sendFile(options.file, QFileInfo(options.file).fileName());
    });
    QObject::connect(&client, &ZySslEchoClient::finish, &client,
                     [&](const QString &, int checkState) {
                         clock.report();
                         QCoreApplication::exit(checkState == 1 ? 0 : 1);
                     });
    QObject::connect(&client, &ZySslEchoClient::transError, &client,
                     [] { QCoreApplication::exit(1); });
    QObject::connect(&client, &ZySslEchoClient::disconnected, &client,
                     [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec();
}
