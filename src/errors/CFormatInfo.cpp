#include <BaseUtilities/CFormatInfo.h>

#include <cstring>
#include <type_traits>

namespace
{
constexpr TQColor OpaqueBlack{0, 0, 0, 255};
constexpr TQColor TransparentWhite{255, 255, 255, 0};

constexpr std::uint32_t Mask = 255;

bool IsComplement(std::uint32_t channel, std::uint32_t other)
{
    return channel == (~other & Mask);
}

bool IsOpaqueComplement(TQColor const& color, TQColor const& other)
{
    return color.m_Alpha == 255 && IsComplement(color.m_Red, other.m_Red)
           && IsComplement(color.m_Green, other.m_Green)
           && IsComplement(color.m_Blue, other.m_Blue);
}

// In any channel: compared as a whole, for there is nothing between them.
bool Differ(TQColor const& color, TQColor const& other)
{
    static_assert(std::has_unique_object_representations_v<TQColor>);
    return std::memcmp(&color, &other, sizeof color) != 0;
}

// Copies where the two differ, and says so in the flag.
template <class Attribute>
void MergeAttribute(Attribute& attribute, Attribute other, bool& changed)
{
    if (attribute == other)
        return;
    attribute = other;
    changed = true;
}

bool IsOpaqueBlack(TQColor const& color)
{
    return !Differ(color, OpaqueBlack);
}

void Combine(TQColor& target, TQColor const& value)
{
    if (IsOpaqueBlack(target) && IsOpaqueBlack(value)) {
        target = {255, 255, 255, target.m_Alpha};
        return;
    }
    target.m_Red = (target.m_Red ^ value.m_Red) & Mask;
    target.m_Green = (target.m_Green ^ value.m_Green) & Mask;
    target.m_Blue = (target.m_Blue ^ value.m_Blue) & Mask;
}
} // namespace

void CFormatInfo::AddColor(TQColor& target, TQColor value)
{
    Combine(target, value);
}

void CFormatInfo::AddColor(TQColor const& color, bool markChange)
{
    if (!IsOpaqueComplement(m_Color, color) && markChange) {
        m_ColorChanged = true;
        m_HasColor = true;
    }
    Combine(m_Color, color);
}

void CFormatInfo::AddBackColor(TQColor const& color, bool markChange)
{
    if (!IsOpaqueComplement(m_BackColor, color) && markChange) {
        m_BackColorChanged = true;
        m_HasBackColor = true;
    }
    Combine(m_BackColor, color);
}

void CFormatInfo::ClearColor(bool markChange)
{
    if (m_Color != OpaqueBlack && markChange)
        m_ColorChanged = true;
    m_Color = OpaqueBlack;
    m_HasColor = false;
}

void CFormatInfo::ClearBackColor(bool markChange)
{
    if (m_BackColor != TransparentWhite && markChange)
        m_BackColorChanged = true;
    m_BackColor = TransparentWhite;
    m_HasBackColor = false;
}

void CFormatInfo::ClearFormat()
{
    *this = CFormatInfo();
}

void CFormatInfo::ResetChangeFlags()
{
    m_ColorChanged = false;
    m_BackColorChanged = false;
    m_TextStyleChanged = false;
    m_WeightChanged = false;
    m_TextEffectChanged = false;
}

CFormatInfo& CFormatInfo::MergeFormat(CFormatInfo const& other)
{
    if (Differ(m_Color, other.m_Color))
        AddColor(other.m_Color, true);
    if (Differ(m_BackColor, other.m_BackColor))
        AddBackColor(other.m_BackColor, true);
    MergeAttribute(m_Weight, other.m_Weight, m_WeightChanged);
    MergeAttribute(m_TextStyle, other.m_TextStyle, m_TextStyleChanged);
    MergeAttribute(m_TextEffect, other.m_TextEffect, m_TextEffectChanged);
    return *this;
}
