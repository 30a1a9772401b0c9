// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that announce themselves: the one of a name, and the command "discover".

#ifndef SEARCH_H
#define SEARCH_H

#include "outcome.h"
#include "printerbrowser.h"
#include "request.h"
#include "savedprinters.h"

#include <functional>

namespace zyslicer
{

class Search
{
public:
    /// Waits for the printer of this name, for some seconds or, on @p isWaiting, until it comes.
    Outcome find(const QString &name, bool isWaiting, zysession::Printer &printer);
    /// Waits for all that answer, but no longer than @p limit ms.
    Outcome findAll(int limit, QVector<zydiscovery::FoundPrinter> &printers);

private:
    /// Negative: without a limit.
    Outcome wait(int limit, const std::function<bool()> &isDone);

    zydiscovery::PrinterBrowser m_browser;
};

/// Writes those that were found.
Outcome runDiscoverCommand(const Request &request);

} // namespace zyslicer

#endif // SEARCH_H
