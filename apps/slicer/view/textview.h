// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the views for people share: lines of news and the summary of several printers.

#ifndef TEXTVIEW_H
#define TEXTVIEW_H

#include "transferlog.h"
#include "view.h"

class TextView : public View
{
public:
    explicit TextView(const QVector<Printer> &printers);

    void endPrinter(int printer, const Outcome &outcome) override;
    void finish() override;

protected:
    /// Lines of @p text, marked with the printer's name when there are several.
    QString marked(int printer, const QString &text) const;
    TransferLog &transfers() { return m_transfers; }
    const TransferLog &transfers() const { return m_transfers; }

private:
    QString summary() const;

    TransferLog m_transfers;
    QVector<Outcome> m_outcomes;
};

#endif // TEXTVIEW_H
