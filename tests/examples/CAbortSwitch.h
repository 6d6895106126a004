#pragma once

#include <BaseUtilities/TQUserAbort.h>

/// The abort switch armed, and idle and disarmed again afterwards.
class CAbortSwitch
{
public:
    CAbortSwitch() { TQUserAbort::EnableUserAbort(true); }
    CAbortSwitch(CAbortSwitch const&) = delete;
    CAbortSwitch& operator=(CAbortSwitch const&) = delete;
    ~CAbortSwitch()
    {
        TQUserAbort::UserAbortReset();
        TQUserAbort::EnableUserAbort(false);
    }
};
