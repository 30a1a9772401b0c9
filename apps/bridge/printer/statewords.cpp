// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's status and the outcome of a command, as the topics carry them.

#include "statewords.h"

namespace zybridge
{

using zysession::Exchange;
using zysession::PrinterStatus;

namespace
{

/// A number where the printer's text is one.
QJsonValue valueOf(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? QJsonValue(number) : QJsonValue(text);
}

void insertText(QJsonObject &object, const QString &key, const QString &text)
{
    if (!text.isEmpty())
        object.insert(key, text);
}

} // namespace

QString statusWord(PrinterStatus::State state)
{
    switch (state) {
    case PrinterStatus::State::Ready:
        return QStringLiteral("idle");
    case PrinterStatus::State::Printing:
        return QStringLiteral("printing");
    case PrinterStatus::State::Complete:
        return QStringLiteral("complete");
    case PrinterStatus::State::Failed:
        return QStringLiteral("failed");
    case PrinterStatus::State::Ended:
        return QStringLiteral("stopped");
    case PrinterStatus::State::Paused:
        return QStringLiteral("paused");
    case PrinterStatus::State::Halting:
        return QStringLiteral("stopping");
    case PrinterStatus::State::Completing:
        return QStringLiteral("completing");
    case PrinterStatus::State::TokenRejected:
        return QStringLiteral("token-rejected");
    case PrinterStatus::State::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QJsonObject stateObject(const PrinterStatus &status)
{
    QJsonObject state{{QStringLiteral("status"), statusWord(status.state)}};
    insertText(state, QStringLiteral("file"), status.filename);
    if (status.layerCount > 0) {
        state.insert(QStringLiteral("layer"), status.layer);
        state.insert(QStringLiteral("layers"), status.layerCount);
    }
    if (status.remainingSeconds() >= 0)
        state.insert(QStringLiteral("remaining"), status.remainingSeconds());
    const QJsonValue thickness = valueOf(status.layerThickness);
    if (thickness.isDouble())
        state.insert(QStringLiteral("layerThickness"), thickness);
    insertText(state, QStringLiteral("resin"), status.resin);
    QJsonObject parameters;
    for (auto it = status.parameters.cbegin(); it != status.parameters.cend(); ++it) {
        const QJsonValue value = valueOf(it.value());
        if (value.isDouble())
            parameters.insert(it.key(), value);
    }
    state.insert(QStringLiteral("parameters"), parameters);
    return state;
}

Failure failureOf(const Exchange::Result &result)
{
    switch (result.ending) {
    case Exchange::Ending::Done:
        break;
    case Exchange::Ending::Busy:
        return {QStringLiteral("busy"),
                QStringLiteral("the printer prints, receives or checks a file")};
    case Exchange::Ending::CheckFailed:
        return {QStringLiteral("check-failed"),
                QStringLiteral("the printer lacks the file, or finds it no valid model")};
    case Exchange::Ending::Refused:
        return {QStringLiteral("refused"), QStringLiteral("the printer cannot do that now")};
    case Exchange::Ending::NotTaken:
        return {QStringLiteral("not-taken"),
                QStringLiteral("the printer keeps other values of: ")
                    + result.kept.join(QStringLiteral(", "))};
    case Exchange::Ending::TokenRejected:
        return {QStringLiteral("token-rejected"),
                QStringLiteral("the printer wants another token; see the section [tokens]")};
    case Exchange::Ending::NoAnswer:
        return {QStringLiteral("no-answer"),
                QStringLiteral("the printer has not answered in time")};
    case Exchange::Ending::ConnectionLost:
        return {QStringLiteral("offline"), QStringLiteral("there is no connection to the printer")};
    }
    return {};
}

} // namespace zybridge
