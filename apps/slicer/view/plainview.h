// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Lines for files, pipes and terminals on which nothing can be drawn over.

#ifndef PLAINVIEW_H
#define PLAINVIEW_H

#include "textview.h"

class PlainView : public TextView
{
public:
    explicit PlainView(const QVector<Printer> &printers);

    void report(int printer, const Event &event) override;

private:
    QString progressText(int printer, const Event &event);
    QString statusText(int printer, const Event &event);

    QVector<QString> m_lastStep; ///< per printer, what was last told of progress or status
};

#endif // PLAINVIEW_H
