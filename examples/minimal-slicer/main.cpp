// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The smallest slicer: sends one file. Usage: minimal-slicer URL FILE

#include <zysslechoclient.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString path = app.arguments().value(2);
    ZySslEchoClient client(QUrl(app.arguments().value(1)));

    QObject::connect(&client, &ZySslEchoClient::connected, &client,
                     [&] { client.sendFile(path, QFileInfo(path).fileName()); });
    QObject::connect(&client, &ZySslEchoClient::fileTransProgress, &client,
                     [](const QString &, qlonglong total, qlonglong received) {
                         QTextStream(stdout) << received << " of " << total << Qt::endl;
                     });
    QObject::connect(
        &client, &ZySslEchoClient::finish, &app,
        [](const QString &, int checkState) { QCoreApplication::exit(checkState == 1 ? 0 : 1); },
        Qt::QueuedConnection);
    QObject::connect(&client, &ZySslEchoClient::transError, &app,
                     [](int) { QCoreApplication::exit(1); });
    return app.exec();
}
