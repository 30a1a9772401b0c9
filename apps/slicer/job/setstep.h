// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sets print parameters and reads them back.

#ifndef SETSTEP_H
#define SETSTEP_H

#include "exchange.h"
#include "step.h"

/**
 * The printer's answer to PRINT_PARA_SET says nothing about the outcome, and a parameter left out
 * reaches the printer as empty text. So the current values are read first, all six are sent, and
 * the status is read again to see what the printer has taken.
 */
class SetStep : public Step
{
    Q_OBJECT

public:
    SetStep(PrinterLink &link, const QJsonObject &parameters, const QString &token);

    void start() override;

private:
    enum class Stage { ReadingCurrent, Setting, ReadingBack };

    void ask(Stage stage);
    void onAnswered(const QJsonObject &answer);
    QJsonObject allParameters(const QJsonObject &status) const;
    void compare(const QJsonObject &status);

    QJsonObject m_parameters;
    QJsonObject m_allParameters;
    QString m_token;
    Exchange m_exchange;
    Stage m_stage = Stage::ReadingCurrent;
};

#endif // SETSTEP_H
