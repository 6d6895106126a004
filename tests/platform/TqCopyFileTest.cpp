#include <BaseUtilities/TqCopyFile.h>

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(TqCopyFile, CopiesAFileToANewFile)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "from", "contents");
    EXPECT_EQ(TqCopyFile(folder / "from", folder / "to", ECopyFailType::Throw), folder / "to");
    EXPECT_EQ(ReadFile(folder / "to"), "contents");
}
