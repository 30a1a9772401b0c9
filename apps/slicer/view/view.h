// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How the program shows what its jobs report: one interface, and the choice of the form.

#ifndef VIEW_H
#define VIEW_H

#include "event.h"
#include "outcome.h"
#include "request.h"
#include "savedprinters.h"

#include <memory>

namespace zyslicer
{

class View
{
public:
    explicit View(const QVector<zysession::Printer> &printers) : m_printers(printers) { }
    virtual ~View() = default;

    virtual void report(int printer, const Event &event) = 0;
    virtual void endPrinter(int printer, const Outcomes &outcomes) = 0;
    /// All printers have ended, and errors may be written.
    virtual void finish() { }
    /// After the errors.
    virtual void sumUp() { }

protected:
    const QVector<zysession::Printer> &printers() const { return m_printers; }
    bool isSeveral() const { return m_printers.size() > 1; }

private:
    Q_DISABLE_COPY(View)

    QVector<zysession::Printer> m_printers;
};

/// The form that the request and the standard output call for.
std::unique_ptr<View> makeView(const Request &request, const QVector<zysession::Printer> &printers);

} // namespace zyslicer

#endif // VIEW_H
