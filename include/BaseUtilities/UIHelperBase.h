#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/UIEnumerations.h>
#include <BaseUtilities/basic_sv_wrapper.h>

class CQtSignaler;

/// Where the application leaves what every helper of the user interaction
/// needs. The members are one for all libraries of the process; nothing clears
/// them, and readers check m_UISignaler for null themselves. For modules built
/// by clang they are one where the executable links this library, or has loaded
/// it with RTLD_GLOBAL before the modules.
///
/// Threads: no locks. Set a member before another thread reads it.
class BASEUTILITIES_EXPORT UIHelperBase
{
public:
    /// Lends the signaler; it must live while it is registered.
    static void QtSignaler(CQtSignaler& signaler);

    /// Points m_AppName at a text that the first call makes and that lasts to
    /// the end of the process; first calls may come from several threads at
    /// once. Throws std::bad_alloc.
    /// Deliberate: that text is not the name but one character, 1 when the
    /// first `name` was set and not empty, 0 otherwise. Later calls change
    /// nothing about it.
    static void AppName(basic_sv_wrapper<char> const& name);

    static EUserInputState& UserInputState();
    static void UserInputState(EUserInputState state);

    inline static char const* m_AppName = nullptr;
    inline static CQtSignaler* m_UISignaler = nullptr; // not owned
    static EUserInputState m_UserInputState;           // 0 at load
};
