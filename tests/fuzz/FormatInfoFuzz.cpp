// The colour and format record against a table of numbers.

#include "Fuzz.h"

#include <BaseUtilities/CFormatInfo.h>

#include <array>

namespace
{
// Of each of the two colours: four channels, whether it changed, whether it was had.
struct SColumn
{
    std::array<unsigned, 4> m_Channels;
    bool m_Changed;
    bool m_Had;
};

// Of each of style, weight and effect: the value, and whether it changed.
struct SAttribute
{
    unsigned m_Value;
    bool m_Changed;
};

struct STable
{
    std::array<SColumn, 2> m_Colors;
    std::array<SAttribute, 3> m_Attributes;
};

constexpr std::array<unsigned, 4> OpaqueBlack{0, 0, 0, 255};
constexpr std::array<std::array<unsigned, 4>, 2> Cleared{OpaqueBlack, {255, 255, 255, 0}};
constexpr STable New{{{{OpaqueBlack, false, false}, {{255, 255, 255, 255}, false, false}}},
                     {{{0, false}, {400, false}, {0, false}}}};

struct CPair
{
    CFormatInfo m_Info;
    STable m_Table = New;
};

TQColor ToColor(std::array<unsigned, 4> const& channels)
{
    return {channels[0], channels[1], channels[2], channels[3]};
}

std::string Shown(TQColor const& color, bool changed, bool had)
{
    std::string text;
    for (unsigned const value : {color.m_Red, color.m_Green, color.m_Blue, color.m_Alpha,
                                 unsigned{changed}, unsigned{had}})
        text += std::to_string(value) + ' ';
    return text;
}

std::string Shown(CFormatInfo const& info)
{
    return Shown(info.m_Color, info.m_ColorChanged, info.m_HasColor)
           + Shown(info.m_BackColor, info.m_BackColorChanged, info.m_HasBackColor)
           + std::to_string(info.m_TextStyle) + ' ' + std::to_string(info.m_TextStyleChanged) + ' '
           + std::to_string(info.m_Weight) + ' ' + std::to_string(info.m_WeightChanged) + ' '
           + std::to_string(info.m_TextEffect) + ' ' + std::to_string(info.m_TextEffectChanged)
           + ' ';
}

std::string Shown(STable const& table)
{
    std::string text;
    for (SColumn const& color : table.m_Colors)
        text += Shown(ToColor(color.m_Channels), color.m_Changed, color.m_Had);
    for (SAttribute const& attribute : table.m_Attributes)
        text += std::to_string(attribute.m_Value) + ' ' + std::to_string(attribute.m_Changed) + ' ';
    return text;
}

// Planted defect: black on black stays black.
void Toggle(std::array<unsigned, 4>& target, std::array<unsigned, 4> const& value)
{
    bool const bothBlack = target == OpaqueBlack && value == OpaqueBlack && !IsDefectPlanted();
    for (std::size_t i = 0; i < 3; ++i)
        target[i] = bothBlack ? 255 : target[i] ^ value[i];
}

void Add(SColumn& column, std::array<unsigned, 4> const& value, bool mark)
{
    bool complement = column.m_Channels[3] == 255;
    for (std::size_t i = 0; i < 3; ++i)
        complement = complement && column.m_Channels[i] + value[i] == 255;
    column.m_Changed = column.m_Changed || (mark && !complement);
    column.m_Had = column.m_Had || (mark && !complement);
    Toggle(column.m_Channels, value);
}

// Any, with a liking for those that the rules are about.
std::array<unsigned, 4> Color(CFuzzInput& input, std::array<unsigned, 4> const& present)
{
    switch (input.Choice(6)) {
    case 0:
        return OpaqueBlack;
    case 1:
        return {255, 255, 255, 255};
    case 2:
        return {255 - present[0], 255 - present[1], 255 - present[2], input.Take<std::uint8_t>()};
    case 3:
        return present;
    default:
        break;
    }
    std::array<unsigned, 4> color{};
    for (unsigned& channel : color)
        channel = input.Take<std::uint8_t>();
    return color;
}

void AddColor(CFuzzInput& input, CPair& pair)
{
    std::size_t const which = input.Choice(2);
    bool const mark = input.Flag();
    SColumn& column = pair.m_Table.m_Colors[which];
    std::array<unsigned, 4> const value = Color(input, column.m_Channels);
    Add(column, value, mark);
    if (which == 0)
        pair.m_Info.AddColor(ToColor(value), mark);
    else
        pair.m_Info.AddBackColor(ToColor(value), mark);
}

void AddToPlainColor(CFuzzInput& input, CPair& pair)
{
    std::size_t const which = input.Choice(2);
    SColumn& column = pair.m_Table.m_Colors[which];
    std::array<unsigned, 4> const value = Color(input, column.m_Channels);
    Toggle(column.m_Channels, value);
    CFormatInfo::AddColor(which == 0 ? pair.m_Info.m_Color : pair.m_Info.m_BackColor,
                          ToColor(value));
}

void ClearColor(CFuzzInput& input, CPair& pair)
{
    std::size_t const which = input.Choice(2);
    bool const mark = input.Flag();
    SColumn& column = pair.m_Table.m_Colors[which];
    column.m_Changed = column.m_Changed || (mark && column.m_Channels != Cleared[which]);
    column.m_Channels = Cleared[which];
    column.m_Had = false;
    if (which == 0)
        pair.m_Info.ClearColor(mark);
    else
        pair.m_Info.ClearBackColor(mark);
}

void SetColor(CFuzzInput& input, CPair& pair)
{
    std::size_t const which = input.Choice(2);
    SColumn& column = pair.m_Table.m_Colors[which];
    column.m_Channels = Color(input, column.m_Channels);
    (which == 0 ? pair.m_Info.m_Color : pair.m_Info.m_BackColor) = ToColor(column.m_Channels);
}

void SetAttributes(CFuzzInput& input, CPair& pair)
{
    pair.m_Info.m_TextStyle = input.Take<std::uint8_t>();
    pair.m_Info.m_Weight = input.Take<std::uint16_t>();
    pair.m_Info.m_TextEffect = input.Take<std::uint8_t>();
    pair.m_Table.m_Attributes[0].m_Value = pair.m_Info.m_TextStyle;
    pair.m_Table.m_Attributes[1].m_Value = pair.m_Info.m_Weight;
    pair.m_Table.m_Attributes[2].m_Value = pair.m_Info.m_TextEffect;
}

void ClearFormat(CFuzzInput&, CPair& pair)
{
    pair.m_Info.ClearFormat();
    pair.m_Table = New;
}

void ResetChangeFlags(CFuzzInput&, CPair& pair)
{
    pair.m_Info.ResetChangeFlags();
    for (SColumn& color : pair.m_Table.m_Colors)
        color.m_Changed = false;
    for (SAttribute& attribute : pair.m_Table.m_Attributes)
        attribute.m_Changed = false;
}

// By toggling the colours and copying the attributes, each only where it differs.
void Merge(STable& table, STable const& other)
{
    for (std::size_t i = 0; i < 2; ++i) {
        if (table.m_Colors[i].m_Channels != other.m_Colors[i].m_Channels)
            Add(table.m_Colors[i], other.m_Colors[i].m_Channels, true);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        SAttribute& attribute = table.m_Attributes[i];
        attribute.m_Changed =
            attribute.m_Changed || attribute.m_Value != other.m_Attributes[i].m_Value;
        attribute.m_Value = other.m_Attributes[i].m_Value;
    }
}

void (*const Changes[])(CFuzzInput&, CPair&) = {
    AddColor, AddToPlainColor, ClearColor, SetColor, SetAttributes, ClearFormat, ResetChangeFlags};
} // namespace

// Two records, so that one can be merged into the other.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    std::array<CPair, 2> pairs;
    while (!input.IsUsedUp()) {
        std::size_t const which = input.Choice(2);
        std::size_t const change = input.Choice(std::size(Changes) + 1);
        CPair& pair = pairs[which];
        if (change < std::size(Changes)) {
            Changes[change](input, pair);
        } else {
            CPair const& other = pairs[1 - which];
            bool const itself = &pair.m_Info.MergeFormat(other.m_Info) == &pair.m_Info;
            ExpectSame("returns the record", itself, true);
            Merge(pair.m_Table, other.m_Table);
        }
        ExpectSame("record", Shown(pair.m_Info), Shown(pair.m_Table));
    }
    return 0;
}
