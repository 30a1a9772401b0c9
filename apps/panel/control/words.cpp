// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Looking up what the panel says in its tables.

#include "words.h"

#include "wordtables.h"

#include <QCoreApplication>

#include <algorithm>

namespace zypanel
{

namespace
{

using namespace tables;

QString translated(const char *text)
{
    return QCoreApplication::translate("zypanel::Words", text);
}

template <typename Table, typename Matches>
auto findRow(const Table &table, Matches matches) -> decltype(&table[0])
{
    const auto row = std::find_if(std::begin(table), std::end(table), matches);
    return row == std::end(table) ? nullptr : &*row;
}

/// Not arg(): some sentences name no subject, about which arg() complains, and a subject may
/// contain what looks like a place for the next one.
QString filledIn(const char *text, const QString &first, const QString &second = QString())
{
    const QStringList parts = translated(text).split(QStringLiteral("%1"));
    QStringList filled;
    for (QString part : parts)
        filled.append(part.replace(QLatin1String("%2"), second));
    return filled.join(first);
}

Notice sentNotice(int checkState, const QString &name, const QString &printer)
{
    // The protocol attaches no meaning to a printer's verdict but to this one.
    const char *text = checkState == 1
        ? QT_TRANSLATE_NOOP("zypanel::Words", "%1 is on %2 and ready to print.")
        : QT_TRANSLATE_NOOP("zypanel::Words",
                            "%1 is on %2, which did not say whether it can print it.");
    return {Severity::Good, Topic::Upload, filledIn(text, name, printer)};
}

/// -1 comes from a printer that compares what it received with the digest, or has its own reasons.
Notice differentNotice(const QString &name, const QString &printer)
{
    const char *text = QT_TRANSLATE_NOOP(
        "zypanel::Words",
        "%2 did not get %1 as it is here, or finds it no model that it can print. Send it again.");
    return {Severity::Error, Topic::Upload, filledIn(text, name, printer)};
}

Notice cancelledNotice(bool isPartDeleted, const QString &name, const QString &printer)
{
    const char *text = isPartDeleted
        ? QT_TRANSLATE_NOOP("zypanel::Words",
                            "Sending %1 was cancelled; %2 has deleted what it had received.")
        : QT_TRANSLATE_NOOP("zypanel::Words",
                            "Sending %1 was cancelled, but %2 did not confirm that. It may keep "
                            "what it has received.");
    return {isPartDeleted ? Severity::Info : Severity::Warning, Topic::Upload,
            filledIn(text, name, printer)};
}

Notice interruptedNotice(Interruption why, const QString &name, const QString &printer)
{
    const auto *row = findRow(
        interruptions, [=](const InterruptionRow &each) { return each.interruption == why; });
    return {Severity::Error, Topic::Upload,
            filledIn(row ? row->text : interruptions[0].text, name, printer)};
}

} // namespace

Notice commandNotice(PrinterCommand command, zysession::Exchange::Ending ending,
                     const QString &subject)
{
    const Topic topic = command == PrinterCommand::SetParameters ? Topic::Parameters : Topic::Print;
    const auto *row = findRow(commandAnswers, [=](const CommandRow &each) {
        return each.command == command && each.answer == ending;
    });
    if (row == nullptr)
        return {Severity::Warning, topic,
                translated(QT_TRANSLATE_NOOP("zypanel::Words",
                                             "The printer gave an answer that makes no sense."))};
    return {row->severity, topic, filledIn(row->text, subject)};
}

Notice connectionFaultNotice(ConnectionFault fault, const QString &printer, const QString &detail)
{
    const auto *row
        = findRow(connectionFaults, [=](const ConnectionRow &each) { return each.fault == fault; });
    const QString text = filledIn(row ? row->text : std::rbegin(connectionFaults)->text, printer);
    const bool needsDetail = fault == ConnectionFault::Network || fault == ConnectionFault::Tls
        || fault == ConnectionFault::CertificateUntrusted;
    return {Severity::Error, Topic::Connection,
            needsDetail && !detail.isEmpty() ? QStringLiteral("%1 (%2)").arg(text, detail) : text};
}

Notice sendNotice(const ZySendResult &result, const QString &name, const QString &printer)
{
    switch (result.ending()) {
    case Ending::Sent:
        return sentNotice(result.checkState(), name, printer);
    case Ending::CheckFailed:
        if (result.checkState() == -1)
            return differentNotice(name, printer);
        break;
    case Ending::Cancelled:
        return cancelledNotice(result.isPartDeleted(), name, printer);
    case Ending::GaveUp:
        return interruptedNotice(result.interruption(), name, printer);
    case Ending::LocalFile:
        return fileFaultNotice(result.fileFault(), name);
    case Ending::NoConnection: {
        Notice notice = connectionFaultNotice(result.connectionFault(), printer, result.detail());
        notice.topic = Topic::Upload;
        return notice;
    }
    default:
        break;
    }
    const auto *row
        = findRow(sendEndings, [&](const SendRow &each) { return each.ending == result.ending(); });
    return {row->severity, Topic::Upload, filledIn(row->text, name, printer)};
}

Notice fileFaultNotice(FileFault fault, const QString &name)
{
    const auto *row = findRow(fileFaults, [=](const FileRow &each) { return each.fault == fault; });
    return row ? Notice{Severity::Error, Topic::Upload, filledIn(row->text, name)} : Notice();
}

QString stateTitle(State state)
{
    return translated(
        findRow(states, [=](const StateRow &each) { return each.state == state; })->title);
}

Notice stateNotice(State state, const QString &file)
{
    const auto *row = findRow(states, [=](const StateRow &each) { return each.state == state; });
    return {row->severity, Topic::Print, filledIn(row->sentence, file)};
}

ParameterTerms parameterTerms(const QString &key)
{
    const auto *row
        = findRow(parameters, [&](const ParameterRow &each) { return each.key == key; });
    if (row == nullptr)
        return {key, {}, 0, 0, false};
    const QString unit = *row->unit == '\0' ? QString() : translated(row->unit);
    return {translated(row->title), unit, row->least, row->most, row->isWhole};
}

QStringList parameterOrder()
{
    QStringList keys;
    for (const ParameterRow &row : parameters)
        keys.append(row.key);
    return keys;
}

} // namespace zypanel
