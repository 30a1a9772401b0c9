// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What all bridges know of a job: zy/jobs/<group>/<job>, and a row of the ledger.

#ifndef JOBRECORD_H
#define JOBRECORD_H

#include <QJsonObject>
#include <QString>

#include <optional>

namespace zybridge
{

struct JobRecord {
    enum class State {
        Placing, ///< its file is brought to a printer
        Starting, ///< the printer has the file, and may have been asked to print it
        Printing,
        Complete,
        Failed,
        Stopped,
        Refused, ///< no printer would take it
        Doubtful, ///< nobody can say whether it was started; it is not started again
    };

    QString group;
    QString id;
    State state = State::Placing;
    int epoch = 1; ///< a bridge that takes the job over from another adds 1
    int step = 0; ///< a bridge adds 1 whenever it has news of the job in this epoch
    QString bridge; ///< whose job it is
    QString printer;
    QString file; ///< its name on the printer
    QString before; ///< the printer's last file when the job was about to start
    QString error; ///< of a refused job
    QString text;

    QString key() const { return group + QLatin1Char('/') + id; }
    /// Nothing more will happen to it.
    bool isOver() const { return state != State::Printing && isSettled(); }
    /// The request may be acknowledged: the job was started, or never will be.
    bool isSettled() const { return state != State::Placing && state != State::Starting; }

    QJsonObject toJson() const;
    /// Nothing when @p object is no record.
    static std::optional<JobRecord> fromJson(const QString &group, const QJsonObject &object);
};

/// Whether @p text may name a job: letters, digits, '-' and '_', at most 64.
bool isJobName(const QString &text);

} // namespace zybridge

#endif // JOBRECORD_H
