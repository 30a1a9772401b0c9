// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A slicer as a process of its own: sends one file and reports every signal until the end.

#include "eventlines.h"

#include <zyfilesender.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMetaEnum>

#include <cstdio>

namespace
{

template <typename Enum> QString wordOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// How far the file has been sent is only in the log, which comes from the sender's thread.
void readLog(QtMsgType type, const QMessageLogContext &, const QString &line)
{
    if (line == QLatin1String("start send"))
        printEvent("sending");
    else if (line.startsWith(QLatin1String("sendBytes=")))
        printEvent("sent",
                   {{QStringLiteral("to"), line.section(QLatin1Char(' '), 1, 1).toLongLong()}});
    // Qt's word on a close frame for a connection that has ended a moment before: harmless.
    else if (type != QtDebugMsg
             && line != QLatin1String("QIODevice::write (QTcpSocket): device not open"))
        printEvent("warning", {{QStringLiteral("text"), line}});
}

void reportEnd(const ZySendResult &result)
{
    printEvent("finished",
               {{QStringLiteral("ending"), wordOf(result.ending())},
                {QStringLiteral("interruption"), wordOf(result.interruption())},
                {QStringLiteral("connectionFault"), wordOf(result.connectionFault())},
                {QStringLiteral("fileFault"), wordOf(result.fileFault())},
                {QStringLiteral("checkState"), result.checkState()},
                {QStringLiteral("bytes"), result.bytes()},
                {QStringLiteral("total"), result.total()},
                {QStringLiteral("storedName"), result.storedName()},
                {QStringLiteral("isPartDeleted"), result.isPartDeleted()},
                {QStringLiteral("sentence"), result.sentence()}});
    QCoreApplication::exit(0);
}

void connectReports(const ZyFileSender &sender)
{
    QObject::connect(&sender, &ZyFileSender::offered, [] { printEvent("offered"); });
    QObject::connect(&sender, &ZyFileSender::resumed, [](qint64 from) {
        printEvent("resumed", {{QStringLiteral("from"), from}});
    });
    QObject::connect(&sender, &ZyFileSender::restarted, [] { printEvent("restarted"); });
    QObject::connect(&sender, &ZyFileSender::progress, [](qint64 received, qint64 total) {
        printEvent("progress",
                   {{QStringLiteral("received"), received}, {QStringLiteral("total"), total}});
    });
    QObject::connect(&sender, &ZyFileSender::retrying,
                     [](ZySendResult::Interruption reason, int attempt, int pause) {
                         printEvent("retrying",
                                    {{QStringLiteral("reason"), wordOf(reason)},
                                     {QStringLiteral("attempt"), attempt},
                                     {QStringLiteral("pause"), pause}});
                     });
    QObject::connect(&sender, &ZyFileSender::finished, &reportEnd);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("url"), QStringLiteral("printer"));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("local file"));
    // Far more than anything but a fault takes.
    const QCommandLineOption limit(QStringLiteral("limit"),
                                   QStringLiteral("for connecting and for an answer"),
                                   QStringLiteral("ms"), QStringLiteral("60000"));
    const QCommandLineOption retries(QStringLiteral("retries"), {}, QStringLiteral("count"),
                                     QString::number(ZySendOptions().retries()));
    parser.addOptions({limit, retries});
    parser.process(application);
    if (parser.positionalArguments().size() != 2)
        parser.showHelp(2);

    ZySendOptions options;
    options.setConnectTimeout(parser.value(limit).toInt());
    options.setStallTimeout(parser.value(limit).toInt());
    options.setRetries(parser.value(retries).toInt());
    options.setFirstPause(20);
    options.setLongestPause(200);

    qInstallMessageHandler(&readLog);
    ZyFileSender sender(QUrl(parser.positionalArguments().at(0)),
                        parser.positionalArguments().at(1), QStringLiteral("part.bin"));
    sender.setOptions(options);
    connectReports(sender);
    quitWithStandardInput([&sender] {
        sender.cancel();
        printEvent("cancelling");
    });
    sender.start();
    return QCoreApplication::exec();
}
