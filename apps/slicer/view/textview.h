// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The views for people: what they share, and lines for files, pipes and simple terminals.

#ifndef TEXTVIEW_H
#define TEXTVIEW_H

#include "transferlog.h"
#include "view.h"

#include <optional>

namespace zyslicer
{

/// Lines of news and the summary of several printers.
class TextView : public View
{
public:
    explicit TextView(const QVector<zysession::Printer> &printers);

    void endPrinter(int printer, const Outcomes &outcomes) override;
    void sumUp() override;

protected:
    /// Lines of @p text, marked with the printer's name when there are several.
    QString marked(int printer, const QString &text) const;
    /// Notes the event; what it is to people, as eventText(). A status is kept for the table of
    /// several printers.
    QString news(int printer, const Event &event);
    const TransferLog &transfers() const { return m_transfers; }

private:
    using Table = QVector<QStringList>;

    Table statusTable() const;
    QStringList summaryRow(int printer, const Outcome &outcome, bool isTransfer) const;
    bool hasSeveralFiles() const;

    TransferLog m_transfers;
    QVector<Outcomes> m_outcomes;
    QVector<std::optional<zysession::PrinterStatus>> m_snapshots;
};

/// For where nothing can be drawn over.
class PlainView : public TextView
{
public:
    explicit PlainView(const QVector<zysession::Printer> &printers);

    void report(int printer, const Event &event) override;

private:
    QString progressText(int printer, const Event &event);
    QString readingText(int printer, const Event &event);
    QString statusText(int printer, const Event &event);
    bool isNews(int printer, const QString &step);

    QVector<QString> m_lastStep; ///< per printer, what was last written of progress or status
};

} // namespace zyslicer

#endif // TEXTVIEW_H
