// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A short way to write texts.

#ifndef TEXTS_H
#define TEXTS_H

#include <QString>

inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}

#endif // TEXTS_H
