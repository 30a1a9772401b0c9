// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What every fuzz target needs.

#include "fuzztarget.h"

#include <QCoreApplication>
#include <QtEndian>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace
{

constexpr quint32 bearablePrefix = 64 * 1024 * 1024;

QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    Q_UNUSED(context)
    if (type != QtDebugMsg && type != QtInfoMsg)
        warnings.append(text);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    qInstallMessageHandler(keepWarnings);
    return 0;
}

namespace fuzzing
{

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "finding: %s\n", what);
    std::abort();
}

QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
}

QStringList takeWarnings()
{
    return std::exchange(warnings, {});
}

bool isBearable(const QByteArray &payload)
{
    return payload.size() < 4 || qFromBigEndian<quint32>(payload.constData()) <= bearablePrefix;
}

} // namespace fuzzing
