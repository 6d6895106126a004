#include <BaseUtilities/TqCopyFile.h>

#include "CopyFailure.h"
#include "PathText.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace
{
// Not found, or without any status.
bool IsMissing(fs::file_status const& status)
{
    return !fs::exists(status);
}

// Null when the source can be copied.
char const* SourceReason(fs::file_status const& status)
{
    if (fs::is_regular_file(status))
        return nullptr;
    if (fs::is_directory(status))
        return "is a directory";
    return IsMissing(status) ? "does not exist" : "is not a standard file type";
}

// Null when the destination can be written.
char const* DestinationReason(fs::path const& destination, fs::file_status const& status)
{
    if (fs::is_regular_file(status) || fs::is_directory(status))
        return nullptr;
    if (!IsMissing(status))
        return "is not a regular file";
    return fs::is_directory(destination.parent_path()) ? nullptr : "does not exist";
}

// The message of a check, or empty text where the check passed.
class CCheckMessage
{
public:
    void Set(basic_sv_wrapper<char> const& format, fs::path const& path, char const* reason)
    {
        m_Text.emplace(format, path.c_str(), reason);
    }
    bool IsSet() const { return m_Text.has_value(); }
    char const* get() const { return m_Text ? m_Text->get() : CFormattedString::EMPTY_STR; }

private:
    std::optional<CFormattedString> m_Text;
};

std::optional<CSafeString> VerifyCopy(fs::path const& copied, bool throws)
{
    fs::file_status const status = fs::status(copied);
    if (fs::is_regular_file(status))
        return ToText(copied);
    if (throws)
        ThrowNotACopy(copied, status.type());
    return std::nullopt;
}

std::optional<CSafeString> CopyChecked(fs::path const& source, fs::path const& destination,
                                       bool throws)
{
    fs::file_status const sourceStatus = fs::status(source);
    CCheckMessage sourceMessage;
    if (char const* const reason = SourceReason(sourceStatus))
        sourceMessage.Set("Cannot copy from source: %s %s.", source, reason);
    else if (!IsMissing(fs::status(destination)) && fs::equivalent(destination, source))
        return ToText(destination);

    fs::file_status const destinationStatus = fs::status(destination);
    CCheckMessage destinationMessage;
    if (char const* const reason = DestinationReason(destination, destinationStatus))
        destinationMessage.Set("Cannot copy to destination: %s %s.", destination, reason);

    if (sourceMessage.IsSet() || destinationMessage.IsSet()) {
        if (throws)
            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "Unable to copy file '%s' to '%s'.",
                                        sourceMessage.get(), destinationMessage.get());
        return std::nullopt;
    }

    fs::copy(source, destination, fs::copy_options::overwrite_existing);

    if (fs::is_directory(destinationStatus))
        return VerifyCopy(destination / source.filename(), throws);
    return VerifyCopy(destination, throws);
}
} // namespace

std::optional<CSafeString> TqCopyFile(basic_sv_wrapper<char> const& source,
                                      basic_sv_wrapper<char> const& destination,
                                      ECopyFailType failType)
{
    bool const throws = failType == ECopyFailType::Throw;
    try {
        return CopyChecked(ToPath(source), ToPath(destination), throws);
    } catch (fs::filesystem_error const& error) {
        if (throws)
            ThrowCopyError(error);
        return std::nullopt;
    }
}
