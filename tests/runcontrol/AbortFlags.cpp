#include "AbortFlags.h"

#include <BaseUtilities/TQUserAbort.h>

#include <cstddef>

namespace
{
bool* const flagPlaces[] = {&TQUserAbort::m_UserAbortOk, &TQUserAbort::m_UserAbortPaused,
                            &TQUserAbort::m_UserAbortSent, &TQUserAbort::m_UserAbortRequested,
                            &TQUserAbort::m_UserAbortEnabled};

std::string Said(bool result)
{
    return result ? "true" : "false";
}

std::string SendSaid()
{
    try {
        TQUserAbort::Send();
        return "";
    } catch (TQUserAbort const&) {
        return "thrown";
    }
}
} // namespace

std::string CurrentFlags()
{
    std::string flags;
    for (bool const* const place : flagPlaces)
        flags += *place ? '1' : '0';
    return flags;
}

void SetFlags(std::string const& flags)
{
    std::size_t i = 0;
    for (bool* const place : flagPlaces)
        *place = flags.at(i++) == '1';
}

std::vector<std::string> AllAbortFlags()
{
    std::vector<std::string> all;
    for (unsigned bits = 0; bits < 32; ++bits) {
        std::string flags;
        for (unsigned place = 0; place < 5; ++place)
            flags += (bits >> place & 1) != 0 ? '1' : '0';
        all.push_back(flags);
    }
    return all;
}

std::vector<AbortOperation> AbortOperations()
{
    using T = TQUserAbort;
    return {
        {"UserAbortReset", "UserAbortReset", [] { return T::UserAbortReset(), std::string(); }},
        {"UserAbortSent", "UserAbortSent", [] { return Said(T::UserAbortSent()); }},
        {"Send", "Send", SendSaid},
        {"SetUserAbortOk", "SetUserAbortOk", [] { return T::SetUserAbortOk(), std::string(); }},
        {"IsUserAbortOk", "IsUserAbortOk", [] { return Said(T::IsUserAbortOk()); }},
        {"UserAbortEnabled", "UserAbortEnabled", [] { return Said(T::UserAbortEnabled()); }},
        {"EnableUserAbort(true)", "EnableUserAbortTrue",
         [] { return Said(T::EnableUserAbort(true)); }},
        {"EnableUserAbort(false)", "EnableUserAbortFalse",
         [] { return Said(T::EnableUserAbort(false)); }},
        {"RequestUserAbort", "RequestUserAbort", [] { return Said(T::RequestUserAbort()); }},
        {"UserAbortRequested", "UserAbortRequested", [] { return Said(T::UserAbortRequested()); }},
        {"UserAbortPause", "UserAbortPause", [] { return T::UserAbortPause(), std::string(); }},
        {"UserAbortResume", "UserAbortResume", [] { return T::UserAbortResume(), std::string(); }},
        {"IsPaused", "IsPaused", [] { return Said(T::IsPaused()); }},
    };
}
