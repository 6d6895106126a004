#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/TQColor.h>

#include <cstdint>

/// How a piece of text is to be shown: colours, weight and two style attributes
/// whose meaning is the application's, with flags that tell what has changed
/// since they were last reset. Nothing throws.
///
/// Deliberate: colours combine by exclusive or, channel by channel, so adding a
/// colour twice restores the first; alpha never changes. Scalars are copied.
///
/// Threads: a value, one thread at a time.
class BASEUTILITIES_EXPORT CFormatInfo
{
public:
    TQColor m_Color{};
    TQColor m_BackColor{255, 255, 255, 255};
    std::uint8_t m_TextStyle = 0;
    std::uint16_t m_Weight = 400;
    std::uint8_t m_TextEffect = 0;
    bool m_ColorChanged = false;
    bool m_BackColorChanged = false;
    bool m_TextStyleChanged = false;
    bool m_WeightChanged = false;
    bool m_TextEffectChanged = false;
    bool m_HasColor = false;
    bool m_HasBackColor = false;

    /// Toggles the bits of `value` in the red, green and blue of `target`.
    /// Deliberate: opaque black added to opaque black gives white.
    static void AddColor(TQColor& target, TQColor value);

    /// Adds to the colour and, with `markChange`, flags it as changed and had.
    /// Deliberate: no flag is touched when the opaque colour is the complement
    /// of `color`, so that black plus white shows as unchanged.
    void AddColor(TQColor const& color, bool markChange);
    void AddBackColor(TQColor const& color, bool markChange);

    /// Opaque black, no colour had; flagged as changed if it was another.
    void ClearColor(bool markChange);
    /// Deliberate: transparent white, where ClearFormat leaves opaque white.
    void ClearBackColor(bool markChange);

    /// The state of a new record: all attributes and all seven flags.
    void ClearFormat();
    /// Clears the five change flags; what was had stays.
    void ResetChangeFlags();

    /// Takes over what differs in `other`: colours by AddColor, the rest by
    /// copying, each flagged as changed. The flags of `other` are not read.
    CFormatInfo& MergeFormat(CFormatInfo const& other);
};
