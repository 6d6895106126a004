#include "CFileCheck.h"

#include "CFileReader.h"
#include "ExternalCompare.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/EncodingConversions.h>
#include <BaseUtilities/TQException.h>

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace
{
constexpr std::size_t blockSize = std::size_t(64) * 1024;

CCaseOutcome Skipped(basic_sv_wrapper<char> const& reason)
{
    return {TEST_STATUS_SKIPPED, reason, 0};
}

CCaseOutcome Failed(basic_sv_wrapper<char> const& reason)
{
    return {TEST_STATUS_FAILED, reason, 0};
}

bool HasVanished(fs::path const& file)
{
    std::error_code ignored;
    return fs::status(file, ignored).type() == fs::file_type::not_found;
}

// Well-formed UTF-16 as wide text. Not by way of the standard library, whose
// conversions of paths fail outside of a UTF-8 locale.
std::wstring ToWide(std::u16string const& text)
{
    std::wstring wide;
    for (char16_t const unit : text) {
        bool const secondHalf = unit >= 0xDC00 && unit <= 0xDFFF;
        if (secondHalf)
            wide.back() =
                static_cast<wchar_t>(0x10000 + ((wide.back() - 0xD800) << 10) + (unit - 0xDC00));
        else
            wide.push_back(static_cast<wchar_t>(unit));
    }
    return wide;
}

// A copy, gone with this object.
class CCopy
{
public:
    explicit CCopy(fs::path file) : m_File(std::move(file)) {}
    CCopy(CCopy const&) = delete;
    CCopy& operator=(CCopy const&) = delete;
    ~CCopy()
    {
        std::error_code ignored; // what stays goes with the work folder
        fs::remove(m_File, ignored);
    }
    fs::path const& File() const { return m_File; }

private:
    fs::path m_File;
};
} // namespace

char const* LossyConversion(std::string const& name)
{
    auto const utf16 = Utf8ToUtf16(name);
    if (*Utf16ToUtf8(*utf16) != name)
        return "UTF-8 to UTF-16 and back";
    if (*StdWStrToUtf8(ToWide(*utf16)) != name)
        return "UTF-8 to wide text and back";
    return nullptr;
}

CFileCheck::CFileCheck(fs::path copies, CopyOperation copy)
    : m_Copies(std::move(copies)),
      m_Copy(std::move(copy))
{
}

CCaseOutcome CFileCheck::Check(CFoundEntry const& entry)
{
    if (!entry.m_SkipReason.empty())
        return Skipped(entry.m_SkipReason);
    if (char const* const conversion = LossyConversion(entry.m_Name))
        return Failed(CSafeString(CFormattedString("the name does not survive: %s", conversion)));

    std::optional<CFileReader> source;
    try {
        source.emplace(entry.m_Path);
    } catch (std::system_error const& error) {
        if (HasVanished(entry.m_Path))
            return Skipped("vanished before its turn");
        return Skipped("cannot be read: " + error.code().message());
    }
    if (!source->IsRegular())
        return Skipped("no longer a regular file");
    return CheckReadable(entry, *source);
}

CCaseOutcome CFileCheck::CheckReadable(CFoundEntry const& entry, CFileReader& source)
{
    CFileReader::CStamp const before = source.Stamp();
    CCopy const copy(m_Copies / entry.m_Path.filename());
    std::optional<CSafeString> reported;
    try {
        reported = m_Copy(entry.m_Path.native(), m_Copies.native(), ECopyFailType::Throw);
    } catch (TQException const&) {
        if (HasVanished(entry.m_Path))
            return Skipped("vanished before it was copied");
        throw;
    }
    if (!reported || *reported != basic_sv_wrapper<char>(copy.File().native()))
        return Failed("copied, but another path was reported than " + copy.File().native());

    CCaseOutcome outcome = Compare(source, copy.File());
    if (outcome.m_Verdict == TEST_STATUS_PASSED && !ComparesEqual(entry.m_Path, copy.File()))
        outcome = Failed("the system's cmp finds the copy different");
    if (outcome.m_Verdict != TEST_STATUS_PASSED && !(source.Stamp() == before))
        return Skipped("changed while it was being checked");
    if (!entry.m_LinkTarget.empty() && outcome.m_Verdict == TEST_STATUS_PASSED)
        outcome.m_Detail.set("link to " + entry.m_LinkTarget);
    return outcome;
}

CCaseOutcome CFileCheck::Compare(CFileReader& source, fs::path const& copyFile)
{
    CFileReader copy(copyFile);
    unsigned long long equal = 0;
    do {
        m_SourceBlock.resize(blockSize);
        m_CopyBlock.resize(blockSize);
        source.Read(m_SourceBlock);
        copy.Read(m_CopyBlock);
        auto const difference = std::mismatch(m_SourceBlock.begin(), m_SourceBlock.end(),
                                              m_CopyBlock.begin(), m_CopyBlock.end());
        equal += static_cast<unsigned long long>(difference.first - m_SourceBlock.begin());
        if (m_SourceBlock != m_CopyBlock)
            return Failed(CSafeString(
                CFormattedString("the copy differs from the file at byte %llu", equal)));
    } while (!m_SourceBlock.empty());
    return {TEST_STATUS_PASSED, "", equal};
}
