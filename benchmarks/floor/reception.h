// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to the disk, in bare Qt.

#ifndef RECEPTION_H
#define RECEPTION_H

#include <QFile>
#include <QJsonObject>
#include <QString>

namespace floorbench
{

class Reception
{
public:
    explicit Reception(const QString &directory);

    /// The reply to START_FILE. Resumes nothing: the benchmark cuts no transfer.
    QJsonObject start(const QJsonObject &request);

    /// Inflates and writes one data message; the acknowledgement.
    QJsonObject write(const QByteArray &payload);

    bool isComplete() const { return m_received >= m_size; }

    /// Gives the file its name; the CHECK_DATA message.
    QJsonObject finish();

private:
    void removeEarlierModels() const;

    QString m_directory;
    QFile m_file;
    QString m_name;
    QString m_key;
    qint64 m_size = 0;
    qint64 m_received = 0;
};

} // namespace floorbench

#endif // RECEPTION_H
