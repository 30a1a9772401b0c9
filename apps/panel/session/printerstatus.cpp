// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's state as its last status reply told it.

#include "printerstatus.h"

#include "words.h"

#include <QJsonObject>

#include <tuple>

namespace zypanel
{

namespace
{

QString text(const QJsonObject &reply, const char *key)
{
    return reply.value(QLatin1String(key)).toString();
}

auto fields(const PrinterStatus &status)
{
    return std::tie(status.word, status.filename, status.remainingTime, status.layerThickness,
                    status.resin, status.layer, status.layerCount, status.parameters);
}

} // namespace

PrinterStatus PrinterStatus::fromReply(const QJsonObject &reply)
{
    PrinterStatus status;
    status.word = text(reply, "printStatus");
    status.state = stateOfWord(status.word);
    status.filename = text(reply, "filename");
    status.remainingTime = text(reply, "printRemainTime");
    status.layerThickness = text(reply, "layerThickness");
    status.resin = text(reply, "resin");
    status.layer = qMax(0, text(reply, "curSliceLayer").toInt());
    status.layerCount = qMax(0, text(reply, "sliceLayerCount").toInt());
    for (const QString &key : parameterKeys())
        status.parameters.insert(key, reply.value(key).toString());
    return status;
}

bool PrinterStatus::hasJob() const
{
    return state == State::Printing || state == State::Paused || state == State::Halting
        || state == State::Completing;
}

bool PrinterStatus::canStop() const
{
    // Not while completing: the print is done, the plate is on its last way up.
    return hasJob() && state != State::Completing;
}

bool PrinterStatus::operator==(const PrinterStatus &other) const
{
    return fields(*this) == fields(other);
}

const QStringList &parameterKeys()
{
    static const QStringList keys{
        QStringLiteral("printExposure"),     QStringLiteral("initExposure"),
        QStringLiteral("bottomExposureNum"), QStringLiteral("delayLight"),
        QStringLiteral("printHeight"),       QStringLiteral("eleSpeed"),
    };
    return keys;
}

} // namespace zypanel
