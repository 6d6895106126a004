#include <BaseUtilities/TqCopyFile.h>

#include "Allocations.h"
#include "CopyLandscape.h"
#include "ScopedCurrentPath.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

#include <atomic>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

namespace fs = std::filesystem;

namespace
{
class CIndentLevel
{
public:
    explicit CIndentLevel(unsigned long level) { CFormattedString::m_sIndentLevel = level; }
    CIndentLevel(CIndentLevel const&) = delete;
    CIndentLevel& operator=(CIndentLevel const&) = delete;
    ~CIndentLevel() { CFormattedString::m_sIndentLevel = m_Before; }

private:
    unsigned long m_Before = CFormattedString::m_sIndentLevel;
};

std::string Returned(std::string const& path)
{
    return "returned " + path;
}

bool IsFolderEmpty(fs::path const& folder)
{
    return fs::is_empty(folder);
}
} // namespace

static_assert(static_cast<int>(ECopyFailType::Report) == 0);
static_assert(static_cast<int>(ECopyFailType::Throw) == 1);
static_assert(
    std::is_same_v<decltype(&TqCopyFile),
                   std::optional<CSafeString> (*)(basic_sv_wrapper<char> const&,
                                                  basic_sv_wrapper<char> const&, ECopyFailType)>);

// What is copied where. '@' is the folder of the landscape, which is also the current folder.
namespace
{
struct CSuccess
{
    char const* name;
    std::string source;
    std::string destination;
    /// The text returned.
    std::string result;
    /// The file that then holds the contents of the source, "contents".
    std::string file;
};

CSuccess const successes[] = {
    {"ToANewFile", "@/from", "@/new", "@/new", "@/new"},
    {"ToANewFileInAFolder", "@/from", "@/folder/new", "@/folder/new", "@/folder/new"},
    {"OverAnOldFile", "@/from", "@/old", "@/old", "@/old"},
    {"IntoAFolder", "@/from", "@/folder", "@/folder/from", "@/folder/from"},
    {"IntoAFolderWithATrailingSlash", "@/from", "@/folder/", "@/folder/from", "@/folder/from"},
    {"IntoALinkedFolder", "@/from", "@/to-folder", "@/to-folder/from", "@/folder/from"},
    {"LinkedSourceToANewFile", "@/to-from", "@/new", "@/new", "@/new"},
    {"LinkedSourceIntoAFolderUnderTheLinksName", "@/to-from", "@/folder", "@/folder/to-from",
     "@/folder/to-from"},
    {"ThroughADanglingLink", "@/from", "@/dangling", "@/dangling", "@/missing"},
    {"BareSourceName", "from", "@/new", "@/new", "@/new"},
    {"BareNameOfAnOldFile", "from", "old", "old", "@/old"},
    {"BareNameOfAFolder", "from", "folder", "folder/from", "@/folder/from"},
    {"NewNameBelowADot", "from", "./new", "./new", "@/new"},
    {"NewNameBelowAParent", "from", "folder/../new", "folder/../new", "@/new"},
    {"SourceBelowALinkedFolder", "@/to-folder/../from", "@/new", "@/new", "@/new"},
    {"DoubledSlashes", "@//from", "@//folder//new", "@//folder//new", "@/folder/new"},
};

class TqCopyFileCopies : public testing::TestWithParam<CSuccess>
{
protected:
    CCopyLandscape const m_Landscape;
    CScopedCurrentPath const m_CurrentPath{m_Landscape.Path()};
    std::string const m_Source = m_Landscape.Fill(GetParam().source);
    std::string const m_Destination = m_Landscape.Fill(GetParam().destination);
    std::string const m_File = m_Landscape.Fill(GetParam().file);
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileCopies, testing::ValuesIn(successes),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileCopies, AndReturnsThePath)
{
    EXPECT_EQ(Copy(m_Source, m_Destination), Returned(m_Landscape.Fill(GetParam().result)));
    EXPECT_EQ(ReadFile(m_File), "contents");
}

TEST_P(TqCopyFileCopies, WithEitherFailTypeAlike)
{
    EXPECT_EQ(Copy(m_Source, m_Destination, ECopyFailType::Report),
              Returned(m_Landscape.Fill(GetParam().result)));
    EXPECT_EQ(ReadFile(m_File), "contents");
}

TEST_P(TqCopyFileCopies, AndLeavesTheSourceAlone)
{
    auto const before = m_Landscape.Snapshot();
    Copy(m_Source, m_Destination);
    auto const after = m_Landscape.Snapshot();
    for (char const* const name : {"from", "twin", "to-from"})
        EXPECT_EQ(after.at(m_Landscape / name), before.at(m_Landscape / name)) << name;
}

// The same file at both ends.
namespace
{
struct CSame
{
    char const* name;
    std::string source;
    std::string destination;
};

CSame const sames[] = {
    {"SamePath", "@/from", "@/from"},
    {"HardLinkAsDestination", "@/from", "@/twin"},
    {"HardLinkAsSource", "@/twin", "@/from"},
    {"LinkAsDestination", "@/from", "@/to-from"},
    {"LinkAsSource", "@/to-from", "@/from"},
    {"LinkToItself", "@/to-from", "@/to-from"},
    {"LinkToTheHardLink", "@/twin", "@/to-from"},
    {"RelativeDestination", "@/from", "from"},
    {"RelativeSource", "from", "@/from"},
    {"DetourInTheDestination", "@/from", "@/folder/../from"},
    {"DoubledSlashInTheDestination", "@/from", "@//from"},
};

class TqCopyFileOntoItself : public testing::TestWithParam<CSame>
{
protected:
    CCopyLandscape const m_Landscape;
    CScopedCurrentPath const m_CurrentPath{m_Landscape.Path()};
    std::string const m_Source = m_Landscape.Fill(GetParam().source);
    std::string const m_Destination = m_Landscape.Fill(GetParam().destination);
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileOntoItself, testing::ValuesIn(sames),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileOntoItself, ReturnsTheDestinationAsGiven)
{
    EXPECT_EQ(Copy(m_Source, m_Destination, ECopyFailType::Throw), Returned(m_Destination));
    EXPECT_EQ(Copy(m_Source, m_Destination, ECopyFailType::Report), Returned(m_Destination));
}

TEST_P(TqCopyFileOntoItself, TouchesNothing)
{
    auto const before = m_Landscape.Snapshot();
    Copy(m_Source, m_Destination);
    EXPECT_EQ(m_Landscape.Snapshot(), before);
}

// Contents.

TEST(TqCopyFile, CopiesAnEmptyFile)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "from", "");
    WriteFile(folder / "to", "what was there");
    EXPECT_EQ(Copy(folder / "from", folder / "to"), Returned(folder / "to"));
    EXPECT_EQ(ReadFile(folder / "to"), "");
}

TEST(TqCopyFile, CopiesABigFileByteForByte)
{
    CTemporaryFolder const folder;
    std::string contents(8 * 1024 * 1024 + 1, '\0');
    unsigned state = 1;
    for (char& byte : contents)
        byte = static_cast<char>((state = state * 1664525u + 1013904223u) >> 24);
    WriteFile(folder / "from", contents);
    EXPECT_EQ(Copy(folder / "from", folder / "to"), Returned(folder / "to"));
    EXPECT_TRUE(ReadFile(folder / "to") == contents); // not printed when it fails
}

TEST(TqCopyFile, LeavesNothingOfALongerOldFile)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "from", "short");
    WriteFile(folder / "to", std::string(100000, 'o'));
    EXPECT_EQ(Copy(folder / "from", folder / "to"), Returned(folder / "to"));
    EXPECT_EQ(ReadFile(folder / "to"), "short");
}

TEST(TqCopyFile, OverwritesAFileOfThatNameInTheFolder)
{
    CCopyLandscape const landscape;
    WriteFile(landscape / "folder/from", "what was there");
    EXPECT_EQ(Copy(landscape / "from", landscape / "folder"), Returned(landscape / "folder/from"));
    EXPECT_EQ(ReadFile(landscape / "folder/from"), "contents");
}

// The old file is written into, not replaced by another, so its other names see the copy, too.
TEST(TqCopyFile, WritesIntoTheFileThatALinkNames)
{
    CCopyLandscape const landscape;
    fs::create_symlink("old", landscape / "to-old");
    EXPECT_EQ(Copy(landscape / "from", landscape / "to-old"), Returned(landscape / "to-old"));
    EXPECT_EQ(ReadFile(landscape / "old"), "contents");
    EXPECT_TRUE(fs::is_symlink(landscape / "to-old"));
}

TEST(TqCopyFile, NeverCopiesAFolder)
{
    CCopyLandscape const landscape;
    fs::create_directory(landscape / "empty");
    EXPECT_EQ(Copy(landscape / "folder", landscape / "empty", ECopyFailType::Report),
              "returned nothing");
    EXPECT_TRUE(IsFolderEmpty(landscape / "empty"));
}

// The standard library decides what the copy of a file without a size holds.
TEST(TqCopyFile, CopiesAFileOfTheKernelAsTheStandardLibraryDoes)
{
    CTemporaryFolder const folder;
    fs::copy("/proc/version", folder / "expected", fs::copy_options::overwrite_existing);
    EXPECT_EQ(Copy("/proc/version", folder.Path()), Returned(folder / "version"));
    EXPECT_EQ(ReadFile(folder / "version"), ReadFile(folder / "expected"));
}

// Names.
namespace
{
struct CName
{
    char const* name;
    std::string file;
};

CName const names[] = {
    {"FormatThatWrites", "%n%n%n%n"},
    {"FormatThatReads", "%s%s%d%100$s"},
    {"LonePercent", "100%"},
    {"LineBreak", "two\nlines"},
    {"QuotesAndBlanks", " 'a' \"b\" $HOME `c` "},
    {"InvalidUtf8", "\xff\xfe\xc3"},
    {"Accents", "\xc3\xa4\xc3\xb6\xc3\xbc"},
    {"Cyrillic", "\xd1\x84\xd0\xb0\xd0\xb9\xd0\xbb"},
    {"BeyondTheBasicPlane", "\xf0\x9f\x98\x80"},
    {"Backslash", "a\\b"},
    {"OptionLike", "-rf"},
    {"AsLongAsANameCanBe", std::string(255, 'n')},
};

class TqCopyFileNamed : public testing::TestWithParam<CName>
{
protected:
    CTemporaryFolder const m_Folder;
    std::string const m_Source = m_Folder / ("source" + GetParam().file.substr(0, 249));
    std::string const m_Destination = m_Folder / GetParam().file;
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileNamed, testing::ValuesIn(names),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileNamed, IsCopied)
{
    WriteFile(m_Source, "contents");
    EXPECT_EQ(Copy(m_Source, m_Destination), Returned(m_Destination));
    EXPECT_EQ(ReadFile(m_Destination), "contents");
}

TEST_P(TqCopyFileNamed, LandsInAFolderUnderItsName)
{
    WriteFile(m_Destination, "contents");
    fs::create_directory(m_Folder / "f");
    std::string const copy = (m_Folder.Path() / "f" / GetParam().file).native();
    EXPECT_EQ(Copy(m_Destination, m_Folder / "f"), Returned(copy));
    EXPECT_EQ(ReadFile(copy), "contents");
}

TEST_P(TqCopyFileNamed, IsNamedInTheMessagesAsItIs)
{
    EXPECT_EQ(Copy(m_Source, m_Destination + "/new"),
              Threw("Unable to copy file 'Cannot copy from source: " + m_Source
                    + " does not exist.' to 'Cannot copy to destination: " + m_Destination
                    + "/new does not exist.'."));
}

TEST_P(TqCopyFileNamed, IsNamedInTheMessageOfAFailedCopyAsItIs)
{
    WriteFile(m_Source, "contents");
    fs::create_symlink("missing/there", m_Destination);
    EXPECT_EQ(Copy(m_Source, m_Destination),
              Threw("Unable to copy file '" + m_Source + "' to ." + m_Destination
                    + "':\n   status = 2 (No such file or directory)"));
}

// Arguments.

TEST(TqCopyFile, TakesANullViewForAnEmptyPath)
{
    EXPECT_FALSE(TqCopyFile(nullptr, nullptr, ECopyFailType::Report));
    try {
        TqCopyFile(nullptr, basic_sv_wrapper<char>(), ECopyFailType::Throw);
        ADD_FAILURE() << "nothing was thrown";
    } catch (TQRunTimeException const& error) {
        EXPECT_STREQ(error.what(),
                     "Unable to copy file 'Cannot copy from source:  does not exist.' to "
                     "'Cannot copy to destination:  does not exist.'.");
        EXPECT_EQ(error.GetStatus(), TEST_STATUS_ERROR);
    }
}

TEST(TqCopyFile, RefusesANullViewWithALength)
{
    CTemporaryFolder const folder;
    basic_sv_wrapper<char> const bad(nullptr, 1);
    for (ECopyFailType const failType : {ECopyFailType::Throw, ECopyFailType::Report}) {
        EXPECT_THROW(TqCopyFile(bad, folder / "new", failType), std::logic_error);
        EXPECT_THROW(TqCopyFile(folder / "from", bad, failType), std::logic_error);
    }
}

TEST(TqCopyFile, ReadsNoFurtherThanTheViews)
{
    CCopyLandscape const landscape;
    std::string const source = landscape / "from" + "XXX";
    std::string const destination = landscape / "new" + "XXX";
    auto const copied = TqCopyFile(
        basic_sv_wrapper<char>(source.data(), source.size() - 3),
        basic_sv_wrapper<char>(destination.data(), destination.size() - 3), ECopyFailType::Throw);
    ASSERT_TRUE(copied);
    EXPECT_EQ(copied->get(), landscape / "new");
    EXPECT_EQ(ReadFile(landscape / "new"), "contents");
}

// Indentation.

TEST(TqCopyFile, IndentsTheMessageOfEachEnd)
{
    CCopyLandscape const landscape;
    CIndentLevel const level(2);
    EXPECT_EQ(Copy(landscape / "missing", landscape / "pipe"),
              Threw("Unable to copy file '    Cannot copy from source: " + landscape / "missing"
                    + " does not exist.' to '    Cannot copy to destination: " + landscape / "pipe"
                    + " is not a regular file.'."));
}

TEST(TqCopyFile, IndentsNothingForAnEndThatPassed)
{
    CCopyLandscape const landscape;
    CIndentLevel const level(1);
    EXPECT_EQ(Copy(landscape / "missing", landscape / "new"),
              Threw("Unable to copy file '  Cannot copy from source: " + landscape / "missing"
                    + " does not exist.' to ''."));
    EXPECT_EQ(Copy(landscape / "from", landscape / "pipe"),
              Threw("Unable to copy file '' to '  Cannot copy to destination: " + landscape / "pipe"
                    + " is not a regular file.'."));
}

TEST(TqCopyFile, IndentsNoMessageOfAFailedCopy)
{
    CCopyLandscape const landscape;
    CIndentLevel const level(3);
    EXPECT_EQ(Copy(landscape / "from", landscape.Path().native()),
              Threw("Unable to copy file '" + landscape / "from" + "' to ."
                    + landscape.Path().native() + "':\n   status = 17 (File exists)"));
}

// Memory and descriptors.
namespace
{
long OpenDescriptors()
{
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

struct COutcomeWanted
{
    char const* name;
    char const* source;
    char const* destination;
    bool throws;
};

COutcomeWanted const outcomes[] = {
    {"Copied", "from", "new", false},         {"CopiedIntoAFolder", "from", "folder", false},
    {"SameFile", "from", "twin", false},      {"BadSource", "missing", "new", true},
    {"BadDestination", "from", "pipe", true}, {"BothBad", "missing", "pipe", true},
    {"NoStatus", "from", "loop", true},       {"FailedCopy", "from", "holder", true},
};

class TqCopyFileMemory : public testing::TestWithParam<COutcomeWanted>
{
protected:
    /// A copy whose own outcome does not matter, only that of its allocations.
    void Attempt(ECopyFailType failType) const
    {
        try {
            TqCopyFile(m_Source, m_Destination, failType);
        } catch (TQRunTimeException const&) {
            EXPECT_TRUE(GetParam().throws && failType == ECopyFailType::Throw);
        }
    }

    CCopyLandscape const m_Landscape;
    std::string const m_Source = m_Landscape / GetParam().source;
    std::string const m_Destination = m_Landscape / GetParam().destination;
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, TqCopyFileMemory, testing::ValuesIn(outcomes),
                         [](auto const& row) { return row.param.name; });

TEST_P(TqCopyFileMemory, ThatRunsOutLeavesAsBadAllocAndNothingLeaks)
{
    for (ECopyFailType const failType : {ECopyFailType::Throw, ECopyFailType::Report}) {
        Attempt(failType); // the thread's message buffers stay, and are made here
        long const descriptors = OpenDescriptors();
        CAllocationCounter const during;
        EXPECT_GT(
            FailEachAllocation([&] { Attempt(failType); }, [&] { EXPECT_EQ(during.Live(), 0); }),
            0);
        EXPECT_EQ(during.Live(), 0);
        EXPECT_EQ(OpenDescriptors(), descriptors);
    }
}

// The first copy of a thread also makes the buffers.
TEST_P(TqCopyFileMemory, ThatRunsOutInAFreshThreadLeavesAsBadAlloc)
{
    std::atomic<bool> reached = true;
    for (unsigned long number = 1; reached; ++number)
        std::thread([&] {
            bool threw = false;
            CAllocationFailure const failure(number);
            try {
                Attempt(ECopyFailType::Throw);
            } catch (std::bad_alloc const&) {
                threw = true;
            }
            reached = failure.Happened();
            EXPECT_EQ(threw, reached) << number;
        }).join();
}

TEST_P(TqCopyFileMemory, IsNotLeakedAndNoDescriptorIs)
{
    Attempt(ECopyFailType::Throw);
    long const descriptors = OpenDescriptors();
    CAllocationCounter const during;
    Attempt(ECopyFailType::Throw);
    Attempt(ECopyFailType::Report);
    EXPECT_EQ(during.Live(), 0);
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

// Threads.

TEST(TqCopyFile, CopiesOnManyThreadsAtOnce)
{
    CCopyLandscape const landscape;
    std::atomic<int> waiting = 8;
    std::atomic<int> wrong = 0;
    auto const run = [&](int number) {
        std::string const own = landscape / ("thread" + std::to_string(number));
        for (--waiting; waiting != 0;)
            std::this_thread::yield();
        for (int round = 0; round < 50; ++round) {
            wrong += Copy(landscape / "from", own) != Returned(own);
            wrong += Copy(own + "missing", landscape / "new")
                     != Threw("Unable to copy file 'Cannot copy from source: " + own
                              + "missing does not exist.' to ''.");
            wrong += Copy(own, landscape / "pipe")
                     != Threw("Unable to copy file '' to 'Cannot copy to destination: "
                              + landscape / "pipe" + " is not a regular file.'.");
            wrong += Copy(own, landscape.Path().native())
                     != Threw("Unable to copy file '" + own + "' to ." + landscape.Path().native()
                              + "':\n   status = 17 (File exists)");
            wrong +=
                Copy(own, landscape / "missing/new", ECopyFailType::Report) != "returned nothing";
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number)
        threads.emplace_back(run, number);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    for (int number = 0; number < 8; ++number)
        EXPECT_EQ(ReadFile(landscape / ("thread" + std::to_string(number))), "contents");
}
