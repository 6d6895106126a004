#include "Refusals.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/TQException.h>

#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace
{
CSafeString FromSource(fs::path const& source, char const* reason)
{
    return CFormattedString("Cannot copy from source: %s %s.", source.c_str(), reason);
}

CSafeString ToDestination(fs::path const& destination, char const* reason)
{
    return CFormattedString("Cannot copy to destination: %s %s.", destination.c_str(), reason);
}

CSafeString Refused(CSafeString const& fromSource, CSafeString const& toDestination)
{
    return CFormattedString("Unable to copy file '%s' to '%s'.", fromSource, toDestination);
}

// What the file system itself refuses, naming the one path that it was asked about.
CSafeString RefusedBySystem(fs::path const& path, int error)
{
    return CFormattedString("Unable to copy file '%s' to .%s':\n   status = %d (%s)", path.c_str(),
                            "", error, std::generic_category().message(error));
}

std::string MakePipe(fs::path const& pipe)
{
    if (mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR) == 0)
        return {};
    return "no named pipe can be made here: " + std::generic_category().message(errno);
}

std::string MakeLoop(fs::path const& link)
{
    std::error_code error;
    fs::create_symlink(link.filename(), link, error);
    return error ? "no link can be made here: " + error.message() : std::string();
}
} // namespace

std::vector<CRefusal> PrepareRefusals(fs::path const& folder)
{
    fs::path const file = folder / "file";
    fs::path const copy = folder / "copy";
    fs::path const missing = folder / "missing";
    fs::path const inMissing = missing / "copy";
    fs::path const subFolder = folder / "folder";
    fs::path const pipe = folder / "pipe";
    fs::path const loop = folder / "loop";

    std::ofstream(file) << "Refused.\n";
    fs::create_directory(subFolder);
    std::string const noPipe = MakePipe(pipe);
    std::string const noLoop = MakeLoop(loop);

    return {
        {"missing source", missing, copy, Refused(FromSource(missing, "does not exist"), ""), ""},
        {"folder as source", subFolder, copy, Refused(FromSource(subFolder, "is a directory"), ""),
         ""},
        {"named pipe as source", pipe, copy,
         Refused(FromSource(pipe, "is not a standard file type"), ""), noPipe},
        {"destination in a missing folder", file, inMissing,
         Refused("", ToDestination(inMissing, "does not exist")), ""},
        {"named pipe as destination", file, pipe,
         Refused("", ToDestination(pipe, "is not a regular file")), noPipe},
        {"both ends at once", missing, inMissing,
         Refused(FromSource(missing, "does not exist"), ToDestination(inMissing, "does not exist")),
         ""},
        {"link to itself as source", loop, copy, RefusedBySystem(loop, ELOOP), noLoop},
        {"link to itself as destination", file, loop, RefusedBySystem(loop, ELOOP), noLoop},
    };
}

CCaseOutcome CheckRefusal(CRefusal const& refusal, CopyOperation const& copy)
{
    if (!refusal.m_SkipReason.empty())
        return {TEST_STATUS_SKIPPED, CSafeString(refusal.m_SkipReason), 0};

    std::string const& source = refusal.m_Source.native();
    std::string const& destination = refusal.m_Destination.native();
    try {
        copy(source, destination, ECopyFailType::Throw);
    } catch (TQRunTimeException const& error) {
        if (refusal.m_Message != error.what() || error.GetStatus() != TEST_STATUS_ERROR)
            return {
                TEST_STATUS_FAILED,
                CFormattedString("refused with status 0x%x and this message:\n%s\nnot with:\n%s",
                                 error.GetStatus(), error.what(), refusal.m_Message),
                0};
        if (copy(source, destination, ECopyFailType::Report).has_value())
            return {TEST_STATUS_FAILED, "refused aloud, but not in a quiet report", 0};
        return {TEST_STATUS_PASSED, error.what(), 0};
    }
    return {TEST_STATUS_FAILED, "not refused", 0};
}
