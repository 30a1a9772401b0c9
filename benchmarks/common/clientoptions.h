// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The senders' command line.

#ifndef CLIENTOPTIONS_H
#define CLIENTOPTIONS_H

#include <QString>
#include <QUrl>

class QCoreApplication;

namespace zybench
{

struct ClientOptions {
    QUrl url;
    QString file;
    int compressionLevel; ///< -1: zlib's own
};

/// Reads "--url URL --file FILE [--compression LEVEL]"; leaves the process when they are wrong.
ClientOptions clientOptions(const QCoreApplication &app);

} // namespace zybench

#endif // CLIENTOPTIONS_H
