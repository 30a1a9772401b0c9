// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job that the bridge has in hand.

#ifndef JOB_H
#define JOB_H

#include "jobrecord.h"
#include "placement.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QPointer>

#include <memory>

namespace zybridge
{

struct Job {
    /// The request as the broker delivered it, which it may do more than once.
    struct Copy {
        QPointer<MqttConnection> connection; ///< holds it until the job is settled
        Message message;

        void acknowledge() const
        {
            if (connection)
                connection->acknowledge(message.delivery);
        }
    };

    JobRecord record;
    QByteArray request; ///< payload
    FileRequest file;
    int arrival = 0; ///< the first job has 1
    bool isOwn = false; ///< claimed by this bridge, and in its ledger
    QByteArray asked; ///< when its printer was about to be asked to print it; empty: never
    int suspicions = 0; ///< printers that refused it
    QElapsedTimer missing; ///< since its file could not be fetched for the first time
    int vainFetches = 0; ///< in a row
    QDeadlineTimer rest; ///< until its file is fetched again
    int handOver = 0; ///< number of the message that gives it to another bridge; 0: none
    bool isTied = false; ///< the broker has refused that message
    QVector<Copy> copies;
    QVector<Copy>
        leaving; ///< given to another bridge by that message; they may come back as others
    std::unique_ptr<Placement> placement;

    /// The fault, empty when @p request names a job and its file.
    QString read(const QString &group, const QByteArray &payload);
    /// Forgets those that went back to the broker with their connection.
    void dropLostCopies();
};

} // namespace zybridge

#endif // JOB_H
