// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Starts the print of a file that is on the printer.

#include "printstep.h"

#include "printerlink.h"
#include "wirewords.h"

#include <zysslechoclient.h>

PrintStep::PrintStep(PrinterLink &link, const JobNotes &notes, const QString &fileName,
                     const QString &token)
    : Step(link), m_notes(notes), m_fileName(fileName), m_token(token), m_exchange(link)
{
    connect(&link, &PrinterLink::failed, this, &PrintStep::endUnconnected);
    connect(&link, &PrinterLink::opened, this, &PrintStep::onOpened);
    connect(&m_exchange, &Exchange::answered, this, &PrintStep::onAnswered);
    connect(&m_exchange, &Exchange::unanswered, this, [this](const QString &reason) {
        endUnanswered(QStringLiteral("print start"), reason);
    });
}

void PrintStep::start()
{
    if (m_fileName.isEmpty())
        m_fileName = m_notes.storedName;
    link().open();
}

void PrintStep::onOpened()
{
    m_exchange.ask([this](ZySslEchoClient &client) { client.printStartCmd(m_fileName, m_token); },
                   wire::startPrint, link().limits().reply);
}

void PrintStep::onAnswered(const QJsonObject &answer)
{
    const QString status = answer.value(wire::status).toString();
    if (status == wire::checking && !m_isChecking) {
        m_isChecking = true;
        report(Event::Kind::PrintChecking);
        if (!hasEnded()) // the check's result is a second answer
            m_exchange.await(wire::startPrint, link().limits().check);
    } else if (status == wire::started) {
        report(Event::Kind::PrintStarted);
        end();
    } else if (status == wire::printTokenError) {
        endTokenRejected();
    } else if (status == wire::busy) {
        endRefused(ExitCode::Busy, QStringLiteral("printer busy"),
                   QStringLiteral("wait until 'zyslicer status' shows that it is free"));
    } else {
        endRefused(ExitCode::CheckFailed, QStringLiteral("check failed"),
                   QStringLiteral("the printer lacks this file or it is no valid model; send it "
                                  "again"));
    }
}

void PrintStep::report(Event::Kind kind)
{
    Event event;
    event.kind = kind;
    event.file = m_fileName;
    Q_EMIT reported(event);
}

void PrintStep::endRefused(ExitCode code, const QString &what, const QString &advice)
{
    end({code, what, QStringLiteral("%1 on %2").arg(m_fileName, link().printer().description()),
         advice});
}
