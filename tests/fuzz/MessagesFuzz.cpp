// Message building, indented or thrown, against snprintf.

#include "Fuzz.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQUuid.h>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <vector>

namespace
{
using View = basic_sv_wrapper<char>;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

// Nothing where the C library cannot.
template <class... Args>
std::optional<std::string> Printed(std::string const& format, Args... args)
{
    int const length = std::snprintf(nullptr, 0, format.c_str(), args...);
    if (length < 0)
        return std::nullopt;
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    std::snprintf(buffer.data(), buffer.size(), format.c_str(), args...);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

#pragma GCC diagnostic pop

std::string Literal(CFuzzInput& input)
{
    std::string literal;
    for (char const character : input.Text())
        literal += character == '%' ? std::string("%%") : std::string(1, character);
    return literal;
}

// One conversion, with flags, a width and a precision as they come.
std::string Conversion(CFuzzInput& input, std::vector<char const*> const& kinds)
{
    std::string text = "%";
    for (char const flag : {'-', '+', ' ', '#', '0'}) {
        if (input.Choice(4) == 1)
            text += flag;
    }
    if (input.Flag())
        text += std::to_string(input.Take<std::uint16_t>() % 3000);
    if (input.Flag())
        text += '.' + std::to_string(input.Take<std::uint8_t>());
    return text + kinds[input.Choice(kinds.size())];
}

std::string OfText(CFuzzInput& input)
{
    return Conversion(input, {"s"});
}

std::string OfInt(CFuzzInput& input)
{
    return Conversion(input, {"d", "i", "u", "x", "X", "o", "c"});
}

std::string OfLong(CFuzzInput& input)
{
    return Conversion(input, {"lu", "ld", "lx", "lX", "lo", "zu"});
}

std::string OfDouble(CFuzzInput& input)
{
    return Conversion(input, {"f", "F", "e", "E", "g", "G", "a", "A"});
}

// Planted defect: one blank for each level of indentation.
std::string Indentation(unsigned long level)
{
    return std::string((IsDefectPlanted() ? 1 : 2) * level, ' ');
}

template <class... Args>
void CheckBuilt(CFuzzInput& input, std::string const& format, Args... args)
{
    auto const count = static_cast<unsigned long>(input.Choice(80));
    char const fill = input.Take<char>();
    std::string const expected = std::string(count, fill) + Printed(format, args...).value();
    CSimpleBuffer built;
    CBasicFlatString::DoBuild(built, {count, fill}, View(format), args...);
    ExpectSame("built", std::string(built.Get(0), expected.size() + 1), expected + '\0');
}

template <class... Args>
void CheckIndented(CFuzzInput& input, std::string const& format, Args... args)
{
    CFormattedString::m_sIndentLevel = input.Choice(40);
    CFormattedString const built(View(format), args...);
    std::string const expected =
        Indentation(CFormattedString::m_sIndentLevel) + Printed(format, args...).value();
    CFormattedString::m_sIndentLevel = 0;
    ExpectSame("indented", built.get(), expected.c_str());
    ExpectSame("as a string", CSafeString(built).get(), expected.c_str());
}

// The default text for none, and the default status for no format.
template <class... Args>
void CheckThrown(CFuzzInput& input, std::string const& format, std::string const& expected,
                 Args const&... args)
{
    auto const status = static_cast<TEST_STATUS>(input.Take<std::uint32_t>());
    try {
        DoThrow<TQRunTimeException>(status, View(format), args...);
    } catch (TQRunTimeException const& thrown) {
        bool const isDefault = *expected.c_str() == '\0';
        ExpectSame("thrown", thrown.what(),
                   isDefault ? "TQRunTimeException Thrown" : expected.c_str());
        ExpectSame("status", thrown.GetStatus(), format.empty() ? TEST_STATUS_ERROR : status);
    }
}

void MixedArguments(CFuzzInput& input)
{
    std::string const format = Literal(input) + OfText(input) + Literal(input) + OfInt(input)
                               + OfLong(input) + OfDouble(input) + Literal(input);
    std::string const text = input.Text();
    auto const small = input.Take<int>();
    auto const large = input.Take<unsigned long>();
    auto const real = input.Take<double>();
    CheckBuilt(input, format, text.c_str(), small, large, real);
    CheckIndented(input, format, text.c_str(), small, large, real);
    CheckThrown(input, format, Printed(format, text.c_str(), small, large, real).value(),
                text.c_str(), small, large, real);
}

// With the arguments of a message about two files, by way of standard strings.
void OwnedTexts(CFuzzInput& input)
{
    std::string const format =
        Literal(input) + OfText(input) + OfText(input) + OfInt(input) + OfText(input);
    std::string const one = input.Text();
    std::string const other = input.Text();
    std::string const third = input.Text();
    auto const number = input.Take<int>();
    CheckThrown(input, format,
                Printed(format, one.c_str(), other.c_str(), number, third.c_str()).value(), one,
                other, number, third.c_str());
}

void NoArguments(CFuzzInput& input)
{
    std::string const format = Literal(input);
    CheckBuilt(input, format);
    CheckIndented(input, format);
    CheckThrown(input, format, Printed(format).value());
}

void FileTypes(CFuzzInput& input)
{
    auto const byte = input.Take<std::uint8_t>();
    auto const type = static_cast<std::filesystem::file_type>(static_cast<signed char>(byte));
    std::string const text = input.Text();
    std::string const format = OfText(input) + "%d";
    CheckThrown(input, format, Printed(format, text.c_str(), static_cast<int>(byte)).value(),
                text.c_str(), type);
}

// Wide text can be no text of the locale, and then there is no message.
void WideTexts(CFuzzInput& input)
{
    std::wstring text;
    for (char const character : input.Text())
        text += static_cast<unsigned char>(character);
    std::string const format = Literal(input) + "%ls";
    std::optional<std::string> const expected = Printed(format, text.c_str());
    std::string made;
    try {
        CSimpleBuffer built;
        CBasicFlatString::DoBuild(built, {0, '\0'}, View(format), text.c_str());
        made = built.Get(0);
    } catch (std::runtime_error const& error) {
        ExpectSame("failure", !expected.has_value(), true);
        ExpectSame("failure", error.what(), "INTERNAL ERROR - std::vsprintf() failed.");
        return;
    }
    ExpectSame("wide text", made, expected.value_or("a failure").c_str());
}

void Identifiers(CFuzzInput& input)
{
    TQUuid id;
    id.m_Data1 = input.Take<std::uint32_t>();
    id.m_Data2 = input.Take<std::uint16_t>();
    id.m_Data3 = input.Take<std::uint16_t>();
    std::string tail;
    for (std::uint8_t& byte : id.m_Data4) {
        byte = input.Take<std::uint8_t>();
        tail += Printed("%02X", byte).value();
    }
    ExpectSame("identifier", id.ToString().get(),
               Printed("{%08X-%04X-%04X-", id.m_Data1, id.m_Data2, id.m_Data3).value()
                   + tail.substr(0, 4) + '-' + tail.substr(4) + '}');
}

void (*const Checks[])(CFuzzInput&) = {MixedArguments, OwnedTexts, NoArguments,
                                       FileTypes,      WideTexts,  Identifiers};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    while (!input.IsUsedUp())
        Checks[input.Choice(std::size(Checks))](input);
    return 0;
}
