// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Looking up what the panel says in its tables.

#include "words.h"

#include "wordtables.h"

#include <QCoreApplication>

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
    for (const auto &row : table) {
        if (matches(row))
            return &row;
    }
    return nullptr;
}

Notice unknownCode(const char *text, int code)
{
    return {Severity::Error, translated(text).arg(code)};
}

// Some sentences name no file; arg() would complain about them.
QString filledIn(const char *text, const QString &subject)
{
    const QString sentence = translated(text);
    return sentence.contains(QLatin1String("%1")) ? sentence.arg(subject) : sentence;
}

} // namespace

Notice transferErrorNotice(int code, int wifiState)
{
    const auto *row = findRow(transferErrors, [=](const TransferRow &entry) {
        return entry.code == code && (entry.wifiState == 0 || entry.wifiState == wifiState);
    });
    if (row == nullptr)
        return unknownCode(QT_TRANSLATE_NOOP("zypanel::Words",
                                             "The printer refused the file for an unknown reason "
                                             "(code %1)."),
                           code);
    return {row->severity, translated(row->text)};
}

Notice printAnswerNotice(int code, const QString &file)
{
    const auto *row
        = findRow(printAnswers, [=](const CodeRow &entry) { return entry.code == code; });
    if (row == nullptr)
        return unknownCode(QT_TRANSLATE_NOOP("zypanel::Words",
                                             "The printer gave an unknown answer to the print "
                                             "(code %1)."),
                           code);
    return {row->severity, translated(row->text).arg(file)};
}

Notice checkStateNotice(int checkState, const QString &file)
{
    const auto *row
        = findRow(checkStates, [=](const CodeRow &entry) { return entry.code == checkState; });
    if (row == nullptr) {
        // Not an error: the protocol attaches no meaning to the printer's verdict.
        const QString text = QCoreApplication::translate(
            "zypanel::Words", "%1 is on the printer. Its check gave the result %2.");
        return {Severity::Warning, text.arg(file, QString::number(checkState))};
    }
    return {row->severity, translated(row->text).arg(file)};
}

Notice commandResultNotice(Command command, const QString &word)
{
    const auto *row = findRow(commandResults, [&](const WordRow &entry) {
        return entry.command == command && entry.word == word;
    });
    if (row == nullptr) {
        const QString text = QCoreApplication::translate(
            "zypanel::Words", "The printer gave an unknown answer (“%1”).");
        return {Severity::Warning, text.arg(word)};
    }
    return {row->severity, translated(row->text)};
}

Notice linkFaultNotice(LinkFault fault, const QString &printer)
{
    const auto *row
        = findRow(linkFaults, [=](const LinkRow &entry) { return entry.fault == fault; });
    return {row->severity, translated(row->text).arg(printer)};
}

Notice fileFaultNotice(FileFault fault, const QString &name)
{
    const auto *row
        = findRow(fileFaults, [=](const FileRow &entry) { return entry.fault == fault; });
    return row == nullptr ? Notice() : Notice{Severity::Error, filledIn(row->text, name)};
}

State stateOfWord(const QString &word)
{
    const auto *row = findRow(states, [&](const StateRow &entry) { return entry.word == word; });
    return row == nullptr ? State::Unknown : row->state;
}

QString stateTitle(State state)
{
    const auto *row = findRow(states, [=](const StateRow &entry) { return entry.state == state; });
    return row == nullptr ? QCoreApplication::translate("zypanel::Words", "State unknown")
                          : translated(row->title);
}

Notice stateNotice(State state, const QString &file)
{
    const auto *row = findRow(states, [=](const StateRow &entry) { return entry.state == state; });
    if (row == nullptr)
        return {Severity::Warning,
                QCoreApplication::translate("zypanel::Words",
                                            "The printer does not say what it is doing.")};
    return {row->severity, filledIn(row->sentence, file)};
}

QString parameterTitle(const QString &key)
{
    const auto *row
        = findRow(parameters, [&](const ParameterRow &entry) { return entry.key == key; });
    return row == nullptr ? key : translated(row->title);
}

} // namespace zypanel
