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
    int level = -1; ///< as ZySslEchoClient::setCompressionLevel()
    int threads = 0; ///< as ZySslEchoClient::setCompressionThreads()
    QString sha256; ///< as ZySslEchoClient::setFileDigest()
};

/// Reads "--url URL --file FILE [--level N] [--threads N] [--sha256 HEX]"; leaves the
/// process when they are wrong.
ClientOptions clientOptions(const QCoreApplication &app);

} // namespace zybench

#endif // CLIENTOPTIONS_H
