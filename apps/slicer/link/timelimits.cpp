// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The pause between two attempts.

#include "timelimits.h"

#include <algorithm>

int backOff(const Limits &limits, int retry)
{
    // Beyond 2^15 times the first pause the longest one is reached in any case.
    const long long doubled = static_cast<long long>(limits.firstBackOff)
        << std::clamp(retry - 1, 0, 15);
    return static_cast<int>(std::min<long long>(doubled, limits.longestBackOff));
}
