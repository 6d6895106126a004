#include "RunRecord.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/COSVersionInfo.h>
#include <BaseUtilities/LibraryVersion.h>
#include <BaseUtilities/MakeTimeString.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQUuid.h>

#include <QString>
#include <QSysInfo>

#include <random>

namespace
{
// Version 4, variant 1: random but for the bits that say so.
TQUuid RandomIdentifier()
{
    std::random_device random;
    TQUuid identifier;
    identifier.m_Data1 = random();
    identifier.m_Data2 = static_cast<std::uint16_t>(random());
    identifier.m_Data3 = static_cast<std::uint16_t>((random() & 0x0FFF) | 0x4000);
    for (std::uint8_t& byte : identifier.m_Data4)
        byte = static_cast<std::uint8_t>(random());
    identifier.m_Data4[0] = static_cast<std::uint8_t>((identifier.m_Data4[0] & 0x3F) | 0x80);
    return identifier;
}

// Where the library cannot tell the system's version, the name that the system has for itself
// stands in for it.
CSafeString SystemVersion()
{
    COSVersionInfo system;
    if (system.Major() >= 0)
        return CFormattedString("%d.%d.%d", system.Major(), system.Minor(), system.Patch());
    return QSysInfo::prettyProductName().toUtf8().constData();
}

CSafeString Counted(unsigned long count, char const* verb, char const* plural = "")
{
    return CSafeString::to_string(count) + ' ' + PluralVerb(count, verb, plural);
}
} // namespace

CRunRecord MakeRunRecord()
{
    CRunRecord record;
    record.m_Identifier = RandomIdentifier().ToString();
    record.m_Started = TimeStamp();
    record.m_LibraryVersion = CFormattedString("%d.%d.%d.%d", GetVersionMajor(), GetVersionMinor(),
                                               GetVersionPatch(), GetVersionTweak());
    record.m_SystemVersion = SystemVersion();
    return record;
}

CSafeString TimeStamp()
{
    return MakeCurrentTimeString("%Y-%m-%d %H:%M:%S %Z");
}

CSafeString CountsText(CSuiteSummary const& summary)
{
    unsigned long const count = summary.m_CaseCount;
    // "pass" would become "passs", so its singular is spelled out.
    std::vector<CSafeString> parts = {
        Counted(summary.m_Passed, "pass", summary.m_Passed == 1 ? "passes" : "pass"),
        Counted(summary.m_Failed, "fail"), Counted(summary.m_Skipped, "skip")};
    if (summary.NotRun() > 0)
        parts.push_back(Counted(summary.NotRun(), "remain"));
    return CSafeString::to_string(count) + ' ' + PluralNoun(count, "case", "") + ": "
           + StringJoin(parts, ", ") + '.';
}
