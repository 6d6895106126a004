#include <BaseUtilities/TQUserAbort.h>

#include <gtest/gtest.h>

TEST(TQUserAbort, IsDisabledAndIdleAtLoad)
{
    EXPECT_FALSE(TQUserAbort::UserAbortEnabled());
    EXPECT_FALSE(TQUserAbort::UserAbortRequested());
}
