// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What values of options may be: times and rates.

#include "validators.h"

#include <cctype>
#include <cstring>
#include <sstream>

namespace zyslicer
{

CLI::Validator seconds(double least)
{
    const auto check = [least](const std::string &text) {
        constexpr double most = 86400;
        double value = 0;
        // Not CLI::Range, which takes "nan": that is neither below nor above anything.
        if (CLI::detail::lexical_cast(text, value) && value >= least && value <= most)
            return std::string();
        std::ostringstream error;
        error << "Value " << text << " not in range " << least << " to " << most;
        return error.str();
    };
    return CLI::Validator(check, "SECONDS");
}

long long rateOf(const std::string &text)
{
    constexpr double longest = 1e15;
    std::size_t length = 0;
    double value = 0;
    try {
        value = std::stod(text, &length);
    } catch (const std::logic_error &) {
        return 0;
    }
    const std::string unit = text.substr(length);
    for (const char *prefix = "KMG"; *prefix != '\0' && !unit.empty(); ++prefix) {
        value *= 1024;
        if (std::toupper(static_cast<unsigned char>(unit.front())) == *prefix)
            break;
    }
    const bool isUnit
        = unit.empty() || (unit.size() == 1 && std::strchr("kKmMgG", unit.front()) != nullptr);
    return isUnit && value >= 1 && value <= longest ? static_cast<long long>(value) : 0;
}

CLI::Validator rates()
{
    return CLI::Validator(
        [](const std::string &text) {
            return rateOf(text) > 0 ? std::string()
                                    : text + " is no number of bytes, such as 500K or 2M";
        },
        "RATE");
}

} // namespace zyslicer
