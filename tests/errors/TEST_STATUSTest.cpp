#include <BaseUtilities/TEST_STATUS.h>

#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

static_assert(std::is_enum_v<TEST_STATUS>);
static_assert(std::is_convertible_v<TEST_STATUS, std::uint32_t>, "unscoped");
static_assert(std::is_same_v<std::underlying_type_t<TEST_STATUS>, std::uint32_t>);
static_assert(sizeof(TEST_STATUS) == 4);

namespace
{
// How an application defines its own verdicts, as the header shows.
constexpr TEST_STATUS TEST_STATUS_PASSED = TEST_STATUS(1);
constexpr TEST_STATUS TEST_STATUS_ALL_BITS = TEST_STATUS(0xFFFFFFFF);
} // namespace

TEST(TEST_STATUS, ErrorIsBitThirtyAlone)
{
    EXPECT_EQ(TEST_STATUS_ERROR, 0x40000000u);
    EXPECT_EQ(TEST_STATUS_ERROR, std::uint32_t(1) << 30);
}

TEST(TEST_STATUS, TakesTheVerdictsOfAnApplication)
{
    EXPECT_EQ(TQException("x", TEST_STATUS_PASSED).GetStatus(), TEST_STATUS_PASSED);
    EXPECT_EQ(TQException("x", TEST_STATUS_ALL_BITS).GetStatus(), 0xFFFFFFFFu);
}
