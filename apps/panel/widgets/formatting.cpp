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

const QString separator = QStringLiteral(" · ");
constexpr int longestName = 40;

QString translated(const char *text)
{
    return QCoreApplication::translate("zypanel::Formatting", text);
}

QString rateText(double bytesPerSecond)
{
    return translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1/s"))
        .arg(sizeText(static_cast<qint64>(bytesPerSecond)));
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
        parts.append(rateText(rate));
    if (secondsLeft >= 0)
        parts.append(translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 left"))
                         .arg(durationText(secondsLeft)));
    return parts.join(separator);
}

QString summaryText(qint64 bytes, qint64 milliseconds)
{
    const qint64 seconds = (milliseconds + 500) / 1000;
    if (seconds == 0)
        return sizeText(bytes);
    const QString text = translated(QT_TRANSLATE_NOOP("zypanel::Formatting", "%1 in %2"));
    return text.arg(sizeText(bytes), durationText(seconds)) + separator
        + rateText(static_cast<double>(bytes) * 1000.0 / static_cast<double>(milliseconds));
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

QString numberText(double value)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'g', 10);
}

QString localText(const QString &printerText)
{
    bool isNumber = false;
    const double number = printerText.toDouble(&isNumber);
    return isNumber ? numberText(number) : printerText;
}

std::optional<double> numberIn(const QString &typed)
{
    QString text = typed.trimmed();
    // Neither separates groups here: parameters are too small for that.
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional<double>(number) : std::nullopt;
}

QString shortened(const QString &name)
{
    if (name.size() <= longestName)
        return name;
    return name.left(longestName / 2) + QChar(0x2026) + name.right(longestName / 2 - 1);
}

} // namespace zypanel
