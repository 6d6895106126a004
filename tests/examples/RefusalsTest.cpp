#include <Refusals.h>

#include "TemporaryFolder.h"

#include <BaseUtilities/TQException.h>

#include <gmock/gmock.h>

namespace fs = std::filesystem;

namespace
{
CRefusal Missing(CTemporaryFolder const& folder)
{
    return {"missing", folder / "missing", folder / "copy", "no such file", ""};
}

CopyOperation Throwing(char const* message, TEST_STATUS status = TEST_STATUS_ERROR)
{
    return [=](auto const&, auto const&, ECopyFailType failType) -> std::optional<CSafeString> {
        if (failType == ECopyFailType::Throw)
            throw TQRunTimeException(message, status);
        return std::nullopt;
    };
}

void ExpectOutcome(CCaseOutcome const& outcome, TEST_STATUS verdict, char const* detail)
{
    EXPECT_EQ(outcome.m_Verdict, verdict);
    EXPECT_STREQ(outcome.m_Detail.get(), detail);
}
} // namespace

TEST(Refusals, AreWordForWordThoseOfFileCopy)
{
    CTemporaryFolder const folder;
    std::vector<std::string> messages;
    for (CRefusal const& refusal : PrepareRefusals(folder.Path())) {
        SCOPED_TRACE(refusal.m_Name.get());
        ExpectOutcome(CheckRefusal(refusal, TqCopyFile), TEST_STATUS_PASSED,
                      refusal.m_Message.get());
        messages.emplace_back(refusal.m_Message.get());
    }
    std::string const at = folder.Path().native() + '/';
    EXPECT_THAT(messages,
                testing::ElementsAre(
                    "Unable to copy file 'Cannot copy from source: " + at
                        + "missing does not exist.' to ''.",
                    "Unable to copy file 'Cannot copy from source: " + at
                        + "folder is a directory.' to ''.",
                    "Unable to copy file 'Cannot copy from source: " + at
                        + "pipe is not a standard file type.' to ''.",
                    "Unable to copy file '' to 'Cannot copy to destination: " + at
                        + "missing/copy does not exist.'.",
                    "Unable to copy file '' to 'Cannot copy to destination: " + at
                        + "pipe is not a regular file.'.",
                    "Unable to copy file 'Cannot copy from source: " + at
                        + "missing does not exist.' to 'Cannot copy to destination: " + at
                        + "missing/copy does not exist.'.",
                    "Unable to copy file '" + at
                        + "loop' to .':\n   status = 40 (Too many levels of symbolic links)",
                    "Unable to copy file '" + at
                        + "loop' to .':\n   status = 40 (Too many levels of symbolic links)"));
    EXPECT_FALSE(fs::exists(folder / "copy"));
}

TEST(Refusals, FailWhereTheCopyIsMade)
{
    CTemporaryFolder const folder;
    auto const copying = [](auto const&, auto const&, ECopyFailType) {
        return std::optional<CSafeString>("copy");
    };
    ExpectOutcome(CheckRefusal(Missing(folder), copying), TEST_STATUS_FAILED, "not refused");
}

TEST(Refusals, FailWithAnotherMessageAndShowBoth)
{
    CTemporaryFolder const folder;
    ExpectOutcome(CheckRefusal(Missing(folder), Throwing("no such thing")), TEST_STATUS_FAILED,
                  "refused with status 0x40000000 and this message:\nno such thing\n"
                  "not with:\nno such file");
}

TEST(Refusals, FailWithAnotherStatus)
{
    CTemporaryFolder const folder;
    ExpectOutcome(
        CheckRefusal(Missing(folder), Throwing("no such file", TEST_STATUS_FAILED)),
        TEST_STATUS_FAILED,
        "refused with status 0x2 and this message:\nno such file\nnot with:\nno such file");
}

TEST(Refusals, FailWhereTheQuietReportNamesACopy)
{
    CTemporaryFolder const folder;
    auto const copying = [](auto const&, auto const&, ECopyFailType failType) {
        if (failType == ECopyFailType::Throw)
            throw TQRunTimeException("no such file");
        return std::optional<CSafeString>("copy");
    };
    ExpectOutcome(CheckRefusal(Missing(folder), copying), TEST_STATUS_FAILED,
                  "refused aloud, but not in a quiet report");
}

TEST(Refusals, AreSkippedWhereTheyCannotBeProvoked)
{
    CTemporaryFolder const folder;
    CRefusal refusal = Missing(folder);
    refusal.m_SkipReason = "no named pipe can be made here";
    ExpectOutcome(CheckRefusal(refusal, TqCopyFile), TEST_STATUS_SKIPPED,
                  "no named pipe can be made here");
}
