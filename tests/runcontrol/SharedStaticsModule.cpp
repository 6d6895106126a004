// A module of an application, without a build of its own: compiled by each compiler that there is.

#include "SharedStatics.h"

#include <cstddef>

namespace
{
// Nobody calls it, so that any address will do.
CQtSignaler& SomeSignaler()
{
    alignas(std::max_align_t) static char place[1];
    return *reinterpret_cast<CQtSignaler*>(place);
}

bool SeesTheAbortSent()
{
    try {
        TQUserAbort::UserAbortReset();
        TQUserAbort::Send();
    } catch (TQUserAbort const&) {
    }
    return TQUserAbort::m_UserAbortSent;
}

bool SeesTheSignalerRegistered()
{
    CQtSignaler* const former = UIHelperBase::m_UISignaler;
    UIHelperBase::QtSignaler(SomeSignaler());
    bool const seen = UIHelperBase::m_UISignaler == &SomeSignaler();
    UIHelperBase::m_UISignaler = former;
    return seen;
}

// Every member is changed by the library, looked at here, and put back.
bool AgreesWithTheLibrary()
{
    bool const wasEnabled = TQUserAbort::m_UserAbortEnabled;
    EUserInputState const state = UIHelperBase::UserInputState();
    TQUserAbort::EnableUserAbort(true);
    TQUserAbort::RequestUserAbort();
    TQUserAbort::UserAbortPause();
    TQUserAbort::SetUserAbortOk();
    UIHelperBase::AppName("module");
    UIHelperBase::UserInputState(static_cast<EUserInputState>(5));
    bool const agrees = TQUserAbort::m_UserAbortEnabled && TQUserAbort::m_UserAbortRequested
                        && TQUserAbort::m_UserAbortPaused && TQUserAbort::m_UserAbortOk
                        && UIHelperBase::m_AppName != nullptr
                        && UIHelperBase::m_UserInputState == static_cast<EUserInputState>(5)
                        && SeesTheAbortSent() && SeesTheSignalerRegistered();
    TQUserAbort::UserAbortReset();
    TQUserAbort::EnableUserAbort(wasEnabled);
    UIHelperBase::UserInputState(state);
    return agrees;
}
} // namespace

extern "C" __attribute__((visibility("default"))) void View(ModulesView& view)
{
    view = {&StaticsSeenHere, &AgreesWithTheLibrary};
}
