// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A slicer made of the real client: one call per thing that a person does.

#ifndef SLICER_H
#define SLICER_H

#include <zysslechoclient.h>

#include <QJsonObject>
#include <QVector>

#include <functional>
#include <memory>

class Slicer
{
public:
    /// Connects; false when nothing answers.
    bool connectTo(const QUrl &url);
    ZySslEchoClient &client() { return *m_client; }

    /// Sends a file to its end. Its check state; -1000 minus the code when it is refused, -1 when
    /// nothing comes.
    int send(const QString &path, const QString &name);
    /// The codes of printErrorCode() up to the last one.
    QVector<int> print(const QString &name, const QString &token = {});
    QString pause(const QString &token = {});
    QString stop(const QString &token = {});
    QJsonObject status(const QString &token = {});
    QString printStatus(const QString &token = {});
    /// Asks for the status until it reads @p word.
    bool reaches(const QString &word, const QString &token = {});
    /// Sends a message and waits for a reply to it.
    QJsonObject ask(const QJsonObject &request);
    QJsonObject setParameters(const QJsonObject &parameters, const QString &token = {});

private:
    QJsonObject reply(const QString &command, const std::function<void()> &send);

    std::unique_ptr<ZySslEchoClient> m_client;
    QVector<QJsonObject> m_replies;
};

#endif // SLICER_H
