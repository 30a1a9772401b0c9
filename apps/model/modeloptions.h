// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel's command line.

#ifndef MODELOPTIONS_H
#define MODELOPTIONS_H

#include <QString>

#include <optional>

namespace zymodel
{

struct ModelOptions {
    QString out; ///< the file to write; empty when one is to be checked
    QString check; ///< the file to check; empty when one is to be written
    int layers = 700;
    int width = 1440; ///< pixels
    int height = 2560; ///< pixels
    quint32 seed = 1;
    QString resin;
};

/// Nothing when the program is to go on, otherwise its exit code.
std::optional<int> readOptions(int argc, char **argv, ModelOptions &options);

} // namespace zymodel

#endif // MODELOPTIONS_H
