// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's process with its receive directory, and senders that give it something to do.

#include "printerundertest.h"

#include "messagegate.h"
#include "modelfiles.h"
#include "rounds.h"

#include <QSignalSpy>
#include <QTest>

namespace zytest
{

bool works(QStringList wrapper)
{
    wrapper.append(QStringLiteral("true"));
    const QString program = wrapper.takeFirst();
    return runProgram(program, wrapper).exitCode == 0;
}

PrinterUnderTest::PrinterUnderTest() : m_seenDirectory(m_directory.path()) { }

bool PrinterUnderTest::start(const QStringList &options, const QStringList &wrapper)
{
    m_host = std::make_unique<HostProcess>(m_directory.path(), options, wrapper);
    return m_host->port() != 0;
}

QString PrinterUnderTest::file(const QByteArray &contents)
{
    return writeFile(m_local.filePath(QString::number(contents.size())), contents);
}

std::unique_ptr<SenderProcess> PrinterUnderTest::send(const QByteArray &contents,
                                                      const QStringList &options)
{
    return std::make_unique<SenderProcess>(m_host->url(), file(contents), options);
}

std::unique_ptr<SenderProcess> PrinterUnderTest::sendUpTo(MessageGate &gate,
                                                          const QByteArray &contents,
                                                          const QStringList &options,
                                                          const QStringList &wrapper)
{
    QSignalSpy reached(&gate, &MessageGate::reached);
    auto sender
        = std::make_unique<SenderProcess>(gate.url().toString(), file(contents), options, wrapper);
    return reached.wait(patience) ? std::move(sender) : nullptr;
}

void PrinterUnderTest::verifyNextJobSucceeds()
{
    const QByteArray contents = randomBytes(50000, 99);
    const auto sender = send(contents);
    QCOMPARE(sender->waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(m_host->events("finish").last().value(QLatin1String("digest")).toString(),
             digestOf(contents));
    QVERIFY(m_host->quit());
    QCOMPARE(m_host->exitCode(), 0);
}

} // namespace zytest
