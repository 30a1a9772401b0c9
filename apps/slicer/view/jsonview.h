// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One JSON object a line, for programs.

#ifndef JSONVIEW_H
#define JSONVIEW_H

#include "view.h"

#include <QJsonObject>

namespace zyslicer
{

/// One object, one line, with the time.
void writeJsonLine(const QString &event, QJsonObject object);
/// An "error" that belongs to no printer: none was asked yet.
void writeJsonError(const Outcome &outcome);

class JsonView : public View
{
public:
    using View::View;

    void report(int printer, const Event &event) override;
    void endPrinter(int printer, const Outcomes &outcomes) override;

private:
    void write(int printer, const QString &event, QJsonObject object) const;
};

} // namespace zyslicer

#endif // JSONVIEW_H
