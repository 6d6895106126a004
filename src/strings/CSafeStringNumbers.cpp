#include <BaseUtilities/CSafeString.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <string>

namespace
{
template <class Integer>
[[gnu::flatten]] CSafeString IntegerText(Integer value)
{
    std::string const text = std::to_string(value);
    return basic_sv_wrapper<char>(text);
}

// Room for every value that "%f" can print: the integer digits, sign, point and six decimals.
template <class Floating>
constexpr std::size_t FloatingCapacity = std::numeric_limits<Floating>::max_exponent10 + 20;

template <std::size_t Capacity>
CSafeString FloatingText(char const* format, ...)
{
    // Not zeroed first, even where the compiler is told to zero what is on the stack.
    __attribute__((uninitialized)) std::array<char, Capacity> buffer;
    std::va_list arguments;
    va_start(arguments, format);
    // Volatile, because g++ takes for granted that these conversions succeed: a failure would then
    // be no length that the string refuses, but a copy without end.
    int const volatile printed = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    std::string const text(buffer.data(), static_cast<std::size_t>(printed));
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
