// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the command line to the server's protection, and from there to the event log.

#include "protection.h"

#include "modelstore.h"
#include "printerlog.h"
#include "printeroptions.h"

namespace zyprinter
{

namespace
{

constexpr qint64 MiB = Q_INT64_C(1024) * 1024;

QString eventOf(ZyServerOptions::Failure what, const QString &why)
{
    switch (what) {
    case ZyServerOptions::Failure::Refused:
        return QStringLiteral("refused ") + why;
    case ZyServerOptions::Failure::Dropped:
        return QStringLiteral("dropped a connection: ") + why;
    case ZyServerOptions::Failure::NoSpace:
        return QStringLiteral("refused a transfer: the disk is full: ") + why;
    case ZyServerOptions::Failure::NotWritten:
        return QStringLiteral("cannot write what is received: ") + why;
    case ZyServerOptions::Failure::NotResumable:
        return QStringLiteral("interrupted transfer cannot be resumed, removed: ") + why;
    case ZyServerOptions::Failure::WrongDigest:
        return QStringLiteral("received file was damaged, removed: ") + why;
    }
    return why;
}

QString eventOf(ZyServerOptions::Transfer what, const QString &name, const QString &peer)
{
    QString transfer = QStringLiteral("\"%1\" from %2").arg(name, peer);
    switch (what) {
    case ZyServerOptions::Transfer::Accepted:
        return QStringLiteral("transfer accepted: ") + transfer;
    case ZyServerOptions::Transfer::Cancelled:
        return name.isEmpty() ? QStringLiteral("cancel from %1, which sends nothing").arg(peer)
                              : QStringLiteral("transfer cancelled: ") + transfer;
    case ZyServerOptions::Transfer::Interrupted:
        return QStringLiteral("transfer interrupted: %1; sent again, it goes on where it stopped")
            .arg(transfer);
    }
    return transfer;
}

} // namespace

ZyServerOptions serverOptions(const PrinterOptions &options, ModelStore &store, PrinterLog &log)
{
    ZyServerOptions server;
    if (!options.unprotected) {
        constexpr int msPerSecond = 1000;
        server = ZyServerOptions::hardened();
        server.setMaxFileSize(options.maxSize * MiB);
        server.setKeepFree(options.keepFree * MiB);
        server.setMaxConnections(options.maxConnections);
        server.setAllowedOrigins(options.origins);
        server.setSilence(int(options.silence * msPerSecond));
        server.setToken(options.token);
        server.setWindow(2);
        server.setNameFilter([&store](const QString &name) { return store.isFileName(name); });
    }
    server.setListenAddress(options.address);
    server.setTransferHandler([&log](ZyServerOptions::Transfer what, const QString &name,
                                     const QString &peer) { log.add(eventOf(what, name, peer)); });
    server.setFailureHandler([&store, &log](ZyServerOptions::Failure what, const QString &why) {
        if (what == ZyServerOptions::Failure::NotResumable)
            store.removeReception();
        log.add(eventOf(what, why));
    });
    return server;
}

} // namespace zyprinter
