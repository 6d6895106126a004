#include <BaseUtilities/CSafeString.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>

namespace
{
constexpr std::array<char, 200> MakeDigitPairs()
{
    std::array<char, 200> pairs{};
    for (std::size_t value = 0; value < 100; ++value) {
        pairs[2 * value] = static_cast<char>('0' + value / 10);
        pairs[2 * value + 1] = static_cast<char>('0' + value % 10);
    }
    return pairs;
}

constexpr std::array<char, 200> DigitPairs = MakeDigitPairs();

template <class Unsigned>
unsigned int CountDigits(Unsigned value)
{
    unsigned int digits = 1;
    for (; value >= 10; value /= 10)
        ++digits;
    return digits;
}

template <class Unsigned>
void WriteDigits(char* end, Unsigned value)
{
    while (value >= 100) {
        auto const pair = static_cast<std::size_t>(value % 100);
        value /= 100;
        *--end = DigitPairs[2 * pair + 1];
        *--end = DigitPairs[2 * pair];
    }
    if (value >= 10) {
        auto const pair = static_cast<std::size_t>(value);
        *--end = DigitPairs[2 * pair + 1];
        *--end = DigitPairs[2 * pair];
    } else {
        *--end = static_cast<char>('0' + value);
    }
}

template <class Integer>
CSafeString IntegerText(Integer value)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    bool const negative = value < 0;
    // In the unsigned type, where the most negative value has its magnitude.
    Unsigned const magnitude =
        negative ? Unsigned{0} - static_cast<Unsigned>(value) : static_cast<Unsigned>(value);
    std::string text((negative ? 1U : 0U) + CountDigits(magnitude), '-');
    WriteDigits(text.data() + text.size(), magnitude);
    return basic_sv_wrapper<char>(text);
}

// Room for every value that "%f" can print: the integer digits, sign, point and six decimals.
template <class Floating>
constexpr std::size_t FloatingCapacity = std::numeric_limits<Floating>::max_exponent10 + 20;

template <std::size_t Capacity>
CSafeString FloatingText(char const* format, ...)
{
    std::array<char, Capacity> buffer;
    std::va_list arguments;
    va_start(arguments, format);
    // Volatile, because g++ takes for granted that these conversions succeed: a failure would then
    // be no length that the string refuses, but a copy without end.
    int const volatile length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    // By its length first: no pointer is moved by a length that is none.
    std::string text(static_cast<std::size_t>(length), '\0');
    std::copy_n(buffer.data(), text.size(), text.data());
    return basic_sv_wrapper<char>(text);
}
} // namespace

CSafeString CSafeString::to_string(int value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(long value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(long long value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(unsigned int value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(unsigned long value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(unsigned long long value)
{
    return IntegerText(value);
}

CSafeString CSafeString::to_string(float value)
{
    return FloatingText<FloatingCapacity<float>>("%f", static_cast<double>(value));
}

CSafeString CSafeString::to_string(double value)
{
    return FloatingText<FloatingCapacity<double>>("%f", value);
}

CSafeString CSafeString::to_string(long double value)
{
    return FloatingText<FloatingCapacity<long double>>("%Lf", value);
}
