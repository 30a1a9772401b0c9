// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a fuzz target offers to its driver, libFuzzer or replay.cpp, and what it gets from it.

#ifndef FUZZTARGET_H
#define FUZZTARGET_H

#include <QByteArray>
#include <QStringList>

#include <cstddef>
#include <cstdint>

extern "C" {

/// Called once, before the first input: makes the QCoreApplication and keeps Qt quiet.
int LLVMFuzzerInitialize(int *argc, char ***argv);

/// Runs one input. Returns 0; a finding ends the process.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// A target's own way to make a mutant; most have none.
[[gnu::weak]] std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                                  std::size_t maxSize, unsigned seed);

/// The driver's way to make a mutant.
std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);
}

namespace fuzzing
{

/// Ends the process as a finding when @p holds is false.
void require(bool holds, const char *what);

/// The bytes of an input, which must outlive the array.
QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// The warnings that Qt and the library have logged since the last call. Debug lines are dropped.
QStringList takeWarnings();

/**
 * False for a payload that must not be tried: qUncompress() reserves as much memory as the first
 * four bytes say, which the driver would report for the library's own.
 */
bool isBearable(const QByteArray &payload);

} // namespace fuzzing

#endif // FUZZTARGET_H
