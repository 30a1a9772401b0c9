// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter's command line.

#ifndef PRINTEROPTIONS_H
#define PRINTEROPTIONS_H

#include <QString>

#include <optional>

namespace zyprinter
{

struct PrinterOptions {
    QString directory;
    quint16 port = 0; ///< 0: the system chooses
    QString token; ///< empty: none is needed
    double speed = 1000;
    QString name;
    int failAt = 0; ///< layer; 0: none
    double slowCheck = 0; ///< seconds
    bool refuse = false;
    bool view = false;
    QString preview; ///< directory; empty: none
};

/// Nothing when the program is to go on, otherwise its exit code.
std::optional<int> readOptions(int argc, char **argv, PrinterOptions &options);

} // namespace zyprinter

#endif // PRINTEROPTIONS_H
