// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Looks the wire words up in the handle's meta-object. The only file outside the server that sees
// one of its headers, because the enumerations are declared there and spelled nowhere else.

#include "vocabulary.h"

#include "zyfiletranshandle.h"

#include <QMetaEnum>

namespace zyws
{

namespace
{

QLatin1String keyOf(const char *enumeration, int value)
{
    const QMetaObject &meta = ZyFileTransHandle::staticMetaObject;
    return QLatin1String(meta.enumerator(meta.indexOfEnumerator(enumeration)).valueToKey(value));
}

constexpr bool agrees(Command command, ZyFileTransHandle::TRANSCMD declared)
{
    return static_cast<int>(command) == static_cast<int>(declared);
}

constexpr bool agrees(PrintStart result, ZyFileTransHandle::STAET_PRINT_STATUS declared)
{
    return static_cast<int>(result) == static_cast<int>(declared);
}

static_assert(agrees(Command::StartFile, ZyFileTransHandle::START_FILE));
static_assert(agrees(Command::CancelFile, ZyFileTransHandle::CANCEL_FILE));
static_assert(agrees(Command::StartData, ZyFileTransHandle::START_DATA));
static_assert(agrees(Command::CheckData, ZyFileTransHandle::CHECK_DATA));
static_assert(agrees(Command::StartPrint, ZyFileTransHandle::START_PRINT));
static_assert(agrees(Command::PrintPause, ZyFileTransHandle::PRINT_PAUSE));
static_assert(agrees(Command::PrintStop, ZyFileTransHandle::PRINT_STOP));
static_assert(agrees(Command::GetPrintStatus, ZyFileTransHandle::GET_PRINT_STATUS));
static_assert(agrees(Command::VersionCheck, ZyFileTransHandle::VERSION_CHECK));
static_assert(agrees(Command::PrintParaSet, ZyFileTransHandle::PRINT_PARA_SET));
static_assert(agrees(Command::PrintWorkingLife, ZyFileTransHandle::PRINT_WORKING_LIFE));

static_assert(agrees(PrintStart::UnStart, ZyFileTransHandle::UN_START));
static_assert(agrees(PrintStart::Busy, ZyFileTransHandle::BUSY));
static_assert(agrees(PrintStart::Checking, ZyFileTransHandle::CHECKING));
static_assert(agrees(PrintStart::CheckFalse, ZyFileTransHandle::CHECK_FALSE));
static_assert(agrees(PrintStart::Started, ZyFileTransHandle::STARTED));
static_assert(agrees(PrintStart::TokenError, ZyFileTransHandle::PRINT_TOKEN_ERROR));

} // namespace

QLatin1String wireWord(Command command)
{
    return keyOf("TRANSCMD", static_cast<int>(command));
}

QLatin1String wireWord(PrintStart result)
{
    return keyOf("STAET_PRINT_STATUS", static_cast<int>(result));
}

} // namespace zyws
