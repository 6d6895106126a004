// Numbers as text, against std::to_string and snprintf.

#include "Fuzz.h"

#include <BaseUtilities/CSafeString.h>

#include <cstdio>
#include <limits>
#include <vector>

namespace
{
std::string Bytes(CSafeString const& text)
{
    return {text.get(), text.size()};
}

// Planted defect: the most negative number loses its sign.
template <class Integer>
std::string OfInteger(Integer value)
{
    std::string text = std::to_string(value);
    if (IsDefectPlanted() && value < 0 && value == std::numeric_limits<Integer>::min())
        text.erase(0, 1);
    return text;
}

template <class Integer>
void CheckInteger(CFuzzInput& input)
{
    auto value = input.Take<Integer>();
    auto const near = static_cast<Integer>(input.Choice(100));
    switch (input.Choice(4)) {
    case 0:
        value = std::numeric_limits<Integer>::max() - near;
        break;
    case 1:
        value = std::numeric_limits<Integer>::min() + near;
        break;
    default:
        break;
    }
    ExpectSame("integer", Bytes(CSafeString::to_string(value)), OfInteger(value));
}

template <class Floating>
std::string Formatted(char const* format, Floating value)
{
    int const length = std::snprintf(nullptr, 0, format, value);
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    std::snprintf(buffer.data(), buffer.size(), format, value);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

void CheckFloat(CFuzzInput& input)
{
    auto const value = input.Take<float>();
    std::string const text = Bytes(CSafeString::to_string(value));
    ExpectSame("float", text, std::to_string(value));
    ExpectSame("float, printed", text, Formatted("%f", static_cast<double>(value)));
}

void CheckDouble(CFuzzInput& input)
{
    auto const value = input.Take<double>();
    std::string const text = Bytes(CSafeString::to_string(value));
    ExpectSame("double", text, std::to_string(value));
    ExpectSame("double, printed", text, Formatted("%f", value));
}

// From sign, exponent and the digits below the leading one: not all bytes of the type are a number.
void CheckLongDouble(CFuzzInput& input)
{
    bool const negative = input.Flag();
    int const exponent = input.Take<std::int16_t>();
    long double const digits =
        1.0L + static_cast<long double>(input.Take<std::uint64_t>()) / 18446744073709551616.0L;
    long double const value = __builtin_ldexpl(negative ? -digits : digits, exponent);
    ExpectSame("long double", Bytes(CSafeString::to_string(value)), Formatted("%Lf", value));
}

void (*const Checks[])(CFuzzInput&) = {
    CheckInteger<int>,
    CheckInteger<long>,
    CheckInteger<long long>,
    CheckInteger<unsigned int>,
    CheckInteger<unsigned long>,
    CheckInteger<unsigned long long>,
    CheckFloat,
    CheckDouble,
    CheckLongDouble,
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    while (!input.IsUsedUp())
        Checks[input.Choice(std::size(Checks))](input);
    return 0;
}
