#include <BaseUtilities/TQUuid.h>

#include <BaseUtilities/CFormattedString.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>

// The identifier travels as plain bytes, in this order.
static_assert(sizeof(TQUuid) == 16 && std::is_trivially_copyable_v<TQUuid>);
static_assert(offsetof(TQUuid, m_Data1) == 0 && offsetof(TQUuid, m_Data2) == 4
              && offsetof(TQUuid, m_Data3) == 6 && offsetof(TQUuid, m_Data4) == 8);

namespace
{
TQUuid const Sample{0x12345678, 0x9ABC, 0xDEF0, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};

class CIndentation
{
public:
    explicit CIndentation(unsigned long level) { CFormattedString::m_sIndentLevel = level; }
    CIndentation(CIndentation const&) = delete;
    CIndentation& operator=(CIndentation const&) = delete;
    ~CIndentation() { CFormattedString::m_sIndentLevel = m_Before; }

private:
    unsigned long m_Before = CFormattedString::m_sIndentLevel;
};

struct SUuidRow
{
    char const* m_Name;
    TQUuid m_Uuid;
    std::string m_Text;
};

class TQUuidTable : public testing::TestWithParam<SUuidRow>
{
};

// Digit by digit, most significant first.
void AppendDigits(std::string& text, unsigned long number, int digits)
{
    while (digits-- > 0)
        text += "0123456789ABCDEF"[number >> (4 * digits) & 0xF];
}

std::string ExpectedText(TQUuid const& uuid)
{
    std::string text = "{";
    AppendDigits(text, uuid.m_Data1, 8);
    text += '-';
    AppendDigits(text, uuid.m_Data2, 4);
    text += '-';
    AppendDigits(text, uuid.m_Data3, 4);
    text += '-';
    for (int index = 0; index < 8; ++index) {
        if (index == 2)
            text += '-';
        AppendDigits(text, uuid.m_Data4[index], 2);
    }
    return text + '}';
}
} // namespace

TEST(TQUuid, IsAllZeroUnlessSet)
{
    TQUuid const uuid;
    unsigned char const zeros[sizeof uuid] = {};
    EXPECT_EQ(std::memcmp(&uuid, zeros, sizeof uuid), 0);
}

TEST_P(TQUuidTable, TextIs)
{
    CSafeString const text = GetParam().m_Uuid.ToString();
    EXPECT_EQ(text.size(), 38u);
    EXPECT_STREQ(text.get(), GetParam().m_Text.c_str());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TQUuidTable,
    testing::Values(SUuidRow{"Sample", Sample, "{12345678-9ABC-DEF0-0123-456789ABCDEF}"},
                    SUuidRow{"AllZero", {}, "{00000000-0000-0000-0000-000000000000}"},
                    SUuidRow{"AllOnes",
                             {0xFFFFFFFF, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}},
                             "{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}"},
                    SUuidRow{"SmallNumbersAreFilledWithZeros",
                             {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}},
                             "{00000001-0002-0003-0405-060708090A0B}"}),
    [](auto const& row) { return std::string(row.param.m_Name); });

TEST(TQUuid, TextAgreesWithTheDigitsOfRandomIdentifiers)
{
    std::mt19937 engine(20240229);
    for (int round = 0; round < 2000; ++round) {
        TQUuid uuid;
        uuid.m_Data1 = static_cast<std::uint32_t>(engine());
        uuid.m_Data2 = static_cast<std::uint16_t>(engine());
        uuid.m_Data3 = static_cast<std::uint16_t>(engine());
        for (std::uint8_t& byte : uuid.m_Data4)
            byte = static_cast<std::uint8_t>(engine());
        ASSERT_EQ(uuid.ToString().get(), ExpectedText(uuid)) << "round " << round;
    }
}

// Deliberate in the library: reports indent identifiers like every other line.
TEST(TQUuid, TextIsPrecededByTwoBlanksForEachLevelOfIndentation)
{
    for (unsigned long const level : {0ul, 1ul, 2ul, 7ul}) {
        SCOPED_TRACE(level);
        CIndentation const indentation(level);
        EXPECT_STREQ(
            Sample.ToString().get(),
            (std::string(2 * level, ' ') + "{12345678-9ABC-DEF0-0123-456789ABCDEF}").c_str());
    }
}

TEST(TQUuid, ToStringPassesOnEveryFailedAllocation)
{
    EXPECT_GT(FailEachAllocation([] { Sample.ToString(); }, [] {}), 1);
    CAllocationCounter const during; // now that the thread has its buffers, which it keeps
    EXPECT_GT(FailEachAllocation([] { Sample.ToString(); }, [] {}), 1);
    EXPECT_EQ(during.Live(), 0);
}
