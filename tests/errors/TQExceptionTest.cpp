#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

TEST(TQException, DefaultConstructionGivesTheDefaultTextAndStatus)
{
    TQException const exception;
    EXPECT_STREQ(exception.what(), "TQException Thrown");
    EXPECT_EQ(exception.GetStatus(), TEST_STATUS_ERROR);
}
