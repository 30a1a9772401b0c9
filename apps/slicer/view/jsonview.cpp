// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One JSON object a line, for programs.

#include "jsonview.h"

#include "standardoutput.h"

#include <QDateTime>
#include <QJsonDocument>

#include <cmath>

#include <vocabulary.h>

namespace zyslicer
{

namespace
{

namespace keys = zyws::keys;

QString kindName(Event::Kind kind)
{
    switch (kind) {
    case Event::Kind::Reading:
        return QStringLiteral("reading");
    case Event::Kind::Offered:
        return QStringLiteral("offered");
    case Event::Kind::Progress:
        return QStringLiteral("progress");
    case Event::Kind::Resumed:
        return QStringLiteral("resumed");
    case Event::Kind::Restarted:
        return QStringLiteral("restarted");
    case Event::Kind::Retrying:
        return QStringLiteral("retrying");
    case Event::Kind::Stalled:
        return QStringLiteral("stalled");
    case Event::Kind::Waiting:
        return QStringLiteral("waiting");
    case Event::Kind::Cancelling:
        return QStringLiteral("cancelling");
    case Event::Kind::Stored:
        return QStringLiteral("stored");
    case Event::Kind::FileEnded:
        return QStringLiteral("file-result");
    case Event::Kind::PrintChecking:
        return QStringLiteral("print-checking");
    case Event::Kind::PrintStarted:
        return QStringLiteral("print-started");
    case Event::Kind::Status:
    case Event::Kind::Snapshot:
        return QStringLiteral("status");
    case Event::Kind::Answer:
        return QStringLiteral("answer");
    }
    return {};
}

QJsonObject outcomeFields(const Outcome &outcome)
{
    return {{QStringLiteral("code"), static_cast<int>(outcome.code)},
            {QStringLiteral("message"), outcome.isOk() ? QString() : outcome.text()}};
}

/// A print that is followed has none.
QJsonObject withFile(const Event &event, QJsonObject object)
{
    if (!event.file.isEmpty())
        object.insert(QStringLiteral("file"), event.file);
    return object;
}

/// What the printer answers has numbers as texts. Where it names none, null stands; a text that is
/// no number stays.
QJsonObject withNumbers(QJsonObject answer)
{
    answer.remove(keys::cmd);
    QStringList numeric{keys::curSliceLayer, keys::sliceLayerCount, keys::printRemainTime,
                        keys::layerThickness};
    numeric += zysession::parameterKeys();
    for (const QString &key : qAsConst(numeric)) {
        const auto field = answer.find(key);
        if (field == answer.end() || !field->isString())
            continue;
        bool isNumber = false;
        const double number = field->toString().toDouble(&isNumber);
        if (isNumber && std::isfinite(number))
            *field = number;
        else if (field->toString().isEmpty())
            *field = QJsonValue();
    }
    return answer;
}

QJsonObject fields(const Event &event)
{
    switch (event.kind) {
    case Event::Kind::Reading:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("read"), event.received},
                {QStringLiteral("total"), event.total}};
    case Event::Kind::Progress:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("received"), event.received},
                {QStringLiteral("total"), event.total}};
    case Event::Kind::Resumed:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("offset"), event.received},
                {QStringLiteral("total"), event.total}};
    case Event::Kind::Restarted:
        return {{QStringLiteral("file"), event.file}, {QStringLiteral("total"), event.total}};
    case Event::Kind::Retrying:
        return withFile(event,
                        {{QStringLiteral("reason"), event.text},
                         {QStringLiteral("retry"), event.retry},
                         {QStringLiteral("delayMs"), event.delay}});
    case Event::Kind::Stalled:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("received"), event.received},
                {QStringLiteral("total"), event.total},
                {QStringLiteral("silentMs"), event.delay}};
    case Event::Kind::Waiting:
        return {{QStringLiteral("reason"), event.text}, {QStringLiteral("delayMs"), event.delay}};
    case Event::Kind::Stored:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("storedAs"), event.text},
                {QStringLiteral("total"), event.total},
                {QStringLiteral("checkState"), event.checkState}};
    case Event::Kind::FileEnded: {
        QJsonObject object = outcomeFields(event.outcome);
        object.insert(QStringLiteral("file"), event.file);
        return object;
    }
    case Event::Kind::PrintStarted:
        return {{QStringLiteral("file"), event.file}, {QStringLiteral("resumed"), event.isResumed}};
    case Event::Kind::Offered:
    case Event::Kind::Cancelling:
    case Event::Kind::PrintChecking:
        return {{QStringLiteral("file"), event.file}};
    case Event::Kind::Status:
    case Event::Kind::Snapshot:
    case Event::Kind::Answer:
        break;
    }
    return withNumbers(event.answer);
}

} // namespace

void writeJsonLine(const QString &event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), event);
    object.insert(QStringLiteral("time"),
                  QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    writeOut(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
             + QLatin1Char('\n'));
}

void writeJsonError(const Outcome &outcome)
{
    writeJsonLine(QStringLiteral("error"), outcomeFields(outcome));
}

void JsonView::report(int printer, const Event &event)
{
    write(printer, kindName(event.kind), fields(event));
}

void JsonView::endPrinter(int printer, const Outcomes &outcomes)
{
    QStringList failures;
    for (const Outcome &outcome : outcomes) {
        if (!outcome.isOk() && !failures.contains(outcome.text()))
            failures += outcome.text();
    }
    write(printer, QStringLiteral("result"),
          {{QStringLiteral("code"), static_cast<int>(combinedExitCode(outcomes))},
           {QStringLiteral("message"), failures.join(QLatin1Char('\n'))}});
}

void JsonView::write(int printer, const QString &event, QJsonObject object) const
{
    object.insert(QStringLiteral("printer"), printers()[printer].label());
    writeJsonLine(event, object);
}

} // namespace zyslicer
