#include <PathChecks.h>
#include <TypedAnswers.h>

#include "CUnprivileged.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::Optional;

TEST(TypedNumber, ReadsTheDigitsOfItsBase)
{
    struct CRow
    {
        char const* m_Text;
        int m_Base;
        std::optional<std::uintptr_t> m_Number;
    };
    for (CRow const& row :
         {CRow{"0", 10, 0}, CRow{" 42\t", 10, 42}, CRow{"17", 8, 15}, CRow{"fF", 16, 255},
          CRow{"0xff", 16, 255}, CRow{"0Xff", 16, 255},
          CRow{"18446744073709551615", 10, UINTPTR_MAX},
          CRow{"18446744073709551616", 10, std::nullopt}, CRow{"", 10, std::nullopt},
          CRow{"  ", 10, std::nullopt}, CRow{"-1", 10, std::nullopt}, CRow{"+1", 10, std::nullopt},
          CRow{"8", 8, std::nullopt}, CRow{"1x", 10, std::nullopt}, CRow{"0x1", 10, std::nullopt},
          CRow{"0x", 16, std::nullopt}, CRow{"1 2", 10, std::nullopt}}) {
        SCOPED_TRACE(row.m_Text);
        EXPECT_EQ(TypedNumber(row.m_Text, row.m_Base), row.m_Number);
    }
}

TEST(TypedNumber, ReadsWhatNumberTextWrites)
{
    EXPECT_EQ(NumberText(255, 16), "FF");
    for (int const base : {8, 10, 16})
        for (std::uintptr_t const number : {std::uintptr_t(0), std::uintptr_t(171), UINTPTR_MAX}) {
            SCOPED_TRACE(base);
            EXPECT_EQ(TypedNumber(NumberText(number, base), base), number);
        }
}

TEST(TypedItems, ReadsNumbersRangesAllAndNone)
{
    EXPECT_THAT(TypedItems("1 3-5, 7", 9), Optional(ElementsAre(0, 2, 3, 4, 6)));
    EXPECT_THAT(TypedItems("3,1,1-2", 3), Optional(ElementsAre(0, 1, 2)));
    EXPECT_THAT(TypedItems(" all ", 3), Optional(ElementsAre(0, 1, 2)));
    EXPECT_THAT(TypedItems("none", 3), Optional(ElementsAre()));
}

TEST(TypedItems, TakesNothingThatChoosesNoItem)
{
    for (char const* text : {"", " ", ",", "0", "4", "1-4", "3-1", "1-", "-1", "x", "1 x", "al",
                             "1-18446744073709551615"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(TypedItems(text, 3));
    }
}

TEST(TypedPath, StandsBelowTheFolderUnlessItSaysOtherwise)
{
    CScopedEnvironment const home("HOME", "/home/operator");
    struct CRow
    {
        char const* m_Text;
        char const* m_Path;
    };
    for (CRow const& row :
         {CRow{"a", "/start/a"}, CRow{"../a", "/a"}, CRow{"/x/a", "/x/a"}, CRow{"a/", "/start/a"},
          CRow{"~", "/home/operator"}, CRow{"~/a b", "/home/operator/a b"}, CRow{"~a", "/start/~a"},
          CRow{"/", "/"}, CRow{".", "/start"}}) {
        SCOPED_TRACE(row.m_Text);
        EXPECT_EQ(TypedPath(row.m_Text, "/start"), row.m_Path);
    }
}

TEST(PathChecks, SayWhyAPathIsNoFolder)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "file", "");
    EXPECT_EQ(WhyNoFolder(folder.Path()), "");
    EXPECT_EQ(WhyNoFolder(folder / "file"), (folder / "file") + " is not a folder.");
    EXPECT_EQ(WhyNoFolder(folder / "none"), "There is no " + (folder / "none") + ".");
    EXPECT_EQ(WhyNoFolder(folder / "file/x"), "There is no " + (folder / "file/x") + ".");
}

TEST(PathChecks, SayWhyAFileCannotBeRead)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "file", "");
    EXPECT_EQ(WhyNoFileToRead(folder / "file"), "");
    EXPECT_EQ(WhyNoFileToRead(folder.Path()), folder.Path().native() + " is not a file.");
    EXPECT_EQ(WhyNoFileToRead(folder / "none"), "There is no " + (folder / "none") + ".");
}

TEST(PathChecks, SayWhyAFileCannotBeWritten)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "file", "");
    EXPECT_EQ(WhyNoFileToWrite(folder / "file"), "");
    EXPECT_EQ(WhyNoFileToWrite(folder / "new"), "");
    EXPECT_EQ(WhyNoFileToWrite(folder.Path()), folder.Path().native() + " is not a file.");
    EXPECT_EQ(WhyNoFileToWrite(folder / "none/new"), "There is no " + (folder / "none") + ".");
}

TEST(PathChecks, SayWhatPermissionsForbid)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "file", "");
    fs::permissions(folder / "file", fs::perms::none);
    fs::permissions(folder.Path(), fs::perms(0555));
    {
        CUnprivileged const user;
        EXPECT_EQ(WhyNoFileToRead(folder / "file"), (folder / "file") + " cannot be read.");
        EXPECT_EQ(WhyNoFileToWrite(folder / "file"), (folder / "file") + " cannot be written.");
        EXPECT_EQ(WhyNoFileToWrite(folder / "new"), (folder / "new") + " cannot be written.");
    }
    fs::permissions(folder.Path(), fs::perms(0755));
}
