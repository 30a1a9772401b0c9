// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the guides show of a slicing application, compiled.

#include <zyfilesender.h>
#include <zysslechoclient.h>

/// Stands for the application's own window.
class Window : public QObject
{
public:
    void send(const QString &path);
    void showMessage(const QString &text) { setObjectName(text); }
};

void Window::send(const QString &path)
{
    auto *sender = new ZyFileSender(QUrl(QStringLiteral("ws://192.168.1.20:8080")), path, {}, this);
    connect(sender, &ZyFileSender::finished, this, [=](const ZySendResult &result) {
        showMessage(result.sentence());
        sender->deleteLater();
    });
    sender->start();
}

void sendWith(ZySslEchoClient &client)
{
    client.sendFile(QStringLiteral("/home/me/part.zydlp"), QStringLiteral("part.zydlp"));
}
