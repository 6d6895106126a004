#include "VerdictFormat.h"

#include "Verdicts.h"

namespace
{
constexpr TQColor green{0, 128, 0, 255};
constexpr TQColor amber{176, 112, 0, 255};
constexpr TQColor red{192, 0, 0, 255};
constexpr std::uint16_t bold = 700;

CFormatInfo Coloured(TQColor const& color)
{
    CFormatInfo format;
    format.AddColor(color, true);
    return format;
}
} // namespace

CFormatInfo VerdictFormat(TEST_STATUS verdict)
{
    switch (static_cast<std::uint32_t>(verdict)) {
    case TEST_STATUS_PASSED:
        return Coloured(green);
    case TEST_STATUS_SKIPPED:
    case TEST_STATUS_ABORTED:
        return Coloured(amber);
    default:
        CFormatInfo format = Coloured(red);
        format.m_Weight = bold;
        return format;
    }
}
