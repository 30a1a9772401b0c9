// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What all steps have in common: ending once, and the failures that any of them can meet.

#include "step.h"

#include <QTimer>

#include <utility>

namespace zyslicer
{

namespace
{

using Fault = ZySendResult::ConnectionFault;
using zysession::Exchange;
using zysession::PrinterStatus;

constexpr int longestFinding = 3000; // ms: it only makes a message better

QString connectionAdvice(Fault fault, const QString &fingerprint)
{
    switch (fault) {
    case Fault::Refused:
        return QStringLiteral("nothing listens there: check the port, and that the printer's "
                              "program runs");
    case Fault::UnknownHost:
        return QStringLiteral("check the name, or give an IP address");
    case Fault::Tls:
        return QStringLiteral("most printers speak plain ws://; check the certificate of one that "
                              "speaks wss://");
    case Fault::NotAWebSocket:
        return QStringLiteral("something else answers there: check the address and the port");
    case Fault::BadAddress:
        return QStringLiteral("give a URL such as ws://192.168.1.20:8080");
    case Fault::CertificateUntrusted:
        return QStringLiteral(
                   "its SHA-256 fingerprint is %1: if that is the printer's, give it with "
                   "--fingerprint or save it with 'zyslicer printers add'; or name who "
                   "vouches for it with --ca")
            .arg(fingerprint);
    case Fault::CertificateChanged:
        return QStringLiteral("it shows %1: another device may pose as the printer, so nothing was "
                              "sent; if the printer has a new certificate, give that one's "
                              "--fingerprint")
            .arg(fingerprint);
    case Fault::TimedOut:
    case Fault::Network:
    case Fault::None:
        break;
    }
    return QStringLiteral("check that the printer is on, in this network and at this address");
}

} // namespace

void Step::interrupt()
{
    endInterrupted(m_context.link.isOpen()
                       ? QStringLiteral("the printer may still do what it was asked; look with "
                                        "'zyslicer status'")
                       : QStringLiteral("the printer has been asked nothing"));
}

QString Step::token() const
{
    return m_context.request.token.isNull() ? m_context.printer.token : m_context.request.token;
}

void Step::end(const Outcome &outcome)
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    Q_EMIT ended(outcome);
}

void Step::endInterrupted(const QString &consequence)
{
    end({ExitCode::Interrupted, QStringLiteral("interrupted"), printer(), consequence});
}

void Step::endUnconnected()
{
    endUnconnected(m_context.link.fault(), m_context.link.faultText(),
                   m_context.link.refusedFingerprint());
}

void Step::endUnconnected(Fault fault, const QString &detail, const QString &fingerprint)
{
    QString reason = ZySendResult::text(fault);
    if (fault == Fault::CertificateUntrusted)
        reason += QStringLiteral(": ") + detail;
    else if ((fault == Fault::Network || fault == Fault::Tls) && !detail.isEmpty())
        reason = detail;
    m_context.isWaitingInVain = !fingerprint.isEmpty();
    end({ExitCode::NoConnection, QStringLiteral("no connection (%1)").arg(reason), printer(),
         connectionAdvice(fault, fingerprint)});
}

void Step::endUnanswered(const QString &question, const QString &reason, bool isSilent)
{
    // The protocol has no answer to a command that a printer does not know.
    const QString advice = isSilent
        ? QStringLiteral("the connection is open, but the printer did not answer this command: it "
                         "may not know it, or be busy with something long")
        : QStringLiteral("look at the printer's state with 'zyslicer status' and try again");
    end({ExitCode::NoConnection, QStringLiteral("%1 not answered (%2)").arg(question, reason),
         printer(), advice});
}

void Step::findOut(const Finding &then)
{
    m_finding = then;
    m_question = std::make_unique<Exchange>(m_context.link);
    m_question->setToken(token());
    Exchange *question = m_question.get();
    const auto giveUp = [this] { onFound({}); };
    connect(question, &Exchange::ended, this, [this](const Exchange::Result &result) {
        onFound(result.ending == Exchange::Ending::Done ? PrinterStatus::fromReply(result.answer)
                                                        : PrinterStatus());
    });
    QTimer::singleShot(longestFinding, question, giveUp);
    if (m_context.link.isOpen()) {
        question->askStatus();
        return;
    }
    connect(&m_context.link, &zysession::PrinterLink::opened, question, &Exchange::askStatus);
    connect(&m_context.link, &zysession::PrinterLink::failed, question, giveUp);
    m_context.link.open();
}

void Step::onFound(const PrinterStatus &status)
{
    if (!m_finding)
        return;
    m_question.release()->deleteLater(); // it may be on the stack
    std::exchange(m_finding, nullptr)(status);
}

void Step::endBusyOr(const Outcome &otherwise, const QString &value)
{
    findOut([=](const PrinterStatus &status) {
        if (!status.hasJob()) {
            end(otherwise);
            return;
        }
        const QString what = status.canContinue() ? QStringLiteral("it holds a paused print of %1")
                                                  : QStringLiteral("it is printing %1");
        end({ExitCode::Busy, QStringLiteral("printer busy, ") + what.arg(status.filename), value,
             QStringLiteral("try again when that print has ended, or wait for it with --wait")});
    });
}

void Step::endTokenRejected()
{
    end({ExitCode::TokenRejected, QStringLiteral("token rejected"), printer(),
         QStringLiteral("give the printer's token with --token or ZYSLICER_TOKEN")});
}

QString unansweredText(const zysession::Exchange::Result &result)
{
    return result.ending == zysession::Exchange::Ending::NoAnswer
        ? QStringLiteral("no answer within %1 s").arg(result.timeLimit / 1000.0)
        : QStringLiteral("connection lost");
}

} // namespace zyslicer
