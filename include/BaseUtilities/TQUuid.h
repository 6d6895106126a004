#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>

#include <cstdint>

/// A 128-bit identifier: 16 bytes, all zero unless set.
///
/// Threads: a value.
struct BASEUTILITIES_EXPORT TQUuid
{
    std::uint32_t m_Data1 = 0; // numbers, in the machine's byte order
    std::uint16_t m_Data2 = 0;
    std::uint16_t m_Data3 = 0;
    std::uint8_t m_Data4[8] = {};

    /// 38 characters: {12345678-9ABC-DEF0-0123-456789ABCDEF}, upper case.
    /// Deliberate: preceded by two spaces for each
    /// CFormattedString::m_sIndentLevel, as every formatted text is.
    /// Throws std::bad_alloc, and std::runtime_error when formatting fails.
    CSafeString ToString() const;
};
