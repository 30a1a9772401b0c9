// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One JSON object a line, for programs.

#include "jsonview.h"

#include "standardoutput.h"

#include <QJsonDocument>

#include <vocabulary.h>

namespace zyslicer
{

namespace
{

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
    case Event::Kind::Stored:
        return QStringLiteral("stored");
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
        return {{QStringLiteral("reason"), event.text},
                {QStringLiteral("retry"), event.retry},
                {QStringLiteral("delayMs"), event.delay}};
    case Event::Kind::Stored:
        return {{QStringLiteral("file"), event.file},
                {QStringLiteral("storedAs"), event.text},
                {QStringLiteral("total"), event.total},
                {QStringLiteral("checkState"), event.checkState}};
    case Event::Kind::Offered:
    case Event::Kind::PrintChecking:
    case Event::Kind::PrintStarted:
        return {{QStringLiteral("file"), event.file}};
    case Event::Kind::Status:
    case Event::Kind::Snapshot:
    case Event::Kind::Answer:
        break;
    }
    QJsonObject answer = event.answer;
    answer.remove(zyws::keys::cmd);
    return answer;
}

QJsonObject outcomeFields(const Outcome &outcome)
{
    return {{QStringLiteral("code"), static_cast<int>(outcome.code)},
            {QStringLiteral("message"), outcome.isOk() ? QString() : outcome.text()}};
}

} // namespace

void writeJsonLine(const QJsonObject &object)
{
    writeOut(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
             + QLatin1Char('\n'));
}

void writeJsonError(const Outcome &outcome)
{
    QJsonObject object = outcomeFields(outcome);
    object.insert(QStringLiteral("event"), QStringLiteral("error"));
    writeJsonLine(object);
}

void JsonView::report(int printer, const Event &event)
{
    write(printer, kindName(event.kind), fields(event));
}

void JsonView::endPrinter(int printer, const Outcome &outcome)
{
    write(printer, QStringLiteral("result"), outcomeFields(outcome));
}

void JsonView::write(int printer, const QString &event, QJsonObject object) const
{
    object.insert(QStringLiteral("event"), event);
    object.insert(QStringLiteral("printer"), printers()[printer].label());
    writeJsonLine(object);
}

} // namespace zyslicer
