// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How much work a run is to do, and the digest by which files are compared across processes.

#include "rounds.h"

#include <QCryptographicHash>

#include <algorithm>

namespace zytest
{

bool isSoak()
{
    return qEnvironmentVariableIntValue("ZYWEBSOCKET_SOAK") != 0;
}

bool isSanitized()
{
#ifdef ZY_SANITIZED
    return true;
#else
    return false;
#endif
}

int rounds(int usual)
{
    if (isSoak())
        return 10 * usual;
    return isSanitized() ? std::max(1, usual / 5) : usual;
}

int window()
{
    return std::max(1, qEnvironmentVariableIntValue("ZYTEST_WINDOW"));
}

QString digestOf(const QByteArray &contents)
{
    return QString::fromLatin1(QCryptographicHash::hash(contents, QCryptographicHash::Md5).toHex());
}

} // namespace zytest
