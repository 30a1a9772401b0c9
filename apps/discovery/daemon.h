// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection to the Avahi daemon, made anew whenever it is lost.

#ifndef DAEMON_H
#define DAEMON_H

#include <QObject>
#include <QTimer>

struct AvahiClient;

namespace zydiscovery
{

class Daemon : public QObject
{
    Q_OBJECT

public:
    explicit Daemon(QObject *parent = nullptr);
    ~Daemon() override;

    /// Null, or of a daemon that may be on its way.
    AvahiClient *client() const { return m_client; }
    /// Of the last call on client() that failed, as half a sentence.
    QString errorText() const;
    /// What was made on client() has failed, or could not be made: lost() comes, and after a pause
    /// running() with another client. Not in a callback of the client, which is freed.
    void giveUp(const QString &why);

Q_SIGNALS:
    /// The daemon serves requests; comes again after the host has got another name.
    void running();
    /// It no longer does, or not yet: once for each time. What was made on client() has to be
    /// freed.
    void lost(const QString &why);

private:
    void connectToIt();
    void review(int state);
    void lose(const QString &why);

    AvahiClient *m_client = nullptr;
    QTimer m_retry;
    bool m_isLost = false; ///< and that was said
};

} // namespace zydiscovery

#endif // DAEMON_H
