#pragma once

#include <cstdint>

/// A colour: four channels of 0 to 255. Opaque black unless set.
struct TQColor
{
    std::uint32_t m_Red = 0;
    std::uint32_t m_Green = 0;
    std::uint32_t m_Blue = 0;
    std::uint32_t m_Alpha = 255;

    friend constexpr bool operator==(TQColor const& left, TQColor const& right)
    {
        return left.m_Red == right.m_Red && left.m_Green == right.m_Green
               && left.m_Blue == right.m_Blue && left.m_Alpha == right.m_Alpha;
    }
    friend constexpr bool operator!=(TQColor const& left, TQColor const& right)
    {
        return !(left == right);
    }
};
