// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's status and the outcome of a command, as the topics carry them.

#ifndef STATEWORDS_H
#define STATEWORDS_H

#include "exchange.h"

#include <QJsonObject>

namespace zybridge
{

/// "idle", "printing" …: the values of "status".
QString statusWord(zysession::PrinterStatus::State state);

/// The payload of zy/<printer>/state, without its time: numbers are numbers, and what the printer
/// does not say is left out.
QJsonObject stateObject(const zysession::PrinterStatus &status);

/// Why a command failed: a word for programs and a sentence for people. The word is empty when it
/// did not fail.
struct Failure {
    QString word;
    QString text;

    bool isNone() const { return word.isEmpty(); }
};

Failure failureOf(const zysession::Exchange::Result &result);

} // namespace zybridge

#endif // STATEWORDS_H
