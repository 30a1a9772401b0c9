// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A record of the text messages of a test run, to be held against the protocol's schemas.

#ifndef MESSAGELOG_H
#define MESSAGELOG_H

class QString;

namespace zytest
{

enum class Sender {
    Slicer,
    Printer,
};

enum class Maker {
    Library,
    Test, ///< which may have misspelt it on purpose
};

/// Appends a line to a file of this process in the directory that ZYWS_MESSAGE_LOG names; does
/// nothing without it.
void logMessage(Sender sender, Maker maker, const QString &text);

} // namespace zytest

#endif // MESSAGELOG_H
