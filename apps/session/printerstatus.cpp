// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer is doing, as its last status reply says.

#include "printerstatus.h"

#include "wirewords.h"

#include <QJsonObject>

#include <algorithm>
#include <limits>

namespace zysession
{

namespace
{

using State = PrinterStatus::State;

State stateOf(const QString &word)
{
    struct Row {
        QLatin1String word;
        State state;
    };
    // Deliberate spelling of PRINT_STOPING: the printer's.
    static const Row rows[] = {
        {QLatin1String("PRINT_GENERAL"), State::Ready},
        {QLatin1String("PRINT_PROCESSING"), State::Printing},
        {QLatin1String("PRINT_COMPLETE"), State::Complete},
        {QLatin1String("PRINT_FAIL"), State::Failed},
        {QLatin1String("PRINT_END"), State::Ended},
        {QLatin1String("PRINT_STOP"), State::Paused},
        {QLatin1String("PRINT_STOPING"), State::Halting},
        {QLatin1String("PRINT_COMPLETING"), State::Completing},
        {wire::tokenError, State::TokenRejected},
    };
    const auto row = std::find_if(std::begin(rows), std::end(rows),
                                  [&](const Row &each) { return each.word == word; });
    return row == std::end(rows) ? State::Unknown : row->state;
}

/// 0 for what is no count.
int countOf(const QString &text)
{
    const double number = text.toDouble();
    return number > 0 && number < std::numeric_limits<int>::max() ? static_cast<int>(number) : 0;
}

} // namespace

const QStringList &parameterKeys()
{
    static const QStringList keys(std::begin(wire::parameters), std::end(wire::parameters));
    return keys;
}

bool isSameValue(const QString &left, const QString &right)
{
    bool isLeftNumber = false;
    bool isRightNumber = false;
    const double leftNumber = left.toDouble(&isLeftNumber);
    const double rightNumber = right.toDouble(&isRightNumber);
    return left == right
        || (isLeftNumber && isRightNumber && qFuzzyCompare(1.0 + leftNumber, 1.0 + rightNumber));
}

PrinterStatus PrinterStatus::fromReply(const QJsonObject &reply)
{
    const auto text = [&](QLatin1String key) { return reply.value(key).toString(); };
    PrinterStatus status;
    status.word = text(wire::printStatus);
    status.state = stateOf(status.word);
    status.filename = text(wire::filename);
    status.remainingTime = text(wire::printRemainTime);
    status.layerThickness = text(wire::layerThickness);
    status.resin = text(wire::resin);
    status.layer = countOf(text(wire::curSliceLayer));
    status.layerCount = countOf(text(wire::sliceLayerCount));
    for (const QLatin1String &key : wire::parameters)
        status.parameters.insert(key, text(key));
    return status;
}

bool PrinterStatus::hasJob() const
{
    return state == State::Printing || state == State::Paused || state == State::Halting
        || state == State::Completing;
}

bool PrinterStatus::canStop() const
{
    // Not while completing: the print is done.
    return hasJob() && state != State::Completing;
}

double PrinterStatus::layerFraction() const
{
    if (layerCount == 0)
        return -1;
    return std::min(1.0, static_cast<double>(layer) / layerCount);
}

qint64 PrinterStatus::remainingSeconds() const
{
    bool isNumber = false;
    const qint64 seconds = remainingTime.toLongLong(&isNumber);
    return isNumber && seconds >= 0 ? seconds : -1;
}

bool PrinterStatus::operator==(const PrinterStatus &other) const
{
    return word == other.word && filename == other.filename && resin == other.resin
        && layer == other.layer && layerCount == other.layerCount
        && isSameValue(remainingTime, other.remainingTime)
        && isSameValue(layerThickness, other.layerThickness)
        && std::equal(parameters.begin(), parameters.end(), other.parameters.begin(),
                      other.parameters.end(), isSameValue);
}

} // namespace zysession
