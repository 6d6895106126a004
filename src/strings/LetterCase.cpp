#include <BaseUtilities/StringUtilities.h>

#include <array>
#include <cstdint>
#include <cstring>

#include <langinfo.h>

namespace
{
// What toupper or tolower make of each byte.
using CaseTable = std::array<std::int32_t, 256>;

// That of the POSIX locale: the letters from `first` to `last` change their case, nothing else.
constexpr auto MakePosixTable = [](unsigned int first, unsigned int last) {
    CaseTable table{};
    for (unsigned int byte = 0; byte < table.size(); ++byte) {
        bool const changes = byte >= first && byte <= last;
        table[byte] = static_cast<std::int32_t>(changes ? byte ^ 0x20U : byte);
    }
    return table;
};

constexpr CaseTable PosixUpper = MakePosixTable('a', 'z');
constexpr CaseTable PosixLower = MakePosixTable('A', 'Z');

// Shorter texts do not repay a comparison of the tables.
constexpr unsigned long LongText = 64;

// The table that toupper or tolower read in the current locale of this thread, looked up once for
// the whole text instead of once per byte. Not __ctype_toupper_loc's: that one is kept per thread,
// and does not follow when another thread sets the locale of the process.
std::int32_t const* CurrentTable(nl_item item)
{
    constexpr std::size_t FromZero = 128; // before them, the bytes as negative numbers
    void const* const table = nl_langinfo(item);
    return static_cast<std::int32_t const*>(table) + FromZero;
}

// Arithmetic only, which the compiler turns into vector instructions.
void ConvertAscii(CSafeString& text, char first)
{
    for (char& byte : text) {
        auto const letter = static_cast<unsigned char>(byte - first);
        byte = static_cast<char>(byte ^ (letter < 26 ? 0x20 : 0));
    }
}

CSafeString Convert(basic_sv_wrapper<char> const& text, nl_item item, CaseTable const& posix,
                    char first)
{
    CSafeString result(text);
    std::int32_t const* const table = CurrentTable(item);
    if (result.size() >= LongText && std::memcmp(table, posix.data(), sizeof(CaseTable)) == 0) {
        ConvertAscii(result, first);
        return result;
    }
    for (char& byte : result)
        byte = static_cast<char>(table[static_cast<unsigned char>(byte)]);
    return result;
}
} // namespace

// Flattened: short texts are converted in the time of the calls that this saves.

[[gnu::flatten]] CSafeString ToUpper(basic_sv_wrapper<char> const& text)
{
    return Convert(text, _NL_CTYPE_TOUPPER, PosixUpper, 'a');
}

[[gnu::flatten]] CSafeString ToLower(basic_sv_wrapper<char> const& text)
{
    return Convert(text, _NL_CTYPE_TOLOWER, PosixLower, 'A');
}
