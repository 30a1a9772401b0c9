// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zybridge's command line.

#ifndef BRIDGEOPTIONS_H
#define BRIDGEOPTIONS_H

#include <QString>

#include <optional>

namespace zybridge
{

struct BridgeOptions {
    QString file; ///< the configuration
    bool isCheck = false;
};

/// Nothing when the program is to go on, otherwise its exit code.
std::optional<int> readOptions(int argc, char **argv, BridgeOptions &options);

} // namespace zybridge

#endif // BRIDGEOPTIONS_H
