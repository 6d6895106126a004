#pragma once

#include <BaseUtilities/CBasicFlatString.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/TEST_STATUS.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <tuple>
#include <type_traits>

namespace BaseUtilities::detail
{
/// The type that an argument's instantiation is made for: literals and arrays
/// of any length share that of the pointer, writable text that of constant text.
template <class T>
struct ThrowArgument
{
    using Type = T;
};

template <>
struct ThrowArgument<char*>
{
    using Type = char const*;
};

template <class T, std::size_t Count>
struct ThrowArgument<T[Count]>
{
    using Type = std::remove_const_t<T> const*;
};

template <class T>
using ThrowArgument_t = typename ThrowArgument<T>::Type;
} // namespace BaseUtilities::detail

/// Formats a message printf-style and throws `ExceptionType(message, status)`.
///
/// ```cpp
/// DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "%s holds %d files.", folder, count);
/// ```
///
/// Takes the arguments of CBasicFlatString::DoBuild, and std::string,
/// CSafeString and literals for "%s". A message that comes out empty becomes the
/// class's default text. When building the message fails, what DoBuild throws
/// leaves instead.
///
/// Deliberate: an empty `fmt` throws `ExceptionType()`, with its default text
/// and TEST_STATUS_ERROR, whatever `status` and `args` are.
///
/// Threads: any number at once, without a lock; each has buffers of its own.
template <class ExceptionType, class... Args>
[[noreturn]] BASEUTILITIES_EXPORT void
DoThrow(TEST_STATUS status, basic_sv_wrapper<char> const& fmt, Args const&... args)
{
    using namespace BaseUtilities::detail;

    if constexpr ((std::is_same_v<Args, ThrowArgument_t<Args>> && ...)) {
        if (fmt.empty())
            throw ExceptionType();

        thread_local CSimpleBuffer buffer;
        CBasicFlatString::DoBuild(buffer, std::tuple<unsigned long, char>(0, '\0'), fmt,
                                  FormatterValue(args)...);
        char const* const text = buffer.Get(0);
        throw ExceptionType(basic_sv_wrapper<char>(text), status);
    } else {
        DoThrow<ExceptionType, ThrowArgument_t<Args>...>(status, fmt, args...);
    }
}

// The library's own messages.
extern template BASEUTILITIES_EXPORT void
DoThrow<TQRunTimeException, char const*>(TEST_STATUS, basic_sv_wrapper<char> const&,
                                         char const* const&);
extern template BASEUTILITIES_EXPORT void
DoThrow<TQRunTimeException, char const*, char const*>(TEST_STATUS, basic_sv_wrapper<char> const&,
                                                      char const* const&, char const* const&);
extern template BASEUTILITIES_EXPORT void
DoThrow<TQRunTimeException, char const*, std::filesystem::file_type>(
    TEST_STATUS, basic_sv_wrapper<char> const&, char const* const&,
    std::filesystem::file_type const&);
extern template BASEUTILITIES_EXPORT void
DoThrow<TQRunTimeException, std::string, std::string, int, char const*>(
    TEST_STATUS, basic_sv_wrapper<char> const&, std::string const&, std::string const&, int const&,
    char const* const&);
