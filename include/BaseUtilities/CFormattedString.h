#pragma once

#include <BaseUtilities/CBasicFlatString.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstddef>
#include <string>
#include <tuple>

namespace BaseUtilities::detail
{
template <class T>
T const& FormatterValue(T const& value)
{
    return value; // NOLINT(bugprone-return-const-ref-from-parameter): read within the expression
}

// Writable text and arrays of any length as one type, so that they share buffers.
inline char const* FormatterValue(char const* text)
{
    return text;
}

inline char const* FormatterValue(char* text)
{
    return text;
}

template <class T, std::size_t Count>
T const* FormatterValue(T const (&array)[Count])
{
    return array;
}

inline char const* FormatterValue(std::string const& text)
{
    return text.c_str();
}

inline char const* FormatterValue(CSafeString const& text)
{
    return text.get();
}
} // namespace BaseUtilities::detail

/// A printf-style text, preceded by two spaces for each m_sIndentLevel.
///
/// ```cpp
/// CFormattedString const line("%s: %d of %d", name.get(), done, all);
/// ```
///
/// Takes the arguments of CBasicFlatString::DoBuild, and std::string,
/// CSafeString and literals for "%s". Throws as DoBuild does.
///
/// Threads: an object belongs to one thread at a time.
class BASEUTILITIES_EXPORT CFormattedString
{
public:
    template <class... Args>
    explicit CFormattedString(basic_sv_wrapper<char> const& fmt, Args const&... args)
        : m_Indent(2 * m_sIndentLevel, ' ')
    {
        using BaseUtilities::detail::FormatterValue;
        CBasicFlatString::DoBuild(m_Buffer, m_Indent, fmt, FormatterValue(args)...);
        if (char const* const text = m_Buffer.Get(0))
            m_pText = text;
    }
    CFormattedString(CFormattedString const&) = delete;
    CFormattedString& operator=(CFormattedString const&) = delete;
    ~CFormattedString();

    /// The NUL-terminated text, never null; valid as long as this object.
    char const* get() const noexcept { return m_pText; }
    /// A copy of that text.
    operator CSafeString() const { return m_pText; }

    /// The process's indentation level, 0 at load. Only the application sets
    /// it, while no other thread builds messages: no lock guards it.
    static unsigned long m_sIndentLevel;
    /// The empty text.
    static char const EMPTY_STR[1];

private:
    std::tuple<unsigned long, char> m_Indent;
    CSimpleBuffer m_Buffer;
    char const* m_pText = EMPTY_STR;
};
