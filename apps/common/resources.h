// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a program needs of the system before it begins: open files, and its output written.

#ifndef RESOURCES_H
#define RESOURCES_H

#include <QString>

namespace zyapp
{

/**
 * Whether @p count more files and sockets can be open at once; raises the soft limit for that as
 * far as the system allows. To be asked early: what runs out of them later ends, in places, by a
 * signal.
 */
bool canOpen(int count);
/// Says on standard error that canOpen() is false.
void printTooFewOpenFiles(const QString &program, int count);

/// @p code once standard output is written; else, after a line on standard error, @p failure in the
/// place of 0.
int onceWritten(const QString &program, int code, int failure);

} // namespace zyapp

#endif // RESOURCES_H
