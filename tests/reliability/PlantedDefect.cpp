// One defect on purpose, by the name given: each checker must report its own within the library,
// for a checker that reports nothing here would report nothing anywhere.

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CMemWrapper.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/TQUserAbort.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace
{
// What the compiler cannot look through, so that it neither warns nor leaves the defect out.
template <class T>
T* Hidden(T* pointer)
{
    T* volatile hidden = pointer;
    return hidden;
}

// The library reads an object that is gone.
void ReadReleasedMemory()
{
    CFormatInfo* const record = Hidden(new CFormatInfo);
    delete record;
    Hidden(record)->ClearColor(true);
}

// A block that the library allocated is lost.
void LoseMemory()
{
    std::memset(Hidden(CMemWrapper::AllocateMemory(40, false)), 0, 40);
}

// The library reads a bool that is neither true nor false.
void ReadNoBool()
{
    std::memset(Hidden(&TQUserAbort::m_UserAbortPaused), 2, 1);
    TQUserAbort::IsPaused();
}

// The library decides by a byte that was never written.
void ReadNoValue()
{
    void* block = CMemWrapper::AllocateMemory(sizeof(CFormatInfo), false);
    static_cast<CFormatInfo*>(Hidden(block))->ClearColor(true);
    CMemWrapper::ReleaseMemory(block);
}
} // namespace

int main(int count, char** arguments)
{
    std::string const defect = count == 2 ? arguments[1] : "";
    if (defect == "address")
        ReadReleasedMemory();
    else if (defect == "leak")
        LoseMemory();
    else if (defect == "undefined")
        ReadNoBool();
    else if (defect == "uninitialised")
        ReadNoValue();
    else if (defect != "none")
        return 64;
    return 0;
}
