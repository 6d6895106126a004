// The encoding conversions against iconv.

#include "Fuzz.h"

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/EncodingConversions.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include <iconv.h>

namespace
{
// Stops at what is ill-formed, writes a replacement for one unit of it, and goes on behind that.
class CConverter
{
public:
    CConverter(char const* to, char const* from, std::size_t unit)
        : m_Handle(iconv_open(to, from)),
          m_Unit(unit)
    {
        if (m_Handle == iconv_t(-1)) // NOLINT: iconv's own sign of failure
            std::abort();
    }
    CConverter(CConverter const&) = delete;
    CConverter& operator=(CConverter const&) = delete;
    ~CConverter() { iconv_close(m_Handle); }

    std::string Convert(std::string text, std::string const& replacement)
    {
        m_Refused = 0;
        std::string converted;
        char* from = text.data();
        std::size_t left = text.size();
        while (left > 0) {
            std::array<char, 256> buffer;
            char* to = buffer.data();
            std::size_t room = buffer.size();
            bool const stopped = iconv(m_Handle, &from, &left, &to, &room) == std::size_t(-1);
            int const reason = errno;
            converted.append(buffer.data(), to);
            if (stopped && reason != E2BIG) {
                ++m_Refused;
                converted += replacement;
                from += std::min(m_Unit, left);
                left -= std::min(m_Unit, left);
                iconv(m_Handle, nullptr, nullptr, nullptr, nullptr);
            }
        }
        return converted;
    }

    /// How often the last text was ill-formed.
    std::size_t Refused() const { return m_Refused; }

private:
    iconv_t m_Handle;
    std::size_t m_Unit;
    std::size_t m_Refused = 0;
};

template <class CharT>
std::string AsBytes(std::basic_string<CharT> const& text)
{
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(CharT)};
}

template <class CharT>
std::basic_string<CharT> FromBytes(std::string const& bytes)
{
    std::basic_string<CharT> text(bytes.size() / sizeof(CharT), CharT());
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(CharT));
    return text;
}

std::string Bytes(CSafeString const& text)
{
    return {text.get(), text.size()};
}

std::string WithoutMark(std::string const& text, std::string const& mark)
{
    return text.compare(0, mark.size(), mark) == 0 ? text.substr(mark.size()) : text;
}

// Planted defect: bytes that are no UTF-8 become question marks.
void CheckUtf8(std::string const& text)
{
    static CConverter converter("UTF-16LE", "UTF-8", 1);
    std::string const replacement = IsDefectPlanted() ? std::string("?\0", 2) : "\xfd\xff";
    std::string const expected = converter.Convert(WithoutMark(text, "\xef\xbb\xbf"), replacement);
    auto const converted = Utf8ToUtf16(basic_sv_wrapper<char>(text));
    ExpectSame("UTF-8 to UTF-16", AsBytes(*converted), expected);
    if (converter.Refused() == 0)
        ExpectSame("UTF-8 to UTF-16 and back", *Utf16ToUtf8(*converted),
                   WithoutMark(text, "\xef\xbb\xbf"));
}

void CheckUtf16(std::u16string const& text)
{
    static CConverter converter("UTF-8", "UTF-16LE", 2);
    std::string const expected = converter.Convert(AsBytes(text), "?");
    basic_sv_wrapper<char16_t> const view(text);
    ExpectSame("UTF-16 to UTF-8", *Utf16ToUtf8(view), expected);
    ExpectSame("string of UTF-16", Bytes(CSafeString(view)), expected);
    CSafeString set("before");
    set.set(view);
    ExpectSame("string set to UTF-16", Bytes(set), expected);
}

// What is no character is left to Qt, but what comes of it must be UTF-8.
void CheckWide(std::wstring const& text)
{
    static CConverter converter("UTF-8", "UTF-32LE", 4);
    static CConverter judge("UTF-16LE", "UTF-8", 1);
    std::string const expected =
        converter.Convert(WithoutMark(AsBytes(text), AsBytes(std::wstring(L"\ufeff"))), "");
    basic_sv_wrapper<wchar_t> const view(text);
    std::string const converted = *StdWStrToUtf8(view);
    if (converter.Refused() == 0)
        ExpectSame("wide to UTF-8", converted, expected);
    judge.Convert(converted, "");
    ExpectSame("ill-formed UTF-8", static_cast<long long>(judge.Refused()), 0);
    ExpectSame("string of wide text", Bytes(CSafeString(view)), converted);
    CSafeString set("before");
    set.set(view);
    ExpectSame("string set to wide text", Bytes(set), converted);
}

// Mostly characters, now and then what is none.
std::wstring WideText(CFuzzInput& input)
{
    std::wstring text;
    while (!input.IsUsedUp()) {
        auto const taken = input.Take<std::uint32_t>();
        auto const code = taken % 8 == 0 ? taken : (taken >> 3U) % 0x110000U;
        text += static_cast<wchar_t>(code);
    }
    return text;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    switch (input.Choice(3)) {
    case 0:
        CheckUtf8(input.Rest());
        break;
    case 1:
        CheckUtf16(FromBytes<char16_t>(input.Rest()));
        break;
    default:
        CheckWide(WideText(input));
    }
    return 0;
}
