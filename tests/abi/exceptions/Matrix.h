#pragma once

#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TQUserAbort.h>

#include <cstring>
#include <exception>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

// What every party of the matrix is built from: each throws and catches with code of its own, so
// that nothing but the library's type information joins them.

/// The thrown types; a handler is any of these or one of the two standard bases.
using Thrown = std::tuple<TQException, TQAppException, TQDOMDocException, TQParseTreeException,
                          TQRunTimeException, CTestSuiteException, TQAppExitException, TQUserAbort>;
using Handlers = decltype(std::tuple_cat(
    std::declval<Thrown>(), std::declval<std::tuple<std::runtime_error, std::exception>>()));

inline constexpr int ThrownCount = int(std::tuple_size_v<Thrown>);
inline constexpr int HandlerCount = int(std::tuple_size_v<Handlers>);

using ThrowFunction = void (*)(int type);
/// 1 when a handler of that type caught it whole, 0 when it passed, -1 when it came damaged.
using CatchFunction = int (*)(ThrowFunction, int type, int handler);

namespace
{
inline constexpr auto Status = TEST_STATUS(0x1234);
inline constexpr char Message[] = "thrown 1 of 2";

template <class T>
void ThrowOne()
{
    if constexpr (std::is_same_v<T, TQUserAbort>)
        throw TQUserAbort();
    else
        DoThrow<T>(Status, "thrown %d of %s", 1, "2");
}

template <class T>
bool IsWhole(T const& caught)
{
    if constexpr (std::is_base_of_v<TQException, T> || std::is_same_v<T, TQAppExitException>)
        return caught.GetStatus() == Status && std::strcmp(caught.what(), Message) == 0;
    else if constexpr (std::is_base_of_v<std::exception, T>)
        return std::strcmp(caught.what(), Message) == 0;
    else
        return true;
}

template <class Handler>
int CatchOne(ThrowFunction throwIt, int type)
{
    try {
        throwIt(type);
    } catch (Handler const& caught) {
        return IsWhole(caught) ? 1 : -1;
    } catch (...) {
        return 0;
    }
    return -1;
}

template <std::size_t... Index>
void ThrowByNumber(int type, std::index_sequence<Index...>)
{
    ((int(Index) == type ? ThrowOne<std::tuple_element_t<Index, Thrown>>() : void()), ...);
}

template <std::size_t... Index>
int CatchByNumber(ThrowFunction throwIt, int type, int handler, std::index_sequence<Index...>)
{
    int result = -1;
    ((int(Index) == handler
          ? void(result = CatchOne<std::tuple_element_t<Index, Handlers>>(throwIt, type))
          : void()),
     ...);
    return result;
}

void Throw(int type)
{
    ThrowByNumber(type, std::make_index_sequence<std::size_t(ThrownCount)>());
}

int Catch(ThrowFunction throwIt, int type, int handler)
{
    return CatchByNumber(throwIt, type, handler,
                         std::make_index_sequence<std::size_t(HandlerCount)>());
}
} // namespace
