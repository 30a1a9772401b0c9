// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What values of options may be: times and rates.

#ifndef VALIDATORS_H
#define VALIDATORS_H

#include "commandline.h"

namespace zyslicer
{

/// Seconds, from @p least on, that fit an int of milliseconds.
CLI::Validator seconds(double least);

/// Bytes per second as in "500K" and "2.5M", where K is 1024; 0 for no such text.
long long rateOf(const std::string &text);
/// Texts of which rateOf() makes a number.
CLI::Validator rates();

} // namespace zyslicer

#endif // VALIDATORS_H
