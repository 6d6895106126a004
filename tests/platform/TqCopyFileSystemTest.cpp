// Limits that the system sets: rights, room, sizes. Each in a process of its own, which can give
// up its rights for good.

#include "Allocations.h"
#include "ChildProcess.h"
#include "CopyLandscape.h"
#include "TransferHook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
/// What a copy must leave alone: the current folder and the number of open descriptors, which here
/// are counted without opening one more.
std::string StateOfTheProcess()
{
    int open = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor)
        open += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
    std::error_code code;
    return std::to_string(open) + " descriptors in " + fs::current_path(code).native();
}

/// As Copy, which says also when it has left the process in another state.
std::string CopyAndLook(std::string const& source, std::string const& destination,
                        ECopyFailType failType)
{
    std::string const before = StateOfTheProcess();
    std::string const outcome = Copy(source, destination, failType);
    std::string const after = StateOfTheProcess();
    return after == before ? outcome : outcome + " and left " + after + ", not " + before;
}

struct CRight
{
    char const* name;
    /// The entry whose rights are set before the copy.
    char const* entry;
    fs::perms rights;
    std::string source;
    std::string destination;
    std::string what;
};

CRight const rights[] = {
    {"UnreadableSource", "from", fs::perms::none, "@/from", "@/folder",
     "Unable to copy file '@/from' to .@/folder':\n   status = 13 (Permission denied)"},
    {"SourceInAClosedFolder", "folder", fs::perms::none, "@/folder/inner", "@/new",
     "Unable to copy file '@/folder/inner' to .':\n   status = 13 (Permission denied)"},
    {"DestinationInAClosedFolder", "folder", fs::perms::none, "@/from", "@/folder/new",
     "Unable to copy file '@/folder/new' to .':\n   status = 13 (Permission denied)"},
    {"ClosedFolderAsDestination", "folder", fs::perms::none, "@/from", "@/folder",
     "Unable to copy file '@/from' to .@/folder':\n   status = 13 (Permission denied)"},
    {"NewFileInAFolderThatTakesNone", "folder", fs::perms::owner_read | fs::perms::owner_exec,
     "@/from", "@/folder/new",
     "Unable to copy file '@/from' to .@/folder/new':\n   status = 13 (Permission denied)"},
    {"FolderThatTakesNoFile", "folder", fs::perms::owner_read | fs::perms::owner_exec, "@/from",
     "@/folder", "Unable to copy file '@/from' to .@/folder':\n   status = 13 (Permission denied)"},
    {"ReadOnlyOldFile", "old", fs::perms::owner_read, "@/from", "@/old",
     "Unable to copy file '@/from' to .@/old':\n   status = 13 (Permission denied)"},
};

char const* const closed = "closed to other users";

class TqCopyFileRights : public testing::TestWithParam<CRight>
{
protected:
    TqCopyFileRights()
    {
        // Root needs no rights: it hands all to the user that the child becomes.
        if (geteuid() == 0) {
            for (auto const& [path, description] : m_Landscape.Snapshot())
                EXPECT_EQ(lchown(Full(path).c_str(), 65534, 65534), 0) << path;
        }
        fs::permissions(m_Landscape / GetParam().entry, GetParam().rights);
    }
    ~TqCopyFileRights() override
    {
        fs::permissions(m_Landscape / GetParam().entry, fs::perms::owner_all);
    }
    std::string Full(std::string const& path) const
    {
        return path == "." ? m_Landscape.Path().native() : path;
    }
    std::string CopyAsOrdinaryUser(ECopyFailType failType) const
    {
        return InChildProcess([&]() -> std::string {
            BecomeOrdinaryUser();
            if (access(m_Landscape.Path().c_str(), X_OK) != 0)
                return closed;
            return CopyAndLook(m_Landscape.Fill(GetParam().source),
                               m_Landscape.Fill(GetParam().destination), failType);
        });
    }

    CCopyLandscape const m_Landscape;
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileRights, testing::ValuesIn(rights),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileRights, MissingAreThrown)
{
    std::string const outcome = CopyAsOrdinaryUser(ECopyFailType::Throw);
    if (outcome == closed)
        GTEST_SKIP() << "the folder of temporary files is " << closed;
    EXPECT_EQ(outcome, Threw(m_Landscape.Fill(GetParam().what)));
}

TEST_P(TqCopyFileRights, MissingAreReported)
{
    std::string const outcome = CopyAsOrdinaryUser(ECopyFailType::Report);
    if (outcome == closed)
        GTEST_SKIP() << "the folder of temporary files is " << closed;
    EXPECT_EQ(outcome, "returned nothing");
}

namespace
{
std::string const contents(256 * 1024, 'c');

/// The code that std::filesystem::copy gives for the same copy: standard libraries differ in
/// what they call a disk that fills up in the middle.
std::string ExpectedError(fs::path const& source, fs::path const& destination)
{
    std::error_code code;
    fs::copy(source, destination, fs::copy_options::overwrite_existing, code);
    return Threw("Unable to copy file '" + source.native() + "' to ." + destination.native()
                 + "':\n   status = " + std::to_string(code.value()) + " (" + code.message() + ")");
}

/// In a child; the text "agrees", or what is wrong.
std::string CompareFailures(std::string const& source, std::string const& destination)
{
    std::string const expected = ExpectedError(source, destination);
    std::string const thrown = CopyAndLook(source, destination, ECopyFailType::Throw);
    std::string const reported = CopyAndLook(source, destination, ECopyFailType::Report);
    if (thrown != expected || reported != "returned nothing"
        || expected.find("status = 0") != std::string::npos)
        return thrown + " and " + reported + " instead of " + expected;
    return "agrees";
}
} // namespace

TEST(TqCopyFile, FailsOnAFullDisk)
{
    CCopyLandscape const landscape;
    WriteFile(landscape / "from", contents);
    std::string const outcome = InChildProcess([&]() -> std::string {
        if (!MountSmallFileSystem(landscape / "folder", 64 * 1024))
            return "cannot mount";
        return CompareFailures(landscape / "from", landscape / "folder/new");
    });
    if (outcome == "cannot mount")
        GTEST_SKIP() << "this system permits no mounting, so there is no disk to fill";
    EXPECT_EQ(outcome, "agrees");
}

TEST(TqCopyFile, FailsAtTheLimitOfTheFileSize)
{
    CCopyLandscape const landscape;
    WriteFile(landscape / "from", contents);
    EXPECT_EQ(InChildProcess([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  rlimit const limit{64 * 1024, 64 * 1024};
                  return setrlimit(RLIMIT_FSIZE, &limit) == 0
                             ? CompareFailures(landscape / "from", landscape / "old")
                             : std::string("no limit set");
              }),
              "agrees");
}

TEST(TqCopyFile, FailsWithoutADescriptor)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizers open descriptors of their own to look at objects";
    CCopyLandscape const landscape;
    EXPECT_EQ(InChildProcess([&]() -> std::string {
                  rlimit limit{};
                  getrlimit(RLIMIT_NOFILE, &limit);
                  limit.rlim_cur = 0; // valgrind lets only this one change
                  if (setrlimit(RLIMIT_NOFILE, &limit) != 0)
                      return "no limit set";
                  return CopyAndLook(landscape / "from", landscape / "new", ECopyFailType::Throw);
              }),
              Threw("Unable to copy file '" + landscape / "from" + "' to ." + landscape / "new"
                    + "':\n   status = 24 (Too many open files)"));
}

// The destination is not what it was: nothing is rolled back.
TEST(TqCopyFile, LeavesAnOldFileTruncatedWhereTheCopyFails)
{
    CCopyLandscape const landscape;
    EXPECT_EQ(InChildProcess([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  rlimit const limit{0, 0};
                  return setrlimit(RLIMIT_FSIZE, &limit) == 0
                             ? CompareFailures(landscape / "from", landscape / "old")
                             : std::string("no limit set");
              }),
              "agrees");
    EXPECT_EQ(ReadFile(landscape / "old"), "");
}

namespace
{
struct CResize
{
    char const* name;
    std::uintmax_t size; // of the source, once its copy has begun
};

class TqCopyFileResize : public testing::TestWithParam<CResize>
{
protected:
    static constexpr std::uintmax_t Size = 256 * 1024;

    /// What `copy` did while the source changed its size; "?" where nothing was transferred.
    template <class Operation>
    std::string WhileResizing(Operation const& copy) const
    {
        WriteFile(m_Source, contents);
        CTransferHook const hook([this] { fs::resize_file(m_Source, GetParam().size); });
        std::string const outcome = copy();
        return hook.Happened() ? outcome : "?";
    }

    CCopyLandscape const m_Landscape;
    std::string const m_Source = m_Landscape / "from";
    std::string const m_Destination = m_Landscape / "new";
};
} // namespace

INSTANTIATE_TEST_SUITE_P(DuringTheCopy, TqCopyFileResize,
                         testing::Values(CResize{"ToNothing", 0}, CResize{"ToOneByte", 1},
                                         CResize{"ToHalf", 128 * 1024},
                                         CResize{"ByOneByte", 256 * 1024 - 1},
                                         CResize{"ByOneByteMore", 256 * 1024 + 1}),
                         [](auto const& row) { return row.param.name; });

// Whether a copy of less than there was is one is the standard library's to say.
TEST_P(TqCopyFileResize, EndsAsTheStandardCopyDoes)
{
    std::string const expected = WhileResizing([&] {
        std::error_code code;
        fs::copy(m_Source, m_Destination, fs::copy_options::overwrite_existing, code);
        return code ? Threw("Unable to copy file '" + m_Source + "' to ." + m_Destination
                            + "':\n   status = " + std::to_string(code.value()) + " ("
                            + code.message() + ")")
                    : "returned " + m_Destination;
    });
    if (expected == "?")
        GTEST_SKIP() << "the standard library transfers by reading and writing";
    auto const copied = [&](ECopyFailType failType) {
        return WhileResizing([&] { return CopyAndLook(m_Source, m_Destination, failType); });
    };
    EXPECT_EQ(copied(ECopyFailType::Throw), expected);
    EXPECT_EQ(copied(ECopyFailType::Report),
              expected.front() == 'r' ? expected : "returned nothing");
}

TEST_P(TqCopyFileResize, LeavesNoMoreThanThereWas)
{
    std::string const outcome = WhileResizing([&] { return Copy(m_Source, m_Destination); });
    if (outcome == "?")
        GTEST_SKIP() << "the standard library transfers by reading and writing";
    std::string const copied = ReadFile(m_Destination);
    EXPECT_EQ(contents.compare(0, copied.size(), copied), 0);
    EXPECT_LE(copied.size(), std::min(Size, GetParam().size));
}
