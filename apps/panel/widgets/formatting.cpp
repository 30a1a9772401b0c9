// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Amounts of data and time as people read them.

#include "formatting.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace zypanel
{

namespace
{

QString translated(const char *text)
{
    return QCoreApplication::translate("zypanel::Formatting", text);
}

} // namespace

QString sizeText(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes, 1);
}

QString durationText(qint64 seconds)
{
    if (seconds < 60)
        return translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 s")).arg(seconds);
    if (seconds < 3600)
        return translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 min %2 s"))
            .arg(seconds / 60)
            .arg(seconds % 60);
    return translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 h %2 min"))
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60);
}

QString progressText(qint64 received, qint64 total, double rate, qint64 secondsLeft)
{
    QStringList parts{translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 of %2"))
                          .arg(sizeText(received), sizeText(total))};
    if (rate > 0)
        parts.append(translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1/s"))
                         .arg(sizeText(static_cast<qint64>(rate))));
    if (secondsLeft >= 0)
        parts.append(translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 left"))
                         .arg(durationText(secondsLeft)));
    return parts.join(QStringLiteral("   ·   "));
}

QString timeText(const QString &printerText)
{
    bool isNumber = false;
    const qint64 seconds = printerText.toLongLong(&isNumber);
    return isNumber && seconds >= 0 ? durationText(seconds) : printerText;
}

QString lengthText(const QString &printerText)
{
    bool isNumber = false;
    const double millimetres = printerText.toDouble(&isNumber);
    return isNumber ? translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 mm"))
                          .arg(QLocale().toString(millimetres, 'g', 3))
                    : printerText;
}

} // namespace zypanel
