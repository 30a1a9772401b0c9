// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the guides show of a printer's host with protection, compiled.

#include <zyserveroptions.h>
#include <zysslechoserver.h>

#include <QCoreApplication>

#include <cstdio>

void withTheUsualProtection(const QString &directory)
{
    ZySslEchoServer server(8080, directory, ZyServerOptions::hardened());
    QCoreApplication::exec();
}

void withAccessControl(const QString &directory, const QString &token, const QString &certificate,
                       const QString &key)
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setToken(token); // when your slicers know one
    const QString fault = options.useTls(certificate, key); // when they speak wss://
    if (!fault.isEmpty())
        std::fprintf(stderr, "certificate or key not usable: %s\n", qPrintable(fault));
    options.setFailureHandler([](ZyServerOptions::Failure, const QString &why) {
        std::fprintf(stderr, "%s\n", qPrintable(why));
    });
    ZySslEchoServer server(8080, directory, options);
    QCoreApplication::exec();
}
