// What script/check-flakes must report: a test that another one spoils where it comes first. In the
// order of this file it never does.

#include <gtest/gtest.h>

namespace
{
class PlantedFlake : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_spoilt = false; }

    static inline bool s_spoilt = false;
};
} // namespace

TEST_F(PlantedFlake, FailsBehindTheOtherTest)
{
    EXPECT_FALSE(s_spoilt);
}

TEST_F(PlantedFlake, SpoilsTheOtherTest)
{
    s_spoilt = true;
}
