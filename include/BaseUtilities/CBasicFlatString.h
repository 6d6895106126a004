#pragma once

#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>

namespace BaseUtilities::detail
{
/// What snprintf can be given: numbers, object pointers, unscoped enumerations, file types.
template <class T>
inline constexpr bool IsFormattable =
    std::is_arithmetic_v<
        T> || std::is_null_pointer_v<T> || (std::is_pointer_v<T> && !std::is_function_v<std::remove_pointer_t<T>>)
    || (std::is_enum_v<T> && std::is_convertible_v<T, long long>)
    || std::is_same_v<T, std::filesystem::file_type>;

template <class T>
T const& VariadicValue(T const& value)
{
    return value; // NOLINT(bugprone-return-const-ref-from-parameter): read within the expression
}

/// Deliberate: widened without sign, so that file_type::not_found (-1) prints as 255.
inline int VariadicValue(std::filesystem::file_type type)
{
    return static_cast<unsigned char>(type);
}
} // namespace BaseUtilities::detail

/// The printf-style formatting engine behind DoThrow and CFormattedString,
/// which most callers want instead.
class BASEUTILITIES_EXPORT CBasicFlatString
{
public:
    /// Writes `indent` fill characters (count, character) and then the text of
    /// `fmt` and `args` into `out`, NUL-terminated. `fmt` needs no terminator
    /// and must not be a null view with a length. It is trusted, as that of
    /// printf is: never pass text that came from outside as `fmt`.
    ///
    /// Throws std::runtime_error when formatting fails (`out` is then as it
    /// was), std::length_error and std::bad_alloc.
    ///
    /// Threads: any number at once; each has work buffers of its own for every
    /// list of argument types, kept until it ends. Once they have grown to the
    /// longest message, only `out` may still allocate.
    template <class... Args>
    static void DoBuild(CSimpleBuffer& out, std::tuple<unsigned long, char> indent,
                        basic_sv_wrapper<char> const& fmt, Args const&... args);
};

// The format is the caller's own, checked by no compiler.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wdouble-promotion"

template <class... Args>
void CBasicFlatString::DoBuild(CSimpleBuffer& out, std::tuple<unsigned long, char> indent,
                               basic_sv_wrapper<char> const& fmt, Args const&... args)
{
    static_assert((BaseUtilities::detail::IsFormattable<Args> && ...),
                  "a message argument must be a number, a pointer, an unscoped enumeration or a "
                  "std::filesystem::file_type; DoThrow and CFormattedString also take std::string, "
                  "CSafeString and literals");
    using BaseUtilities::detail::VariadicValue;

    thread_local CSimpleBuffer workBuffer;
    thread_local std::string fmtStr(512, '\0');

    fmtStr.assign(fmt.data(), fmt.size());
    int const measured = std::snprintf(nullptr, 0, fmtStr.c_str(), VariadicValue(args)...);
    if (measured < 0)
        throw std::runtime_error("INTERNAL ERROR - std::vsprintf() failed.");

    auto const [count, fill] = indent;
    auto const length = static_cast<unsigned long>(measured);
    char* text = workBuffer.Get(count + length + 1);
    if (text == nullptr) { // an earlier growth failed and left its size recorded
        workBuffer = CSimpleBuffer();
        text = workBuffer.Get(count + length + 1);
    }
    if (count != 0)
        std::memset(text, fill, count);
    std::ignore = std::snprintf(text + count, length + 1, fmtStr.c_str(), VariadicValue(args)...);
    out = workBuffer;
}

#pragma GCC diagnostic pop
