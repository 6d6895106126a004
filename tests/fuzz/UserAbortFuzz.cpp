// The abort switch against a table of its states.

#include "Fuzz.h"

#include <BaseUtilities/TQUserAbort.h>

namespace
{
enum EState : unsigned { Ok = 1, Paused = 2, Sent = 4, Requested = 8, Enabled = 16 };

enum class EEvent { Reset, Send, SetOk, Enable, Disable, Request, Pause, Resume };

enum class EResult { Nothing, False, True, Throws };

// In a state where of the bits in `mask` exactly those of `bits` are set, the event clears and sets
// bits. The first row that fits is the one.
struct SRow
{
    EEvent m_Event;
    unsigned m_Mask;
    unsigned m_Bits;
    unsigned m_Clears;
    unsigned m_Sets;
    EResult m_Result;
};

constexpr unsigned AllButEnabled = Ok | Paused | Sent | Requested;

constexpr SRow Rows[] = {
    {EEvent::Reset, 0, 0, AllButEnabled, 0, EResult::Nothing},
    {EEvent::Send, Paused, Paused, 0, 0, EResult::Nothing},
    {EEvent::Send, Sent, Sent, 0, 0, EResult::Nothing},
    {EEvent::Send, 0, 0, 0, Sent, EResult::Throws},
    {EEvent::SetOk, 0, 0, 0, Ok, EResult::Nothing},
    {EEvent::Enable, 0, 0, AllButEnabled, Enabled, EResult::True},
    {EEvent::Disable, 0, 0, Enabled, 0, EResult::False},
    {EEvent::Request, Sent, Sent, 0, 0, EResult::False},
    {EEvent::Request, Enabled, 0, Requested, 0, EResult::False},
    {EEvent::Request, Requested, Requested, 0, 0, EResult::False},
    {EEvent::Request, 0, 0, 0, Requested, EResult::True},
    {EEvent::Pause, 0, 0, 0, Paused, EResult::Nothing},
    {EEvent::Resume, 0, 0, Paused, 0, EResult::Nothing},
};

SRow const& RowOf(EEvent event, unsigned state)
{
    SRow const* row = Rows;
    while (row->m_Event != event || (state & row->m_Mask) != row->m_Bits)
        ++row;
    return *row;
}

EResult OfBool(bool value)
{
    return value ? EResult::True : EResult::False;
}

EResult Do(EEvent event)
{
    switch (event) {
    case EEvent::Reset:
        TQUserAbort::UserAbortReset();
        return EResult::Nothing;
    case EEvent::Send:
        TQUserAbort::Send();
        return EResult::Nothing;
    case EEvent::SetOk:
        TQUserAbort::SetUserAbortOk();
        return EResult::Nothing;
    case EEvent::Enable:
    case EEvent::Disable:
        return OfBool(TQUserAbort::EnableUserAbort(event == EEvent::Enable));
    case EEvent::Request:
        return OfBool(TQUserAbort::RequestUserAbort());
    case EEvent::Pause:
        TQUserAbort::UserAbortPause();
        return EResult::Nothing;
    case EEvent::Resume:
        TQUserAbort::UserAbortResume();
        return EResult::Nothing;
    }
    return EResult::Nothing;
}

EResult Outcome(EEvent event)
{
    try {
        return Do(event);
    } catch (TQUserAbort const&) {
        return EResult::Throws;
    }
}

unsigned State()
{
    return (TQUserAbort::IsUserAbortOk() ? Ok : 0U) | (TQUserAbort::IsPaused() ? Paused : 0U)
           | (TQUserAbort::UserAbortSent() ? Sent : 0U)
           | (TQUserAbort::UserAbortRequested() ? Requested : 0U)
           | (TQUserAbort::UserAbortEnabled() ? Enabled : 0U);
}
} // namespace

// Planted defect: disabling withdraws a request at once.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    TQUserAbort::EnableUserAbort(false);
    TQUserAbort::UserAbortReset();
    unsigned state = 0;
    while (!input.IsUsedUp()) {
        auto const event = static_cast<EEvent>(input.Choice(8));
        SRow const& row = RowOf(event, state);
        ExpectSame("result", static_cast<int>(Outcome(event)), static_cast<int>(row.m_Result));
        state = (state & ~row.m_Clears) | row.m_Sets;
        if (IsDefectPlanted() && event == EEvent::Disable)
            state &= ~static_cast<unsigned>(Requested);
        ExpectSame("state", State(), state);
    }
    return 0;
}
