// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a ZySendResult holds.

#ifndef SENDRESULTDATA_H
#define SENDRESULTDATA_H

#include "zysendresult.h"

struct ZySendResult::Data : QSharedData {
    Ending ending = Ending::Sent;
    int checkState = 0;
    ConnectionFault connectionFault = ConnectionFault::None;
    QString refusedFingerprint;
    FileFault fileFault = FileFault::None;
    Interruption interruption = Interruption::None;
    bool isPartDeleted = false;
    QString storedName;
    qint64 bytes = 0;
    qint64 total = 0;
    QString name; ///< the file's, as it was offered; its path for a fault of the file itself
    QString printer; ///< its address
    QString detail; ///< more about the ending, in English: the system's words, a contradiction
};

#endif // SENDRESULTDATA_H
