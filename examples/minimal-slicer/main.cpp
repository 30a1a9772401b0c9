// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The smallest slicer on the bare client: sends one file. Usage: minimal-slicer URL FILE

#include <zysslechoclient.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QFileInfo file(app.arguments().value(2));
    if (!file.isFile() || file.size() == 0) {
        QTextStream(stderr) << "no file to send: " << file.filePath() << Qt::endl;
        return 1;
    }
    ZySslEchoClient client(QUrl(app.arguments().value(1)));

    // Neither a connection that fails nor a printer that falls silent is reported.
    QTimer silence;
    silence.start(15000);
    QObject::connect(&silence, &QTimer::timeout, &app, [&] {
        QTextStream(stderr) << "nothing heard: " << client.socketErrorText() << Qt::endl;
        client.close(); // ends a transfer under way
        QCoreApplication::exit(1);
    });
    QObject::connect(&client, &ZySslEchoClient::connected, &client,
                     [&] { client.sendFile(file.filePath(), file.fileName()); });
    QObject::connect(&client, &ZySslEchoClient::fileTransProgress, &client,
                     [&](const QString &, qlonglong total, qlonglong received) {
                         silence.start();
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
