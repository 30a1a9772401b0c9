// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happens on the printer, as lines of text with the time of day.

#include "printerlog.h"

#include "errorline.h"

#include <QTime>

namespace zyprinter
{

void PrinterLog::add(const QString &text)
{
    constexpr int kept = 50;
    const QString line
        = QTime::currentTime().toString(QStringLiteral("HH:mm:ss ")) + zyapp::onOneLine(text);
    m_recent.append(line);
    if (m_recent.size() > kept)
        m_recent.removeFirst();
    Q_EMIT added(line);
}

} // namespace zyprinter
