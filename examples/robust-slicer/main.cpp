// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Brings one file to a printer, whatever the link does. Usage: robust-slicer URL FILE

#include <zyfilesender.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    ZyFileSender sender(QUrl(app.arguments().value(1)), app.arguments().value(2));

    QObject::connect(&sender, &ZyFileSender::progress, &app, [&](qint64 received, qint64 total) {
        out << received * 100 / total << " %" << Qt::endl;
    });
    QObject::connect(&sender, &ZyFileSender::retrying, &app,
                     [&](ZySendResult::Interruption reason, int attempt, int pause) {
                         out << ZySendResult::text(reason) << ", retry " << attempt << " in "
                             << pause << " ms" << Qt::endl;
                     });
    QObject::connect(&sender, &ZyFileSender::finished, &app, [&](const ZySendResult &result) {
        out << result.sentence() << Qt::endl;
        QCoreApplication::exit(result.isSent() ? 0 : 1);
    });
    sender.start();
    return app.exec();
}
