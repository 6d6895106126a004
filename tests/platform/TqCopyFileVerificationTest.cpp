// What is found after the copy, and the order of the queries before it. Another process would
// have to interfere just then; here it does so in the query's own thread.

#include "CopyLandscape.h"
#include "StatusHook.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace
{
struct CInterference
{
    char const* name;
    /// What happens to the copy between the copying and the verification.
    void (*act)(fs::path const&);
    /// An error of the query itself, or 0.
    int error;
    std::string what;
};

void Remove(fs::path const& copy)
{
    fs::remove(copy);
}

CInterference const interferences[] = {
    {"Removed", Remove, 0, "Destination file @ does not exist."},
    {"ReplacedByAFolder",
     [](fs::path const& copy) {
         Remove(copy);
         fs::create_directory(copy);
     },
     0, "Destination file @ is a directory."},
    {"ReplacedByADanglingLink",
     [](fs::path const& copy) {
         Remove(copy);
         fs::create_symlink("nowhere", copy);
     },
     0, "Destination file @ does not exist."},
    {"ReplacedByAPipe",
     [](fs::path const& copy) {
         Remove(copy);
         EXPECT_EQ(mkfifo(copy.c_str(), 0600), 0);
     },
     0, "Unexpected file type for @: 6"},
    {"ReplacedBySocket",
     [](fs::path const& copy) {
         Remove(copy);
         EXPECT_EQ(mknod(copy.c_str(), S_IFSOCK | 0600, 0), 0);
     },
     0, "Unexpected file type for @: 7"},
    {"ReplacedByALinkToADevice",
     [](fs::path const& copy) {
         Remove(copy);
         fs::create_symlink("/dev/null", copy);
     },
     0, "Unexpected file type for @: 5"},
    {"TooLargeForAStatus", [](fs::path const&) {}, EOVERFLOW, "Unexpected file type for @: 8"},
    {"ReplacedByALinkLoop",
     [](fs::path const& copy) {
         Remove(copy);
         fs::create_symlink(copy, copy);
     },
     0, "Unable to copy file '@' to .':\n   status = 40 (Too many levels of symbolic links)"},
    {"OnAFailingDisk", [](fs::path const&) {}, EIO,
     "Unable to copy file '@' to .':\n   status = 5 (Input/output error)"},
};

/// Acts when a query finds the file that was not there before the copy: at the verification.
CStatusHook::Hook InterfereWith(fs::path const& copy, CInterference const& interference)
{
    return [copy, interference](fs::path const& queried) {
        if (queried != copy || !fs::exists(fs::symlink_status(copy)))
            return 0;
        interference.act(copy);
        return interference.error;
    };
}

std::string WithPath(std::string text, std::string const& path)
{
    return text.replace(text.find('@'), 1, path);
}

class TqCopyFileVerification : public testing::TestWithParam<CInterference>
{
protected:
    CCopyLandscape const m_Landscape;
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileVerification, testing::ValuesIn(interferences),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileVerification, NamesTheNewFile)
{
    std::string const copy = m_Landscape / "new";
    CStatusHook const hook(InterfereWith(copy, GetParam()));
    EXPECT_EQ(Copy(m_Landscape / "from", copy), Threw(WithPath(GetParam().what, copy)));
}

TEST_P(TqCopyFileVerification, NamesTheFileInTheFolder)
{
    std::string const copy = m_Landscape / "folder/from";
    CStatusHook const hook(InterfereWith(copy, GetParam()));
    EXPECT_EQ(Copy(m_Landscape / "from", m_Landscape / "folder"),
              Threw(WithPath(GetParam().what, copy)));
}

TEST_P(TqCopyFileVerification, IsReportedByAnEmptyResult)
{
    for (int const failType : {0, 2, -1}) {
        std::string const copy = m_Landscape / ("new" + std::to_string(failType));
        CStatusHook const hook(InterfereWith(copy, GetParam()));
        EXPECT_EQ(Copy(m_Landscape / "from", copy, static_cast<ECopyFailType>(failType)),
                  "returned nothing");
    }
}

// Nothing is rolled back.
TEST(TqCopyFile, LeavesTheCopyWhereTheVerificationFails)
{
    CCopyLandscape const landscape;
    fs::remove(landscape / "old");
    int queries = 0;
    CStatusHook const hook([&](fs::path const& queried) {
        bool const copied = queried == landscape / "old" && fs::exists(landscape / "old");
        queries += copied;
        return copied ? EIO : 0;
    });
    EXPECT_EQ(Copy(landscape / "from", landscape / "old", ECopyFailType::Report),
              "returned nothing");
    EXPECT_EQ(queries, 1);
    EXPECT_EQ(ReadFile(landscape / "old"), "contents");
}

// So the second look at it, which fails here, is that of the destination's own check.
TEST(TqCopyFile, ComparesNoMissingDestinationWithTheSource)
{
    CCopyLandscape const landscape;
    int queries = 0;
    CStatusHook const hook([&](fs::path const& queried) {
        queries += queried == landscape / "new";
        return queried == landscape / "new" && queries == 2 ? EACCES : 0;
    });
    EXPECT_EQ(Copy(landscape / "from", landscape / "new"),
              Threw("Unable to copy file '" + landscape / "new"
                    + "' to .':\n   status = 13 (Permission denied)"));
}

// A file of unknown kind is there all the same: neither missing nor none.
TEST(TqCopyFile, RefusesASourceOfUnknownKind)
{
    CCopyLandscape const landscape;
    CStatusHook const hook(
        [&](fs::path const& queried) { return queried == landscape / "from" ? EOVERFLOW : 0; });
    EXPECT_EQ(Copy(landscape / "from", landscape / "new"),
              Threw("Unable to copy file 'Cannot copy from source: " + landscape / "from"
                    + " is not a standard file type.' to ''."));
}

// With a source that fails, too: the search for the same file at both ends fails on such a file.
TEST(TqCopyFile, RefusesADestinationOfUnknownKind)
{
    CCopyLandscape const landscape;
    CStatusHook const hook(
        [&](fs::path const& queried) { return queried == landscape / "old" ? EOVERFLOW : 0; });
    EXPECT_EQ(Copy(landscape / "missing", landscape / "old"),
              Threw("Unable to copy file 'Cannot copy from source: " + landscape / "missing"
                    + " does not exist.' to 'Cannot copy to destination: " + landscape / "old"
                    + " is not a regular file.'."));
}

TEST(TqCopyFile, CannotTellAFileOfUnknownKindFromTheSource)
{
    CCopyLandscape const landscape;
    CStatusHook const hook(
        [&](fs::path const& queried) { return queried == landscape / "old" ? EOVERFLOW : 0; });
    EXPECT_EQ(Copy(landscape / "from", landscape / "old"),
              Threw("Unable to copy file '" + landscape / "old" + "' to ." + landscape / "from"
                    + "':\n   status = 75 (Value too large for defined data type)"));
    EXPECT_EQ(ReadFile(landscape / "old"), "what was there");
}

namespace
{
/// The paths asked for during a copy, each once, in the order of the first queries.
std::vector<std::string> Queried(CCopyLandscape const& landscape, std::string const& source,
                                 std::string const& destination)
{
    std::vector<std::string> paths;
    CStatusHook const hook([&](fs::path const& queried) {
        fs::path const path = queried.lexically_relative(landscape.Path());
        if (paths.empty() || paths.back() != path)
            paths.push_back(path);
        return 0;
    });
    Copy(landscape / source, landscape / destination, ECopyFailType::Report);
    return paths;
}

using Paths = std::vector<std::string>;
} // namespace

TEST(TqCopyFile, AsksForTheSourceBeforeTheDestination)
{
    CCopyLandscape const landscape;
    EXPECT_EQ(Queried(landscape, "missing", "pipe"), (Paths{"missing", "pipe"}));
}

TEST(TqCopyFile, AsksForTheParentOfANewDestinationLast)
{
    CCopyLandscape const landscape;
    EXPECT_EQ(Queried(landscape, "folder", "missing/new"),
              (Paths{"folder", "missing/new", "missing"}));
}

TEST(TqCopyFile, NeverAsksForTheParentOfADestinationThatExists)
{
    CCopyLandscape const landscape;
    EXPECT_EQ(Queried(landscape, "missing", "folder/inner"), (Paths{"missing", "folder/inner"}));
}
