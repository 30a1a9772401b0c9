// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the guides show of a slicing application, compiled.

#include <zyfilesender.h>
#include <zysendoptions.h>
#include <zysslechoclient.h>
#include <zytlstrust.h>

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

void trustOneCertificate(const QString &fingerprint)
{
    ZyTlsTrust trust;
    if (!trust.pin(fingerprint)) // SHA-256, 64 hex digits, with or without colons
        qWarning("no fingerprint");
    ZySendOptions options;
    options.setTlsTrust(trust); // of a ZyFileSender
    ZySslEchoClient client(QUrl(QStringLiteral("wss://192.168.1.20:8443")), trust);
}
