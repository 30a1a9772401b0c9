// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One question to the printer and its answer, within a time limit.

#ifndef EXCHANGE_H
#define EXCHANGE_H

#include <QJsonObject>
#include <QObject>
#include <QTimer>

#include <functional>

class PrinterLink;
class ZySslEchoClient;

class Exchange : public QObject
{
    Q_OBJECT

public:
    using Question = std::function<void(ZySslEchoClient &)>;

    explicit Exchange(PrinterLink &link, QObject *parent = nullptr);

    /// Asks on the open link; @p word is the answer's "cmd", or "version", which stands alone.
    void ask(const Question &question, const QString &word, int timeLimit);
    /// Waits for one more answer of that kind.
    void await(const QString &word, int timeLimit);
    void stop();

Q_SIGNALS:
    void answered(const QJsonObject &answer);
    /// No answer in time, or the connection has ended.
    void unanswered(const QString &reason);

private:
    void onMessage(const QJsonObject &message);
    void fail(const QString &reason);

    PrinterLink &m_link;
    QString m_word;
    QTimer m_timeLimit;
};

#endif // EXCHANGE_H
