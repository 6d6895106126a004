#pragma once

#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/UIHelperBase.h>

/// Where one module of the process sees the static members of the run control.
struct SharedStatics
{
    void const* members[8];

    friend bool operator==(SharedStatics const& left, SharedStatics const& right)
    {
        for (int index = 0; index < 8; ++index)
            if (left.members[index] != right.members[index])
                return false;
        return true;
    }
};

/// As seen by the module in which this is compiled.
static inline SharedStatics StaticsSeenHere()
{
    return {{&UIHelperBase::m_AppName, &UIHelperBase::m_UISignaler, &UIHelperBase::m_UserInputState,
             &TQUserAbort::m_UserAbortOk, &TQUserAbort::m_UserAbortPaused,
             &TQUserAbort::m_UserAbortSent, &TQUserAbort::m_UserAbortRequested,
             &TQUserAbort::m_UserAbortEnabled}};
}

/// What each module fills in, in the function that it exports under the name "View".
struct ModulesView
{
    SharedStatics (*statics)();
    /// Whether the module and the library see the same values: the library is told by its
    /// functions, the module looks at the members.
    bool (*agreesWithTheLibrary)();
};
