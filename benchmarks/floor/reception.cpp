// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to the disk, in bare Qt.

#include "reception.h"

#include <QDir>

namespace floorbench
{

Reception::Reception(const QString &directory) : m_directory(directory) { }

QJsonObject Reception::start(const QJsonObject &request)
{
    m_name = request.value(QLatin1String("filename")).toString();
    m_key = request.value(QLatin1String("key")).toString();
    m_size = request.value(QLatin1String("size")).toString().toLongLong();
    m_received = 0;
    m_file.setFileName(QDir(m_directory).filePath(QStringLiteral("wifi_tranfer.tmp")));
    const bool isReady = m_file.open(QIODevice::WriteOnly);
    m_file.close();
    if (!isReady || !m_file.resize(m_size))
        return {{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                {QStringLiteral("errorcode"), 2},
                {QStringLiteral("compress"), true}};
    removeEarlierModels();
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
        {QStringLiteral("errorcode"), 0},
        {QStringLiteral("compress"), true},
        {QStringLiteral("filename"), m_name},
        {QStringLiteral("size"), QString::number(m_size)},
        {QStringLiteral("offset"), QStringLiteral("0")},
        {QStringLiteral("key"), m_key},
    };
}

QJsonObject Reception::write(const QByteArray &payload)
{
    bool isOpen = m_file.isOpen();
    if (!isOpen)
        isOpen = m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    if (isOpen) {
        m_file.seek(m_received);
        m_received += m_file.write(qUncompress(payload));
    }
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_DATA")},
        {QStringLiteral("key"), m_key},
        {QStringLiteral("errorcode"), isOpen ? 0 : 2},
        {QStringLiteral("size"), QString::number(m_size)},
        {QStringLiteral("received"), QString::number(m_received)},
    };
}

QJsonObject Reception::finish()
{
    m_file.close();
    m_file.resize(m_size);
    const QString path = QDir(m_directory).filePath(m_name);
    QFile::remove(path);
    return {
        {QStringLiteral("cmd"), QStringLiteral("CHECK_DATA")},
        {QStringLiteral("key"), m_key},
        {QStringLiteral("checkstate"), m_file.rename(path) ? 1 : 0},
    };
}

void Reception::removeEarlierModels() const
{
    QDir directory(m_directory);
    const QStringList models = directory.entryList(
        {QStringLiteral("*.zydlp"), QStringLiteral("*.zyline"), QStringLiteral("*.bak")},
        QDir::Files);
    for (const QString &model : models)
        directory.remove(model);
}

} // namespace floorbench
