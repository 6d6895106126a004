// Compiled by tests with ENTRY and ARGUMENT defined, to see what the compiler
// says; never part of a program.

#include <BaseUtilities/CBasicFlatString.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

enum class Scoped { Value };
struct Record
{
    int m_Value = 0;
};
struct Number
{
    operator long long() const;
};
void Function();

template <class... Args>
void CallDoThrow(Args const&... args)
{
    DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "%s", args...);
}

template <class... Args>
void CallCFormattedString(Args const&... args)
{
    CFormattedString const text("%s", args...);
}

template <class... Args>
void CallDoBuild(Args const&... args)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, std::tuple<unsigned long, char>(0, ' '), "%s", args...);
}

void Call()
{
    ENTRY(ARGUMENT);
}
