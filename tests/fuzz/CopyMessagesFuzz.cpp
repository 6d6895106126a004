// What a copy says of files whose names are as hostile as the file system allows, against messages
// put together from their parts, without a format.

#include "Fuzz.h"

#include "TemporaryFolder.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TqCopyFile.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

// A path, what the copy will find wrong with it, and whether even asking about it fails.
struct SEnd
{
    fs::path m_Path;
    std::string m_Reason;
    bool m_IsTooLong = false;
};

// Any bytes but those that end a name.
std::string Name(CFuzzInput& input)
{
    std::string name = input.Text();
    std::replace(name.begin(), name.end(), '/', '%');
    std::replace(name.begin(), name.end(), '\0', '\n');
    if (name.empty() || name == "." || name == "..")
        name += "%n";
    return name;
}

SEnd TooLong(fs::path const& folder, CFuzzInput& input)
{
    SEnd end{folder / Name(input), "", true};
    end.m_Path += std::string(256, '%');
    return end;
}

SEnd Source(fs::path const& folder, CFuzzInput& input)
{
    fs::create_directory(folder);
    fs::path const path = folder / Name(input);
    switch (input.Choice(8)) {
    case 0:
        return {path, "does not exist"};
    case 1:
        fs::create_directory(path);
        return {path, "is a directory"};
    case 2:
        mkfifo(path.c_str(), 0600);
        return {path, "is not a standard file type"};
    case 3:
        return TooLong(folder, input);
    default:
        WriteFile(path, "contents");
        return {path, ""};
    }
}

SEnd Destination(fs::path const& folder, CFuzzInput& input)
{
    fs::create_directory(folder);
    fs::path const path = folder / Name(input);
    switch (input.Choice(8)) {
    case 0:
        return {path / Name(input), "does not exist"};
    case 1:
        mkfifo(path.c_str(), 0600);
        return {path, "is not a regular file"};
    case 2:
        return TooLong(folder, input);
    case 3:
        fs::create_directory(path);
        return {path, ""};
    case 4:
        WriteFile(path, "what was there");
        return {path, ""};
    default:
        return {path, ""};
    }
}

// Planted defect: a line break in a name becomes a blank.
std::string Shown(fs::path const& path)
{
    std::string text = path.native();
    if (IsDefectPlanted())
        std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string EndMessage(std::string const& opening, SEnd const& end)
{
    if (end.m_Reason.empty())
        return {};
    return std::string(2 * CFormattedString::m_sIndentLevel, ' ') + opening + Shown(end.m_Path)
           + ' ' + end.m_Reason + '.';
}

// Empty where the copy will succeed.
std::string ExpectedMessage(SEnd const& source, SEnd const& destination)
{
    for (SEnd const* const end : {&source, &destination}) {
        if (end->m_IsTooLong)
            return "Unable to copy file '" + Shown(end->m_Path)
                   + "' to .':\n   status = " + std::to_string(ENAMETOOLONG) + " ("
                   + std::generic_category().message(ENAMETOOLONG) + ')';
    }
    if (source.m_Reason.empty() && destination.m_Reason.empty())
        return {};
    return "Unable to copy file '" + EndMessage("Cannot copy from source: ", source) + "' to '"
           + EndMessage("Cannot copy to destination: ", destination) + "'.";
}

void CheckCopy(SEnd const& source, SEnd const& destination, bool throws)
{
    std::string const expected = ExpectedMessage(source, destination);
    fs::path const target = fs::is_directory(destination.m_Path.parent_path())
                                    && !destination.m_IsTooLong
                                    && fs::is_directory(destination.m_Path)
                                ? destination.m_Path / source.m_Path.filename()
                                : destination.m_Path;
    std::optional<CSafeString> copied;
    std::string message;
    try {
        copied = TqCopyFile(source.m_Path.native(), destination.m_Path.native(),
                            throws ? ECopyFailType::Throw : ECopyFailType::Report);
    } catch (TQRunTimeException const& error) {
        message = error.what();
        ExpectSame("status", error.GetStatus(), TEST_STATUS_ERROR);
    }
    ExpectSame("message", message, throws ? expected : "");
    ExpectSame("success", copied.has_value(), expected.empty());
    if (copied) {
        ExpectSame("result", copied->get(), target.native());
        ExpectSame("copy", ReadFile(target), "contents");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    static CTemporaryFolder const folder;
    CFuzzInput input(bytes, count);
    bool const throws = input.Choice(4) != 0;
    CFormattedString::m_sIndentLevel = input.Choice(4);
    SEnd const source = Source(folder.Path() / "from", input);
    SEnd const destination = Destination(folder.Path() / "to", input);
    CheckCopy(source, destination, throws);
    fs::remove_all(folder.Path() / "from");
    fs::remove_all(folder.Path() / "to");
    return 0;
}
