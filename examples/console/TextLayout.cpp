#include "TextLayout.h"

#include <BaseUtilities/CFormattedString.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cwchar>

namespace
{
// One character of UTF-8 text, or one byte that begins none.
struct CCharacter
{
    char32_t m_Code = 0;
    std::size_t m_Length = 1;
    bool m_Valid = false;
};

std::size_t SequenceLength(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

CCharacter FirstCharacter(std::string_view text)
{
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    auto const lead = static_cast<unsigned char>(text.front());
    std::size_t const length = SequenceLength(lead);
    if (length == 0 || length > text.size())
        return {};
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        auto const next = static_cast<unsigned char>(text[index]);
        if ((next & 0xC0U) != 0x80)
            return {};
        code = (code << 6U) | (next & 0x3FU);
    }
    bool const surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || surrogate)
        return {};
    return {code, length, true};
}

bool IsControl(char32_t code)
{
    bool const c0OrC1 = code < 0x20 || (code >= 0x7F && code < 0xA0);
    bool const line = code == 0x2028 || code == 0x2029;
    bool const direction = code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E)
                           || (code >= 0x2066 && code <= 0x2069);
    return c0OrC1 || line || direction;
}

// The system's table of widths for Unicode, whatever the user's locale.
locale_t Utf8Locale()
{
    static locale_t const locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

std::size_t CharacterWidth(char32_t code)
{
    if (code < 0x80 || Utf8Locale() == nullptr)
        return 1;
    locale_t const previous = uselocale(Utf8Locale());
    int const width = wcwidth(static_cast<wchar_t>(code));
    uselocale(previous);
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

// How many bytes of `text` fit into `width` columns; at least one character.
std::size_t FittingBytes(std::string_view text, std::size_t width)
{
    std::size_t used = 0;
    std::size_t columns = 0;
    while (used < text.size()) {
        CCharacter const next = FirstCharacter(text.substr(used));
        columns += CharacterWidth(next.m_Code);
        if (columns > width && used > 0)
            break;
        used += next.m_Length;
    }
    return used;
}

void WrapLine(std::string_view line, std::size_t width, std::vector<std::string>& lines)
{
    do {
        std::size_t used = FittingBytes(line, width);
        if (used < line.size()) {
            std::size_t const blank = line.substr(0, used + 1).find_last_of(' ');
            bool const indentation = line.find_first_not_of(' ') > blank;
            if (blank != std::string_view::npos && !indentation)
                used = blank + 1;
        }
        std::string_view const part = line.substr(0, used);
        lines.emplace_back(part.substr(0, part.find_last_not_of(' ') + 1));
        line.remove_prefix(used);
    } while (!line.empty());
}
} // namespace

std::string Printable(std::string_view text, bool keepLines)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string printable;
    while (!text.empty()) {
        CCharacter const next = FirstCharacter(text);
        bool const kept = keepLines && next.m_Valid && next.m_Code == '\n';
        if (kept || (next.m_Valid && !IsControl(next.m_Code))) {
            printable += text.substr(0, next.m_Length);
        } else {
            for (char const byte : text.substr(0, next.m_Length)) {
                auto const value = static_cast<unsigned char>(byte);
                printable += {'\\', 'x', digits[value >> 4U], digits[value & 0xFU]};
            }
        }
        text.remove_prefix(next.m_Length);
    }
    return printable;
}

std::size_t DisplayWidth(std::string_view text)
{
    std::size_t columns = 0;
    while (!text.empty()) {
        CCharacter const next = FirstCharacter(text);
        columns += CharacterWidth(next.m_Code);
        text.remove_prefix(next.m_Length);
    }
    return columns;
}

std::string ElideStart(std::string_view text, std::size_t width, std::string_view mark)
{
    std::size_t columns = DisplayWidth(text);
    if (columns <= width)
        return std::string(text);
    std::size_t const markWidth = DisplayWidth(mark);
    if (width <= markWidth)
        return std::string(mark.substr(0, width == markWidth ? mark.size() : 0));
    while (columns > width - markWidth) {
        CCharacter const first = FirstCharacter(text);
        columns -= CharacterWidth(first.m_Code);
        text.remove_prefix(first.m_Length);
    }
    return std::string(mark) + std::string(text);
}

std::string CutEnd(std::string_view text, std::size_t width)
{
    std::size_t used = 0;
    std::size_t columns = 0;
    while (used < text.size()) {
        CCharacter const next = FirstCharacter(text.substr(used));
        columns += CharacterWidth(next.m_Code);
        if (columns > width)
            break;
        used += next.m_Length;
    }
    return std::string(text.substr(0, used));
}

std::vector<std::string> Wrap(std::string_view text, std::size_t width)
{
    std::vector<std::string> lines;
    for (;;) {
        std::size_t const end = text.find('\n');
        WrapLine(text.substr(0, end), width, lines);
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + 1);
    }
}

std::string ByteText(std::uintmax_t bytes)
{
    constexpr std::array<char const*, 6> units = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    if (bytes < 1024)
        return std::to_string(bytes) + " B";
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; value >= 1023.95 && unit + 1 < units.size(); ++unit)
        value /= 1024;
    return CFormattedString("%.1f %s", value, units[unit]).get();
}
