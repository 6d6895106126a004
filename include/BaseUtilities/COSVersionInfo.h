#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/custom_unique_ptr.h>

class COSVersionInfoImpl;

extern template BASEUTILITIES_EXPORT void CustomDelete<COSVersionInfoImpl>(COSVersionInfoImpl*);

/// The version of the operating system, taken once when the library is loaded;
/// every object gives the same answers, a moved-from one too. A component that
/// cannot be told is -1.
///
/// Threads: any number at once.
class BASEUTILITIES_EXPORT COSVersionInfo
{
public:
    /// Throws std::bad_alloc.
    COSVersionInfo();

    int Major();
    int Minor();
    int Patch();

private:
    custom_unique_ptr<COSVersionInfoImpl> m_pImpl;
};
