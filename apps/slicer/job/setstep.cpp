// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sets print parameters and reads them back.

#include "setstep.h"

#include "printerlink.h"
#include "wirewords.h"

#include <zysslechoclient.h>

namespace
{

/// Whether both texts mean the same value: printers write "3" as "3.0".
bool isSameValue(const QString &left, const QString &right)
{
    bool isLeftNumber = false;
    bool isRightNumber = false;
    const double leftNumber = left.toDouble(&isLeftNumber);
    const double rightNumber = right.toDouble(&isRightNumber);
    if (isLeftNumber && isRightNumber)
        return qFuzzyCompare(1.0 + leftNumber, 1.0 + rightNumber);
    return left == right;
}

} // namespace

SetStep::SetStep(PrinterLink &link, const QJsonObject &parameters, const QString &token)
    : Step(link), m_parameters(parameters), m_token(token), m_exchange(link)
{
    connect(&link, &PrinterLink::failed, this, &SetStep::endUnconnected);
    connect(&link, &PrinterLink::opened, this, [this] { ask(Stage::ReadingCurrent); });
    connect(&m_exchange, &Exchange::answered, this, &SetStep::onAnswered);
    connect(&m_exchange, &Exchange::unanswered, this,
            [this](const QString &reason) { endUnanswered(QStringLiteral("set"), reason); });
}

void SetStep::start()
{
    link().open();
}

void SetStep::ask(Stage stage)
{
    m_stage = stage;
    const int limit = link().limits().reply;
    if (stage == Stage::Setting) {
        m_exchange.ask(
            [this](ZySslEchoClient &client) { client.setPrintParaCmd(m_allParameters, m_token); },
            wire::printParaSet, limit);
    } else {
        m_exchange.ask([this](ZySslEchoClient &client) { client.getPrintStatusCmd(m_token); },
                       wire::getPrintStatus, limit);
    }
}

void SetStep::onAnswered(const QJsonObject &answer)
{
    if (m_stage == Stage::Setting) {
        ask(Stage::ReadingBack);
    } else if (answer.value(wire::printStatus).toString() == wire::tokenError) {
        endTokenRejected();
    } else if (m_stage == Stage::ReadingCurrent) {
        m_allParameters = allParameters(answer);
        ask(Stage::Setting);
    } else {
        compare(answer);
    }
}

QJsonObject SetStep::allParameters(const QJsonObject &status) const
{
    QJsonObject all;
    for (const QLatin1String &key : wire::parameters)
        all.insert(key, status.value(key).toString());
    for (auto it = m_parameters.begin(); it != m_parameters.end(); ++it)
        all.insert(it.key(), it.value());
    return all;
}

void SetStep::compare(const QJsonObject &status)
{
    for (auto it = m_parameters.begin(); it != m_parameters.end(); ++it) {
        const QString wanted = it.value().toString();
        const QString actual = status.value(it.key()).toString();
        if (isSameValue(wanted, actual))
            continue;
        end({ExitCode::Refused, QStringLiteral("parameter not taken"),
             QStringLiteral("%1=%2 on %3").arg(it.key(), wanted, link().printer().description()),
             QStringLiteral("the printer keeps %1; give a value it accepts").arg(actual)});
        return;
    }
    Event event;
    event.kind = Event::Kind::Answer;
    event.text = QStringLiteral("parameters set");
    event.answer = m_allParameters;
    Q_EMIT reported(event);
    end();
}
