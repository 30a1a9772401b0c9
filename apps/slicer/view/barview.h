// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Progress bars on a terminal, one line per printer, with news scrolling away above them.

#ifndef BARVIEW_H
#define BARVIEW_H

#include "progressline.h"
#include "textview.h"

#include <QTimer>

namespace zyslicer
{

class BarView : public TextView
{
public:
    explicit BarView(const QVector<zysession::Printer> &printers);

    void report(int printer, const Event &event) override;
    void endPrinter(int printer, const Outcomes &outcomes) override;
    void finish() override;

private:
    ProgressRow progressRow(int printer, const Event &event) const;
    ProgressRow stalledRow(int printer, const Event &event) const;
    ProgressRow storedRow(int printer, const Event &event) const;
    ProgressRow statusRow(int printer, const Event &event) const;
    QString label(int printer, const Event &event) const;
    void setNote(int printer, const Event &event, const QString &note);
    void drawSoon();
    void scroll(const QString &lines);
    void draw();
    QString eraseText();

    QVector<ProgressRow> m_rows;
    int m_drawnLines = 0;
    QTimer m_drawing;
};

} // namespace zyslicer

#endif // BARVIEW_H
