// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How much work a run is to do, and the digest by which files are compared across processes.

#ifndef ROUNDS_H
#define ROUNDS_H

#include <QByteArray>
#include <QString>

namespace zytest
{

constexpr qint64 mebibyte = 1024 * 1024;

/// True when the environment asks for the long run (ZYWEBSOCKET_SOAK=1).
bool isSoak();

/// True when everything is built with sanitizers, and slow.
bool isSanitized();

/// How many rounds to do: @p usual, a fifth of it with sanitizers, ten times as many in a soak.
int rounds(int usual);

/// How many chunks the printers of this run announce that they bear under way: ZYTEST_WINDOW, or 1.
int window();

/// As the host reports a finished file.
QString digestOf(const QByteArray &contents);

} // namespace zytest

#endif // ROUNDS_H
