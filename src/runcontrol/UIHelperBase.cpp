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
    // First calls may meet; relaxed access keeps the plain member free of data races.
    __atomic_store_n(&m_AppName, text.get(), __ATOMIC_RELAXED);
}

EUserInputState& UIHelperBase::UserInputState()
{
    return m_UserInputState;
}

void UIHelperBase::UserInputState(EUserInputState state)
{
    m_UserInputState = state;
}
