#include "TestModule.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TQUserAbort.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace
{
template <class T>
struct Type
{
    using type = T;
};

/// Calls `use` with the type of that name.
template <class Use>
auto WithClass(std::string const& name, Use use)
{
    if (name == "TQException")
        return use(Type<TQException>());
    if (name == "TQAppException")
        return use(Type<TQAppException>());
    if (name == "TQDOMDocException")
        return use(Type<TQDOMDocException>());
    if (name == "TQParseTreeException")
        return use(Type<TQParseTreeException>());
    if (name == "TQRunTimeException")
        return use(Type<TQRunTimeException>());
    if (name == "CTestSuiteException")
        return use(Type<CTestSuiteException>());
    if (name == "TQAppExitException")
        return use(Type<TQAppExitException>());
    if (name == "TQUserAbort")
        return use(Type<TQUserAbort>());
    throw std::invalid_argument(name);
}

void Raise(char const* className, char const* message, TEST_STATUS status)
{
    WithClass(className, [&](auto type) {
        using T = typename decltype(type)::type;
        if constexpr (std::is_same_v<T, TQUserAbort>)
            TQUserAbort::Send();
        else
            throw T(message, status);
    });
}

void RaiseFormatted(TEST_STATUS status, char const* text, int number)
{
    DoThrow<TQRunTimeException>(status, "%s %d", std::string(text), number);
}

std::type_info const* TypeOf(char const* className)
{
    return WithClass(className, [](auto type) -> std::type_info const* {
        return &typeid(typename decltype(type)::type);
    });
}

bool Catches(char const* className, void (*action)())
{
    return WithClass(className, [&](auto type) {
        try {
            action();
        } catch (typename decltype(type)::type const&) {
            return true;
        } catch (...) {
        }
        return false;
    });
}

bool* AbortFlag(int place)
{
    bool* const flags[] = {&TQUserAbort::m_UserAbortOk, &TQUserAbort::m_UserAbortPaused,
                           &TQUserAbort::m_UserAbortSent, &TQUserAbort::m_UserAbortRequested,
                           &TQUserAbort::m_UserAbortEnabled};
    return flags[place];
}
} // namespace

extern "C" __attribute__((visibility("default"))) TestModule const theTestModule;

TestModule const theTestModule = {
    Raise,
    RaiseFormatted,
    TypeOf,
    Catches,
    AbortFlag,
    [] { return &TQAppExitException::m_ExceptionThrown; },
    [] { return &CFormattedString::m_sIndentLevel; },
    [] { return &CFormattedString::EMPTY_STR[0]; },
    [](char const* message) { return TQException::DoMakeWhatString(message); },
    [] { return TQUserAbort::RequestUserAbort(); },
};
