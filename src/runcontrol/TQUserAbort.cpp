#include <BaseUtilities/TQUserAbort.h>

#include <mutex>

namespace
{
// Fills its cache line, so that who polls under one lock holds up neither who polls under another
// nor who reads a flag.
struct alignas(64) CLock : std::mutex
{
};

// Taken in this order where more than one is held.
CLock enableLock;
CLock stateLock;
CLock requestLock;

using Guard = std::lock_guard<std::mutex>;

// m_UserAbortOk has no lock; relaxed access keeps the plain flag free of data races.
void StoreUserAbortOk(bool ok)
{
    __atomic_store_n(&TQUserAbort::m_UserAbortOk, ok, __ATOMIC_RELAXED);
}
} // namespace

void TQUserAbort::UserAbortReset()
{
    Guard const state(stateLock);
    Guard const request(requestLock);
    StoreUserAbortOk(false);
    m_UserAbortSent = false;
    m_UserAbortPaused = false;
    m_UserAbortRequested = false;
}

bool TQUserAbort::UserAbortSent()
{
    Guard const state(stateLock);
    return m_UserAbortSent;
}

void TQUserAbort::Send()
{
    Guard const state(stateLock);
    if (m_UserAbortPaused || m_UserAbortSent)
        return;
    m_UserAbortSent = true;
    throw TQUserAbort();
}

void TQUserAbort::SetUserAbortOk()
{
    StoreUserAbortOk(true);
}

bool TQUserAbort::IsUserAbortOk()
{
    return __atomic_load_n(&m_UserAbortOk, __ATOMIC_RELAXED);
}

bool TQUserAbort::UserAbortEnabled()
{
    Guard const enabling(enableLock);
    return m_UserAbortEnabled;
}

bool TQUserAbort::EnableUserAbort(bool enable)
{
    Guard const enabling(enableLock);
    if (enable)
        UserAbortReset();
    m_UserAbortEnabled = enable;
    return m_UserAbortEnabled;
}

bool TQUserAbort::RequestUserAbort()
{
    if (UserAbortSent())
        return false;
    Guard const enabling(enableLock);
    Guard const request(requestLock);
    bool const turnedOn = m_UserAbortEnabled && !m_UserAbortRequested;
    m_UserAbortRequested = m_UserAbortEnabled;
    return turnedOn;
}

bool TQUserAbort::UserAbortRequested()
{
    Guard const request(requestLock);
    return m_UserAbortRequested;
}

void TQUserAbort::UserAbortPause()
{
    Guard const state(stateLock);
    m_UserAbortPaused = true;
}

void TQUserAbort::UserAbortResume()
{
    Guard const state(stateLock);
    m_UserAbortPaused = false;
}

bool TQUserAbort::IsPaused()
{
    Guard const state(stateLock);
    return m_UserAbortPaused;
}
