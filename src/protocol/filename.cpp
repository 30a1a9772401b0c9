// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The names of files on the printer: its own, and which ones a file may be sent under.

#include "filename.h"

#include <algorithm>

namespace zyws
{

NameFault nameFault(const QString &name)
{
    constexpr int longestName = 255; // bytes, on any file system of a printer
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (name.isEmpty())
        return NameFault::Empty;
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return NameFault::Separator;
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return NameFault::Directory;
    if (std::any_of(name.begin(), name.end(), isControl))
        return NameFault::ControlCharacter;
    if (name.compare(temporaryFileName, Qt::CaseInsensitive) == 0)
        return NameFault::Reserved;
    return name.toUtf8().size() > longestName ? NameFault::TooLong : NameFault::None;
}

} // namespace zyws
