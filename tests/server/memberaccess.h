// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads the handle's private members, for what no reply ever shows.

#ifndef MEMBERACCESS_H
#define MEMBERACCESS_H

#include <QString>

#include <zyfiletranshandle.h>

namespace zytest
{

// An explicit instantiation may name private members, and the friend it defines hands them out.
#define ZYTEST_REVEAL(Tag, Type, member)                                                           \
    struct Tag {                                                                                   \
        friend Type &valueOf(Tag, ZyFileTransHandle &handle);                                      \
    };                                                                                             \
    template <Type ZyFileTransHandle::*pointer> struct Reveal##Tag {                               \
        friend Type &valueOf(Tag, ZyFileTransHandle &handle) { return handle.*pointer; }           \
    };                                                                                             \
    template struct Reveal##Tag<&ZyFileTransHandle::member>;

ZYTEST_REVEAL(FileDir, QString, m_fileDir)
ZYTEST_REVEAL(Key, QString, m_key)
ZYTEST_REVEAL(FileName, QString, m_fileName)
ZYTEST_REVEAL(TmpFileName, QString, m_tmpFileName)
ZYTEST_REVEAL(TransFileSize, qint64, m_transFileSize)
ZYTEST_REVEAL(TransOffset, qint64, m_transOffset)
ZYTEST_REVEAL(IsReceiving, bool, m_isReceiving)
ZYTEST_REVEAL(IsCompress, bool, m_isCompress)
ZYTEST_REVEAL(PrintState, int, m_printState)

#undef ZYTEST_REVEAL

} // namespace zytest

#endif // MEMBERACCESS_H
