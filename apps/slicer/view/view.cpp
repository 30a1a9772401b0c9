// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The choice of the form in which the program shows its work.

#include "view.h"

#include "barview.h"
#include "jsonview.h"
#include "standardoutput.h"
#include "textview.h"

namespace zyslicer
{

namespace
{

class QuietView : public View
{
public:
    using View::View;
    void report(int, const Event &) override { }
    void endPrinter(int, const Outcomes &) override { }
};

} // namespace

std::unique_ptr<View> makeView(const Request &request, const QVector<zysession::Printer> &printers)
{
    if (request.isQuiet)
        return std::make_unique<QuietView>(printers);
    if (request.isJson)
        return std::make_unique<JsonView>(printers);
    // Lines that have scrolled away cannot be drawn over.
    if (isTerminal() && terminalSize().height() > printers.size() + 1)
        return std::make_unique<BarView>(printers);
    return std::make_unique<PlainView>(printers);
}

} // namespace zyslicer
