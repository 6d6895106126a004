#include <CFileCheck.h>

#include "CUnprivileged.h"
#include "TemporaryFolder.h"

#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace
{
// A file to be checked, and a folder for its copy.
class CFileCheckTest : public testing::Test
{
protected:
    explicit CFileCheckTest(std::string const& name = "file")
    {
        fs::create_directory(m_Folder.Path() / "copies");
        m_Entry.m_Name = name;
        m_Entry.m_Path = m_Folder.Path() / name;
        WriteFile(m_Entry.m_Path, std::string(100000, 'x') + "end");
    }

    fs::path Copies() const { return m_Folder.Path() / "copies"; }
    fs::path Copy() const { return Copies() / m_Entry.m_Name; }
    CCaseOutcome Check(CopyOperation const& copy = TqCopyFile)
    {
        return CFileCheck(Copies(), copy).Check(m_Entry);
    }
    // Copies, and then does something else.
    CopyOperation CopyAnd(std::function<void()> const& afterwards)
    {
        return [afterwards](auto const& source, auto const& destination, ECopyFailType failType) {
            auto const copied = TqCopyFile(source, destination, failType);
            afterwards();
            return copied;
        };
    }
    void ExpectOutcome(CCaseOutcome const& outcome, TEST_STATUS verdict, std::string const& detail)
    {
        EXPECT_EQ(outcome.m_Verdict, verdict);
        EXPECT_EQ(std::string(outcome.m_Detail.get()), detail);
        EXPECT_TRUE(fs::is_empty(Copies())) << "the copy is left behind";
    }

    CTemporaryFolder m_Folder;
    CFoundEntry m_Entry;
};

class CFileCheckOfIllFormedName : public CFileCheckTest
{
protected:
    CFileCheckOfIllFormedName() : CFileCheckTest("caf\xE9") {}
};

struct CName
{
    char const* m_Row;
    char const* m_Name;
    char const* m_Conversion; // the one that loses it
};

class CLossyConversion : public testing::TestWithParam<CName>
{
};
} // namespace

TEST_F(CFileCheckTest, PassesACopyWithTheSameBytesAndCountsThem)
{
    CCaseOutcome const outcome = Check();
    ExpectOutcome(outcome, TEST_STATUS_PASSED, "");
    EXPECT_EQ(outcome.m_Bytes, 100003u);
}

TEST_F(CFileCheckTest, PassesAnEmptyFile)
{
    WriteFile(m_Entry.m_Path, "");
    CCaseOutcome const outcome = Check();
    ExpectOutcome(outcome, TEST_STATUS_PASSED, "");
    EXPECT_EQ(outcome.m_Bytes, 0u);
}

TEST_F(CFileCheckTest, NamesTheTargetOfALinkThatItFollowed)
{
    fs::create_symlink("file", m_Folder.Path() / "link");
    m_Entry = {m_Folder.Path() / "link", "link", "", "file"};
    ExpectOutcome(Check(), TEST_STATUS_PASSED, "link to file");
}

TEST_F(CFileCheckTest, FailsACopyWithOneByteChanged)
{
    ExpectOutcome(Check(CopyAnd([this] {
                      std::fstream file(Copy());
                      file.seekp(70000);
                      file.put('y');
                  })),
                  TEST_STATUS_FAILED, "the copy differs from the file at byte 70000");
}

TEST_F(CFileCheckTest, FailsACopyThatIsTooShort)
{
    ExpectOutcome(Check(CopyAnd([this] { fs::resize_file(Copy(), 65536); })), TEST_STATUS_FAILED,
                  "the copy differs from the file at byte 65536");
}

TEST_F(CFileCheckTest, FailsACopyThatIsTooLong)
{
    ExpectOutcome(Check(CopyAnd([this] { fs::resize_file(Copy(), 100004); })), TEST_STATUS_FAILED,
                  "the copy differs from the file at byte 100003");
}

TEST_F(CFileCheckTest, FailsACopyThatIsReportedElsewhere)
{
    auto const elsewhere = [](auto const& source, auto const& destination, ECopyFailType failType) {
        TqCopyFile(source, destination, failType);
        return std::optional<CSafeString>("elsewhere");
    };
    ExpectOutcome(Check(elsewhere), TEST_STATUS_FAILED,
                  "copied, but another path was reported than " + Copy().native());
}

TEST_F(CFileCheckTest, FailsACopyWithoutAReport)
{
    auto const silent = [](auto const&, auto const&, ECopyFailType) {
        return std::optional<CSafeString>();
    };
    ExpectOutcome(Check(silent), TEST_STATUS_FAILED,
                  "copied, but another path was reported than " + Copy().native());
}

TEST_F(CFileCheckTest, SkipsAnEntryWithTheReasonFound)
{
    m_Entry.m_SkipReason = "a named pipe";
    ExpectOutcome(Check(), TEST_STATUS_SKIPPED, "a named pipe");
}

TEST_F(CFileCheckTest, SkipsAFileThatVanishedBeforeItsTurn)
{
    fs::remove(m_Entry.m_Path);
    ExpectOutcome(Check(), TEST_STATUS_SKIPPED, "vanished before its turn");
}

TEST_F(CFileCheckTest, SkipsAFileThatVanishesBeforeTheCopy)
{
    auto const vanishing = [](auto const& source, auto const& destination, ECopyFailType failType) {
        fs::remove(CSafeString(source).to_path());
        return TqCopyFile(source, destination, failType);
    };
    ExpectOutcome(Check(vanishing), TEST_STATUS_SKIPPED, "vanished before it was copied");
}

TEST_F(CFileCheckTest, SkipsAFileThatChangesMeanwhile)
{
    ExpectOutcome(Check(CopyAnd([this] { fs::resize_file(m_Entry.m_Path, 5); })),
                  TEST_STATUS_SKIPPED, "changed while it was being checked");
}

TEST_F(CFileCheckTest, SkipsAFileThatBecameAFolder)
{
    fs::remove(m_Entry.m_Path);
    fs::create_directory(m_Entry.m_Path);
    ExpectOutcome(Check(), TEST_STATUS_SKIPPED, "no longer a regular file");
}

TEST_F(CFileCheckTest, SkipsAFileThatCannotBeRead)
{
    fs::permissions(m_Folder.Path(), fs::perms(0755));
    fs::permissions(m_Entry.m_Path, fs::perms::none);
    CUnprivileged const unprivileged;
    ExpectOutcome(Check(), TEST_STATUS_SKIPPED, "cannot be read: Permission denied");
}

TEST_F(CFileCheckTest, PassesOnWhatTheCopyThrowsOfAFileThatIsThere)
{
    auto const failing = [](auto const&, auto const&, ECopyFailType) -> std::optional<CSafeString> {
        throw TQRunTimeException("broken");
    };
    EXPECT_THROW(Check(failing), TQRunTimeException);
    EXPECT_TRUE(fs::is_empty(Copies()));
}

TEST_F(CFileCheckOfIllFormedName, FailsANameThatIsNotUtf8)
{
    ExpectOutcome(Check(), TEST_STATUS_FAILED,
                  "the name does not survive: UTF-8 to UTF-16 and back");
}

TEST_P(CLossyConversion, IsNamedForNamesThatAreNotUtf8Alone)
{
    EXPECT_STREQ(LossyConversion(GetParam().m_Name), GetParam().m_Conversion);
}

INSTANTIATE_TEST_SUITE_P(
    Names, CLossyConversion,
    testing::Values(CName{"Empty", "", nullptr}, CName{"Ascii", "GPL-3", nullptr},
                    CName{"Controls", "a\nb\x7F", nullptr},
                    CName{"TwoBytes", "caf\xC3\xA9", nullptr},
                    CName{"Decomposed", "cafe\xCC\x81", nullptr},
                    CName{"ThreeBytes", "\xE6\xBC\xA2\xE5\xAD\x97", nullptr},
                    CName{"BeyondTheBasicPlane", "\xF0\x9F\x98\x80", nullptr},
                    CName{"ByteOrderMarkInside", "a\xEF\xBB\xBF", nullptr},
                    CName{"Latin1", "caf\xE9", "UTF-8 to UTF-16 and back"},
                    CName{"Truncated", "\xE6\xBC", "UTF-8 to UTF-16 and back"},
                    CName{"Overlong", "\xC0\xAF", "UTF-8 to UTF-16 and back"},
                    CName{"Surrogate", "\xED\xA0\x80", "UTF-8 to UTF-16 and back"}),
    [](auto const& row) { return std::string(row.param.m_Row); });
