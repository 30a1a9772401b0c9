// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How many columns of a terminal a text takes: none, one or two for each character.

#include "displaywidth.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace zyapp
{

namespace
{

constexpr uint emojiSelector = 0xfe0f; ///< makes a narrow symbol a wide one

/// The table of the C library knows characters beyond ASCII in a locale of UTF-8 only, which the
/// user's need not be.
class UnicodeLocale
{
public:
    UnicodeLocale() : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
    {
        if (m_locale)
            m_before = uselocale(m_locale);
    }
    ~UnicodeLocale()
    {
        if (!m_locale)
            return;
        uselocale(m_before);
        freelocale(m_locale);
    }

    int width(uint character) const
    {
        constexpr int widest = 2;
        if (character < 0x80)
            return 1;
        const int width = m_locale ? wcwidth(static_cast<wchar_t>(character)) : widest;
        return width < 0 ? 1 : width;
    }

private:
    Q_DISABLE_COPY(UnicodeLocale)

    locale_t m_locale;
    locale_t m_before = nullptr;
};

/// How many characters of @p text fit into @p width columns, in UTF-16 units; @p columns they take.
int fitting(const QString &text, int width, int &columns)
{
    const UnicodeLocale locale;
    columns = 0;
    int units = 0;
    while (units < text.size()) {
        const bool isPair = text[units].isHighSurrogate() && units + 1 < text.size()
            && text[units + 1].isLowSurrogate();
        const uint character
            = isPair ? QChar::surrogateToUcs4(text[units], text[units + 1]) : text[units].unicode();
        const int more = character == emojiSelector ? 1 : locale.width(character);
        if (columns + more > width)
            break;
        columns += more;
        units += isPair ? 2 : 1;
    }
    return units;
}

} // namespace

int displayWidth(const QString &text)
{
    int columns = 0;
    fitting(text, 2 * int(text.size()), columns);
    return columns;
}

QString clipped(const QString &text, int width)
{
    int columns = 0;
    return text.left(fitting(text, width, columns));
}

QString elided(const QString &text, int width)
{
    if (displayWidth(text) <= width)
        return text;
    return width > 1 ? clipped(text, width - 1) + QChar(0x2026) : clipped(text, width);
}

QString padded(const QString &text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), QLatin1Char(' '));
}

} // namespace zyapp
