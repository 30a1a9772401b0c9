// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the fault tests' programs have in common: events as lines of JSON, and an end with the test.

#include "eventlines.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSocketNotifier>

#include <array>
#include <cstdio>

#include <unistd.h>

void printEvent(const char *name, QJsonObject details)
{
    details.insert(QLatin1String("event"), QLatin1String(name));
    const QByteArray line = QJsonDocument(details).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

void quitWithStandardInput(const std::function<void()> &onInput)
{
    auto *notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier, onInput] {
        std::array<char, 256> ignored{};
        if (::read(STDIN_FILENO, ignored.data(), ignored.size()) > 0) {
            onInput();
            return;
        }
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
}
