// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command to the printer: print, pause, stop, set, version, cancel.

#ifndef COMMANDSTEP_H
#define COMMANDSTEP_H

#include "step.h"

namespace zyslicer
{

class CommandStep : public Step
{
    Q_OBJECT

public:
    CommandStep(JobContext &context, Request::Command command);

    void start() override;

private:
    void ask();
    void askToPrint();
    void onEnded(const zysession::Exchange::Result &result);
    void endPrintBusy();
    void endCheckFailed();
    void onDone(const QJsonObject &answer);
    void reportPrint(Event::Kind kind);
    void reportAnswer(const QString &text, const QJsonObject &answer);
    void endNotTaken(const zysession::Exchange::Result &result);
    QString assignments(const QStringList &left) const;
    QString file() const;

    Request::Command m_command;
    zysession::Exchange m_exchange;
    zysession::Exchange m_before; ///< print: what the printer was doing
};

} // namespace zyslicer

#endif // COMMANDSTEP_H
