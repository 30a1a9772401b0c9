// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends a file as a careful application does: notices drops and stalls, and resends until done.

#ifndef PERSISTENTSENDER_H
#define PERSISTENTSENDER_H

#include <QJsonObject>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <memory>

class ZySslEchoClient;

/**
 * Prints what happens as events and ends the application: exit code 0 after a file that the
 * printer found good or after the planned cancel, 1 after a failure.
 *
 * Events: "connected", "progress" {received}, "reply" {…START_FILE…}, "transError" {code},
 * "attempt" {offset, sentTo, received, why} at the end of each, "finish" {checkstate}, "cancelled",
 * "failed".
 */
class PersistentSender : public QObject
{
    Q_OBJECT

public:
    struct Plan {
        QUrl url;
        QString file;
        bool isClientReused = false; ///< openWithUrl() instead of a new client for each attempt
        int attempts = 200;
        int stall = 60000; ///< without any sign of life for so long (ms), an attempt is given up
        int dropAfter = 0; ///< close() after so many chunks of the first attempt; 0: never
        int cancelAfter = 0; ///< cancel() after so many chunks; 0: never
    };

    explicit PersistentSender(Plan plan);
    ~PersistentSender() override;

private:
    struct Attempt {
        qint64 offset = -1; ///< where the printer wanted the file from
        qint64 sentTo = -1; ///< how far into the file chunks were sent
        qint64 received = -1; ///< what the printer acknowledged
        int chunks = 0;
        bool isOver = false;
        const char *why = "";
    };

    static void readLog(QtMsgType type, const QMessageLogContext &context, const QString &line);

    void startAttempt();
    void connectClient();
    void onReply(const QJsonObject &reply);
    void onProgress(qint64 received);
    void onTransError(int code);
    void endAttempt(const char *why);
    void goOn();
    void giveUp();

    const Plan m_plan;
    std::unique_ptr<ZySslEchoClient> m_client;
    QTimer m_stall;
    QTimer m_connecting;
    Attempt m_attempt;
    int m_attemptCount = 0;
    bool m_isSendLoopRunning = false;
    int m_exitCode = -1; ///< what to end with after this attempt; -1: another attempt
};

#endif // PERSISTENTSENDER_H
