// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer is doing, as its last status reply says.

#include "printerstatus.h"

#include <QJsonObject>

#include <algorithm>
#include <limits>

#include <vocabulary.h>

namespace zysession
{

namespace
{

using State = PrinterStatus::State;
namespace keys = zyws::keys;
namespace printstates = zyws::printstates;

State stateOf(const QString &word)
{
    struct Row {
        QLatin1String word;
        State state;
    };
    static constexpr Row rows[] = {
        {printstates::general, State::Ready},
        {printstates::processing, State::Printing},
        {printstates::complete, State::Complete},
        {printstates::fail, State::Failed},
        {printstates::end, State::Ended},
        {printstates::stop, State::Paused},
        {printstates::stopping, State::Halting},
        {printstates::completing, State::Completing},
        {printstates::tokenError, State::TokenRejected},
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
    static const QStringList keys(std::begin(keys::parameters), std::end(keys::parameters));
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
    status.word = text(keys::printStatus);
    status.state = stateOf(status.word);
    status.filename = text(keys::filename);
    status.remainingTime = text(keys::printRemainTime);
    status.layerThickness = text(keys::layerThickness);
    status.resin = text(keys::resin);
    status.layer = countOf(text(keys::curSliceLayer));
    status.layerCount = countOf(text(keys::sliceLayerCount));
    for (const QLatin1String &key : keys::parameters)
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
