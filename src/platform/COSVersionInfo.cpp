#include <BaseUtilities/COSVersionInfo.h>

#include <QOperatingSystemVersion>

class COSVersionInfoImpl
{
public:
    // NOLINTNEXTLINE(cert-err58-cpp): allocates nothing, so nothing is thrown.
    inline static QOperatingSystemVersion const m_OSVersion = QOperatingSystemVersion::current();
};

template BASEUTILITIES_EXPORT void CustomDelete<COSVersionInfoImpl>(COSVersionInfoImpl*);

COSVersionInfo::COSVersionInfo()
    : m_pImpl(new COSVersionInfoImpl, &CustomDelete<COSVersionInfoImpl>)
{
}

int COSVersionInfo::Major()
{
    return COSVersionInfoImpl::m_OSVersion.majorVersion();
}

int COSVersionInfo::Minor()
{
    return COSVersionInfoImpl::m_OSVersion.minorVersion();
}

int COSVersionInfo::Patch()
{
    return COSVersionInfoImpl::m_OSVersion.microVersion();
}
