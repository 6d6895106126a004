#include <BaseUtilities/UIHelperBase.h>

#include <BaseUtilities/CSafeString.h>

EUserInputState UIHelperBase::m_UserInputState{};

void UIHelperBase::QtSignaler(CQtSignaler& signaler)
{
    m_UISignaler = &signaler;
}

void UIHelperBase::AppName(basic_sv_wrapper<char> const& name)
{
    static CSafeString const text(1, name ? '\1' : '\0');
    m_AppName = text.get();
}

EUserInputState& UIHelperBase::UserInputState()
{
    return m_UserInputState;
}

void UIHelperBase::UserInputState(EUserInputState state)
{
    m_UserInputState = state;
}
