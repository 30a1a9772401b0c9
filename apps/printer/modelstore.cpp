// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The models that the printer keeps, and the place where they arrive.

#include "modelstore.h"

#include "directory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace
{

const QLatin1String receptionFile("wifi_tranfer.tmp"); // the library's own, misspelt as it is there

QString lastError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

ModelStore::ModelStore(const QString &directory)
    : m_directory(QFileInfo(directory).absoluteFilePath()),
      m_incoming(m_directory + QStringLiteral("/.incoming"))
{
}

QString ModelStore::prepare()
{
    QString fault = directoryFault(m_directory);
    if (!fault.isEmpty())
        return fault;
    QDir().mkdir(m_incoming);
    fault = directoryFault(m_incoming);
    if (!fault.isEmpty())
        return QStringLiteral("has a place for incoming files (.incoming) that ") + fault;
    const QStringList leftOver = QDir(m_incoming).entryList(QDir::Files);
    for (const QString &name : leftOver) {
        if (name != receptionFile)
            keep(name);
    }
    return {};
}

QString ModelStore::path(const QString &name) const
{
    const bool isAccepted = !name.isEmpty() && !name.startsWith(QLatin1Char('.'))
        && !name.contains(QLatin1Char('/')) && name != receptionFile;
    return isAccepted ? m_directory + QLatin1Char('/') + name : QString();
}

QString ModelStore::keep(const QString &receivedName)
{
    const QString received = QDir(m_incoming).absoluteFilePath(receivedName);
    const QString kept = path(receivedName);
    if (kept.isEmpty()) {
        // Whatever lay there is overwritten already; what lies there now is the slicer's.
        QFile::remove(received);
        return QStringLiteral("the name is not accepted");
    }
    // QFile::rename() does not replace; a print of the old model goes on reading the old file.
    if (std::rename(QFile::encodeName(received).constData(), QFile::encodeName(kept).constData())
        == 0)
        return {};
    QString reason = lastError();
    QFile::remove(received);
    return reason;
}

QStringList ModelStore::names() const
{
    return QDir(m_directory).entryList(QDir::Files);
}
