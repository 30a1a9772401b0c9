// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a job reports while it runs.

#ifndef EVENT_H
#define EVENT_H

#include "outcome.h"

#include <QJsonObject>
#include <QString>

namespace zyslicer
{

struct Event {
    enum class Kind {
        Reading, ///< file, received (bytes read), total: before the offer, for its digest
        Offered, ///< file: the printer is asked to take it
        Progress, ///< file, received, total
        Resumed, ///< file, received (the offset), total
        Restarted, ///< file, total: a retry that begins anew, the printer having lost its part
        Retrying, ///< text (why), retry, delay
        Stalled, ///< file, received, total, delay: without acknowledgement so far
        Waiting, ///< text (what for), delay: until the printer is asked again
        Cancelling, ///< file: the printer has not confirmed it yet
        Stored, ///< file, text (the name on the printer), total, checkState
        FileEnded, ///< file, outcome: of one of several files
        PrintChecking, ///< file
        PrintStarted, ///< file, isResumed
        Status, ///< file, answer: one of many while a print is followed
        Snapshot, ///< file, answer: the status that was asked for
        Answer, ///< text for people, answer for programs
    };

    Kind kind = Kind::Progress;
    QString file; ///< its name on the printer
    qint64 received = 0; ///< bytes
    qint64 total = 0; ///< bytes
    QString text;
    int retry = 0; ///< 1 is the first
    int delay = 0; ///< ms
    int checkState = 0; ///< the printer's verdict
    bool isResumed = false; ///< a paused print goes on
    QJsonObject answer;
    Outcome outcome = {};
};

} // namespace zyslicer

#endif // EVENT_H
