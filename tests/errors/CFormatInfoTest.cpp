#include <BaseUtilities/CFormatInfo.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Plain data in this order, copied by value.
static_assert(std::is_trivially_copyable_v<CFormatInfo> && !std::is_polymorphic_v<CFormatInfo>);
static_assert(sizeof(TQColor) == 16 && offsetof(TQColor, m_Red) == 0
              && offsetof(TQColor, m_Green) == 4 && offsetof(TQColor, m_Blue) == 8
              && offsetof(TQColor, m_Alpha) == 12);
static_assert(offsetof(CFormatInfo, m_Color) < offsetof(CFormatInfo, m_BackColor)
              && offsetof(CFormatInfo, m_BackColor) < offsetof(CFormatInfo, m_TextStyle)
              && offsetof(CFormatInfo, m_TextStyle) < offsetof(CFormatInfo, m_Weight)
              && offsetof(CFormatInfo, m_Weight) < offsetof(CFormatInfo, m_TextEffect)
              && offsetof(CFormatInfo, m_TextEffect) < offsetof(CFormatInfo, m_ColorChanged)
              && offsetof(CFormatInfo, m_ColorChanged) < offsetof(CFormatInfo, m_BackColorChanged)
              && offsetof(CFormatInfo, m_BackColorChanged)
                     < offsetof(CFormatInfo, m_TextStyleChanged)
              && offsetof(CFormatInfo, m_TextStyleChanged) < offsetof(CFormatInfo, m_WeightChanged)
              && offsetof(CFormatInfo, m_WeightChanged) < offsetof(CFormatInfo, m_TextEffectChanged)
              && offsetof(CFormatInfo, m_TextEffectChanged) < offsetof(CFormatInfo, m_HasColor)
              && offsetof(CFormatInfo, m_HasColor) < offsetof(CFormatInfo, m_HasBackColor));
static_assert(sizeof(CFormatInfo::m_TextStyle) == 1 && sizeof(CFormatInfo::m_Weight) == 2
              && sizeof(CFormatInfo::m_TextEffect) == 1);

namespace
{
/// The record as a row of numbers: what the operations are checked against.
enum EColumn {
    Red,
    Green,
    Blue,
    Alpha,
    BackRed,
    BackGreen,
    BackBlue,
    BackAlpha,
    Style,
    Weight,
    Effect,
    ColorChanged,
    BackColorChanged,
    StyleChanged,
    WeightChanged,
    EffectChanged,
    HasColor,
    HasBackColor,
    ColumnCount
};
using Row = std::array<unsigned, ColumnCount>;
using Channels = std::array<unsigned, 4>;

Row const Cleared{0, 0, 0, 255, 255, 255, 255, 255, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0};

Row ToRow(CFormatInfo const& info)
{
    TQColor const& fore = info.m_Color;
    TQColor const& back = info.m_BackColor;
    return {fore.m_Red,
            fore.m_Green,
            fore.m_Blue,
            fore.m_Alpha,
            back.m_Red,
            back.m_Green,
            back.m_Blue,
            back.m_Alpha,
            info.m_TextStyle,
            info.m_Weight,
            info.m_TextEffect,
            info.m_ColorChanged,
            info.m_BackColorChanged,
            info.m_TextStyleChanged,
            info.m_WeightChanged,
            info.m_TextEffectChanged,
            info.m_HasColor,
            info.m_HasBackColor};
}

CFormatInfo ToInfo(Row const& row)
{
    CFormatInfo info;
    info.m_Color = {row[Red], row[Green], row[Blue], row[Alpha]};
    info.m_BackColor = {row[BackRed], row[BackGreen], row[BackBlue], row[BackAlpha]};
    info.m_TextStyle = static_cast<std::uint8_t>(row[Style]);
    info.m_Weight = static_cast<std::uint16_t>(row[Weight]);
    info.m_TextEffect = static_cast<std::uint8_t>(row[Effect]);
    info.m_ColorChanged = row[ColorChanged] != 0;
    info.m_BackColorChanged = row[BackColorChanged] != 0;
    info.m_TextStyleChanged = row[StyleChanged] != 0;
    info.m_WeightChanged = row[WeightChanged] != 0;
    info.m_TextEffectChanged = row[EffectChanged] != 0;
    info.m_HasColor = row[HasColor] != 0;
    info.m_HasBackColor = row[HasBackColor] != 0;
    return info;
}

TQColor ToColor(Channels const& channels)
{
    return {channels[0], channels[1], channels[2], channels[3]};
}

/// Where the four channels of one of the two colours stand, and its two flags.
struct SSide
{
    int m_First;
    int m_Changed;
    int m_Has;
    unsigned m_ClearedChannel;
    unsigned m_ClearedAlpha;
};

SSide const Fore{Red, ColorChanged, HasColor, 0, 255};
SSide const Back{BackRed, BackColorChanged, HasBackColor, 255, 0};

Channels ChannelsOf(Row const& row, SSide const& side)
{
    auto const first = static_cast<std::size_t>(side.m_First);
    return {row[first], row[first + 1], row[first + 2], row[first + 3]};
}

Channels const OpaqueBlack{0, 0, 0, 255};

// The model counts bit by bit, so that it shares no expression with the library.
unsigned Toggled(unsigned channel, unsigned value)
{
    unsigned result = 0;
    for (unsigned bit = 1; bit <= 128; bit *= 2)
        if ((channel / bit + value / bit) % 2 == 1)
            result += bit;
    return result;
}

Channels Toggled(Channels const& target, Channels const& value)
{
    if (target == OpaqueBlack && value == OpaqueBlack)
        return {255, 255, 255, 255};
    return {Toggled(target[0], value[0]), Toggled(target[1], value[1]),
            Toggled(target[2], value[2]), target[3]};
}

void Set(Row& row, int column, unsigned value)
{
    row[static_cast<std::size_t>(column)] = value;
}

void ModelAdd(Row& row, SSide const& side, Channels const& color, bool mark)
{
    Channels const before = ChannelsOf(row, side);
    bool complement = before[3] == 255;
    for (std::size_t channel = 0; channel < 3; ++channel)
        complement = complement && before[channel] == 255 - color[channel] % 256;
    if (!complement && mark) {
        Set(row, side.m_Changed, 1);
        Set(row, side.m_Has, 1);
    }
    Channels const after = Toggled(before, color);
    for (int channel = 0; channel < 3; ++channel)
        Set(row, side.m_First + channel, after[static_cast<std::size_t>(channel)]);
}

void ModelClear(Row& row, SSide const& side, bool mark)
{
    unsigned const value = side.m_ClearedChannel;
    if (ChannelsOf(row, side) != Channels{value, value, value, side.m_ClearedAlpha} && mark)
        Set(row, side.m_Changed, 1);
    for (int channel = 0; channel < 3; ++channel)
        Set(row, side.m_First + channel, value);
    Set(row, side.m_First + 3, side.m_ClearedAlpha);
    Set(row, side.m_Has, 0);
}

void ModelMerge(Row& row, Row const& other)
{
    for (SSide const* side : {&Fore, &Back})
        if (ChannelsOf(row, *side) != ChannelsOf(other, *side))
            ModelAdd(row, *side, ChannelsOf(other, *side), true);
    for (auto const& [value, flag] :
         {std::pair(Style, StyleChanged), std::pair(Weight, WeightChanged),
          std::pair(Effect, EffectChanged)})
        if (row[value] != other[value]) {
            row[value] = other[value];
            row[flag] = 1;
        }
}

void ModelResetFlags(Row& row)
{
    for (int column = ColorChanged; column <= EffectChanged; ++column)
        Set(row, column, 0);
}

/// One operation on the library's record and on the model.
struct SOperation
{
    std::string m_Name;
    std::function<void(CFormatInfo&)> m_Library;
    std::function<void(Row&)> m_Model;
};

std::vector<SOperation> Operations(Channels const& color, Row const& other)
{
    std::vector<SOperation> result;
    for (bool const mark : {false, true}) {
        std::string const suffix = mark ? ", marked" : ", unmarked";
        result.push_back({"AddColor" + suffix,
                          [=](CFormatInfo& info) { info.AddColor(ToColor(color), mark); },
                          [=](Row& row) { ModelAdd(row, Fore, color, mark); }});
        result.push_back({"AddBackColor" + suffix,
                          [=](CFormatInfo& info) { info.AddBackColor(ToColor(color), mark); },
                          [=](Row& row) { ModelAdd(row, Back, color, mark); }});
        result.push_back({"ClearColor" + suffix, [=](CFormatInfo& info) { info.ClearColor(mark); },
                          [=](Row& row) { ModelClear(row, Fore, mark); }});
        result.push_back({"ClearBackColor" + suffix,
                          [=](CFormatInfo& info) { info.ClearBackColor(mark); },
                          [=](Row& row) { ModelClear(row, Back, mark); }});
    }
    result.push_back({"ClearFormat", [](CFormatInfo& info) { info.ClearFormat(); },
                      [](Row& row) { row = Cleared; }});
    result.push_back(
        {"ResetChangeFlags", [](CFormatInfo& info) { info.ResetChangeFlags(); }, ModelResetFlags});
    result.push_back({"MergeFormat", [=](CFormatInfo& info) { info.MergeFormat(ToInfo(other)); },
                      [=](Row& row) { ModelMerge(row, other); }});
    return result;
}

void ExpectAgreement(Row const& start, Channels const& color, Row const& other)
{
    for (SOperation const& operation : Operations(color, other)) {
        CFormatInfo info = ToInfo(start);
        operation.m_Library(info);
        Row expected = start;
        operation.m_Model(expected);
        ASSERT_EQ(ToRow(info), expected)
            << operation.m_Name << " on " << testing::PrintToString(start) << " with colour "
            << testing::PrintToString(color) << " and other " << testing::PrintToString(other);
    }
}

void SetFlags(Row& row, unsigned bits)
{
    for (int flag = 0; flag < 7; ++flag)
        Set(row, ColorChanged + flag, bits >> flag & 1);
}

/// Channels where the rules change: the ends, their neighbours, complements.
class CChannelSource
{
public:
    unsigned Channel()
    {
        static unsigned const special[] = {0, 0, 0, 255, 255, 1, 254, 127, 128};
        unsigned const choice = Number(15);
        return choice < std::size(special) ? special[choice] : Number(255);
    }
    Channels Color() { return {Channel(), Channel(), Channel(), Channel()}; }
    /// One of another's colour, its complement, black, or any.
    Channels ColorNear(Channels const& other)
    {
        switch (Number(4)) {
        case 0:
            return other;
        case 1:
            return {255 - other[0], 255 - other[1], 255 - other[2], Channel()};
        case 2:
            return OpaqueBlack;
        case 3:
            return {0, 0, 0, Channel()};
        default:
            return Color();
        }
    }
    Row Record()
    {
        Row row{};
        for (int column = Red; column <= BackAlpha; ++column)
            Set(row, column, Channel());
        row[Style] = Number(2);
        row[Weight] = Number(1) == 0 ? 400 : Number(65535);
        row[Effect] = Number(2);
        SetFlags(row, Number(127));
        return row;
    }
    Row RecordNear(Row const& other)
    {
        Row row = Record();
        for (SSide const* side : {&Fore, &Back}) {
            Channels const color = ColorNear(ChannelsOf(other, *side));
            for (int channel = 0; channel < 4; ++channel)
                Set(row, side->m_First + channel, color[static_cast<std::size_t>(channel)]);
        }
        return row;
    }
    unsigned Number(unsigned most)
    {
        return std::uniform_int_distribution<unsigned>(0, most)(m_Engine);
    }

private:
    std::mt19937 m_Engine{20240229};
};
} // namespace

TEST(CFormatInfo, IsClearedUnlessSet)
{
    EXPECT_EQ(ToRow(CFormatInfo()), Cleared);
}

TEST(CFormatInfo, EveryOperationAgreesWithTheTableForEveryCombinationOfFlags)
{
    Channels const colors[] = {OpaqueBlack,        {0, 0, 0, 0},      {255, 255, 255, 255},
                               {255, 255, 255, 0}, {10, 20, 30, 255}, {245, 235, 225, 255}};
    for (unsigned flags = 0; flags < 128; ++flags)
        for (Channels const& fore : colors)
            for (Channels const& color : colors) {
                Row start{fore[0], fore[1], fore[2], fore[3], fore[0], fore[1],
                          fore[2], fore[3], 1,       401,     2};
                SetFlags(start, flags);
                Row other{color[0], color[1], color[2],  color[3],        color[0], color[1],
                          color[2], color[3], flags % 2, 400 + flags % 2, flags % 3};
                SetFlags(other, ~flags);
                ASSERT_NO_FATAL_FAILURE(ExpectAgreement(start, color, other));
            }
}

TEST(CFormatInfo, EveryOperationAgreesWithTheTableOnRandomRecords)
{
    CChannelSource source;
    for (int round = 0; round < 20000; ++round) {
        Row const start = source.Record();
        Channels const color = source.ColorNear(ChannelsOf(start, round % 2 == 0 ? Fore : Back));
        ASSERT_NO_FATAL_FAILURE(ExpectAgreement(start, color, source.RecordNear(start)));
    }
}

TEST(CFormatInfo, LongRandomHistoriesAgreeWithTheTable)
{
    CChannelSource source;
    CFormatInfo info;
    Row expected = Cleared;
    for (int step = 0; step < 20000; ++step) {
        auto const operations =
            Operations(source.ColorNear(ChannelsOf(expected, Fore)), source.RecordNear(expected));
        auto const last = static_cast<unsigned>(operations.size() - 1);
        SOperation const& operation = operations[source.Number(last)];
        operation.m_Library(info);
        operation.m_Model(expected);
        ASSERT_EQ(ToRow(info), expected) << "step " << step << ": " << operation.m_Name;
    }
}

TEST(CFormatInfo, AddColorPrimitiveTogglesEveryPairOfChannels)
{
    for (unsigned left = 0; left < 256; ++left)
        for (unsigned right = 0; right < 256; ++right) {
            TQColor target{left, 255 - left, left ^ 85, 7};
            CFormatInfo::AddColor(target, {right, right / 2, 255 - right, 9});
            Channels const expected =
                Toggled({left, 255 - left, left ^ 85, 7}, {right, right / 2, 255 - right, 9});
            ASSERT_EQ(target, ToColor(expected)) << left << " and " << right;
        }
}

namespace
{
struct SAddRow
{
    char const* m_Name;
    TQColor m_Target;
    TQColor m_Value;
    TQColor m_Result;
};

class AddColorTable : public testing::TestWithParam<SAddRow>
{
};
} // namespace

TEST_P(AddColorTable, Gives)
{
    TQColor target = GetParam().m_Target;
    CFormatInfo::AddColor(target, GetParam().m_Value);
    EXPECT_EQ(target, GetParam().m_Result);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AddColorTable,
    testing::Values(
        SAddRow{"BlackOnBlackIsWhite", {0, 0, 0, 255}, {0, 0, 0, 255}, {255, 255, 255, 255}},
        SAddRow{"TransparentBlackOnBlackIsBlack", {0, 0, 0, 255}, {0, 0, 0, 0}, {0, 0, 0, 255}},
        SAddRow{"NearlyOpaqueBlackOnBlackIsBlack", {0, 0, 0, 255}, {0, 0, 0, 254}, {0, 0, 0, 255}},
        SAddRow{"BlackOnTransparentBlackIsBlack", {0, 0, 0, 0}, {0, 0, 0, 255}, {0, 0, 0, 0}},
        SAddRow{"BlackOnOneRedBitKeepsIt", {1, 0, 0, 255}, {0, 0, 0, 255}, {1, 0, 0, 255}},
        SAddRow{"BlackOnOneGreenBitKeepsIt", {0, 1, 0, 255}, {0, 0, 0, 255}, {0, 1, 0, 255}},
        SAddRow{"BlackOnOneBlueBitKeepsIt", {0, 0, 1, 255}, {0, 0, 0, 255}, {0, 0, 1, 255}},
        SAddRow{"OneRedBitOnBlack", {0, 0, 0, 255}, {1, 0, 0, 255}, {1, 0, 0, 255}},
        SAddRow{"OneGreenBitOnBlack", {0, 0, 0, 255}, {0, 1, 0, 255}, {0, 1, 0, 255}},
        SAddRow{"OneBlueBitOnBlack", {0, 0, 0, 255}, {0, 0, 1, 255}, {0, 0, 1, 255}},
        SAddRow{"WhiteOnWhiteIsBlack", {255, 255, 255, 9}, {255, 255, 255, 255}, {0, 0, 0, 9}},
        SAddRow{"ColourOnItself", {10, 20, 30, 255}, {10, 20, 30, 255}, {0, 0, 0, 255}},
        SAddRow{"AlphaStays", {10, 20, 30, 40}, {1, 2, 4, 200}, {11, 22, 26, 40}},
        SAddRow{"ResultIsMaskedToEightBits",
                {0x1FF, 0x200, 0xFFFFFFFF, 0x300},
                {0x001, 0x702, 0, 0x400},
                {0xFE, 0x02, 0xFF, 0x300}}),
    [](auto const& row) { return std::string(row.param.m_Name); });

TEST(CFormatInfo, AddingAColourToTheClearedRecordShowsItAndAddingItAgainClearsIt)
{
    CFormatInfo info;
    info.AddColor({10, 20, 30, 255}, true);
    EXPECT_EQ(info.m_Color, (TQColor{10, 20, 30, 255}));
    info.AddColor({10, 20, 30, 255}, true);
    EXPECT_EQ(info.m_Color, (TQColor{0, 0, 0, 255}));
}

// Deliberate in the library: black is the complement of white.
TEST(CFormatInfo, WhiteOnTheClearedRecordShowsAsUnchanged)
{
    CFormatInfo info;
    info.AddColor({255, 255, 255, 255}, true);
    Row expected = Cleared;
    expected[Red] = expected[Green] = expected[Blue] = 255;
    EXPECT_EQ(ToRow(info), expected);
}

TEST(CFormatInfo, ComplementLeavesFlagsThatAreSetAsTheyAre)
{
    CFormatInfo info;
    info.m_ColorChanged = info.m_HasColor = true;
    info.AddColor({255, 255, 255, 255}, true);
    EXPECT_TRUE(info.m_ColorChanged && info.m_HasColor);
}

TEST(CFormatInfo, ComplementCountsOnlyWhereTheColourIsOpaque)
{
    CFormatInfo info;
    info.m_Color.m_Alpha = 254;
    info.AddColor({255, 255, 255, 255}, true);
    EXPECT_TRUE(info.m_ColorChanged && info.m_HasColor);
}

TEST(CFormatInfo, AlphaOfTheAddedColourPlaysNoPartInTheComplement)
{
    CFormatInfo info;
    info.AddColor({255, 255, 255, 3}, true);
    EXPECT_FALSE(info.m_ColorChanged || info.m_HasColor);
}

TEST(CFormatInfo, ComplementIsMaskedToEightBits)
{
    CFormatInfo info;
    info.AddColor({0x1FF, 0xFFFFFFFF, 0x2FF, 255}, true);
    EXPECT_FALSE(info.m_ColorChanged || info.m_HasColor);
}

TEST(CFormatInfo, AddingItsOwnColourReadsItBeforeItChanges)
{
    CFormatInfo info;
    info.m_Color = {10, 20, 30, 255};
    info.AddColor(info.m_Color, true);
    EXPECT_EQ(info.m_Color, (TQColor{0, 0, 0, 255}));
    EXPECT_TRUE(info.m_ColorChanged);
}

TEST(CFormatInfo, ClearingAClearedColourIsNoChange)
{
    CFormatInfo info;
    info.ClearColor(true);
    EXPECT_EQ(ToRow(info), Cleared);
}

// Deliberate in the library: the two clear operations differ in the alpha.
TEST(CFormatInfo, ClearBackColorLeavesTransparentWhiteAndClearFormatOpaqueWhite)
{
    CFormatInfo info;
    info.ClearBackColor(false);
    EXPECT_EQ(info.m_BackColor, (TQColor{255, 255, 255, 0}));
    info.ClearFormat();
    EXPECT_EQ(info.m_BackColor, (TQColor{255, 255, 255, 255}));
}

TEST(CFormatInfo, ClearBackColorAfterClearFormatIsAChange)
{
    CFormatInfo info;
    info.ClearFormat();
    info.ClearBackColor(true);
    EXPECT_TRUE(info.m_BackColorChanged);
    info.ResetChangeFlags();
    info.ClearBackColor(true);
    EXPECT_FALSE(info.m_BackColorChanged);
}

TEST(CFormatInfo, ResettingTheChangeFlagsKeepsWhatWasHad)
{
    CFormatInfo info;
    info.AddColor({1, 2, 3, 255}, true);
    info.AddBackColor({1, 2, 3, 255}, true);
    info.ResetChangeFlags();
    EXPECT_FALSE(info.m_ColorChanged || info.m_BackColorChanged);
    EXPECT_TRUE(info.m_HasColor && info.m_HasBackColor);
}

TEST(CFormatInfo, MergingAnEqualRecordChangesNothingWhateverItsFlags)
{
    Row const mine{1, 2, 3, 255, 4, 5, 6, 7, 8, 9, 10, 1, 0, 1, 0, 1, 0, 1};
    Row other = mine;
    SetFlags(other, 0x5A);
    CFormatInfo info = ToInfo(mine);
    info.MergeFormat(ToInfo(other));
    EXPECT_EQ(ToRow(info), mine);
}

TEST(CFormatInfo, MergeReturnsTheRecordItself)
{
    CFormatInfo info;
    EXPECT_EQ(&info.MergeFormat(CFormatInfo()), &info);
}

TEST(CFormatInfo, MergingItselfChangesNothing)
{
    CFormatInfo info;
    info.m_Color = {10, 20, 30, 255};
    Row const before = ToRow(info);
    info.MergeFormat(info);
    EXPECT_EQ(ToRow(info), before);
}

TEST(CFormatInfo, MergeTogglesColoursAndCopiesScalars)
{
    CFormatInfo info;
    info.AddColor({1, 2, 4, 255}, false);
    info.m_Weight = 300;
    CFormatInfo other;
    other.m_Color = {3, 3, 3, 255};
    other.m_Weight = 700;
    info.MergeFormat(other);
    EXPECT_EQ(info.m_Color, (TQColor{2, 1, 7, 255}));
    EXPECT_EQ(info.m_Weight, 700);
    EXPECT_TRUE(info.m_ColorChanged && info.m_HasColor && info.m_WeightChanged);
    EXPECT_FALSE(info.m_BackColorChanged || info.m_HasBackColor || info.m_TextStyleChanged
                 || info.m_TextEffectChanged);
}

TEST(TQColor, IsOpaqueBlackUnlessSet)
{
    EXPECT_EQ(TQColor(), (TQColor{0, 0, 0, 255}));
}

TEST(TQColor, ComparesAllFourChannels)
{
    TQColor const color{1, 2, 3, 4};
    EXPECT_TRUE(color == color);
    EXPECT_FALSE(color != color);
    for (TQColor const& other :
         {TQColor{0, 2, 3, 4}, TQColor{1, 0, 3, 4}, TQColor{1, 2, 0, 4}, TQColor{1, 2, 3, 0}}) {
        EXPECT_TRUE(color != other);
        EXPECT_FALSE(color == other);
    }
}
