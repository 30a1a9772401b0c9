// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Clean-up of earlier model files: the printer keeps only the one it is receiving.

#include "serverlog.h"
#include "zyfiletranshandle.h"

#include <QDir>

void ZyFileTransHandle::removePcModelFile(QString dir)
{
    QDir directory(dir);
    const QFileInfoList entries = directory.entryInfoList(QDir::Files);
    for (const QFileInfo &entry : entries) {
        const QString path = entry.filePath();
        if (!path.endsWith(QLatin1String(".zydlp")) && !path.endsWith(QLatin1String(".zyline"))
            && !path.endsWith(QLatin1String(".bak")))
            continue;
        qCDebug(lcZyServer).noquote() << path;
        directory.remove(path);
        qCDebug(lcZyServer) << "wifi remove file: " << path;
    }
}
