#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

/// Borrowed text: how every function of the library takes text. It never owns
/// the characters, which must outlive it and need no terminating NUL.
///
/// The char form travels as `basic_sv_wrapper<char> const&`; the wchar_t
/// (32-bit) and char16_t (UTF-16) forms travel by value. Sizes count CharT
/// units. A view made from a null pointer is empty and not set; one made from
/// real text, also empty text, is set. No constructor throws.
///
/// Threads: a value; the text behind it follows its owner's rules.
template <class CharT, class Traits = std::char_traits<CharT>>
class basic_sv_wrapper
{
    template <class T>
    static constexpr bool IsPointer =
        (std::is_pointer_v<T> || std::is_null_pointer_v<T>)&&std::is_convertible_v<T, CharT const*>;

public:
    using value_type = CharT;
    using traits_type = Traits;
    using size_type = std::size_t;
    using const_iterator = CharT const*;

    /// Empty and not set.
    constexpr basic_sv_wrapper() noexcept = default;

    /// The text up to its terminating NUL; a null pointer gives the default view.
    template <class Pointer, std::enable_if_t<IsPointer<Pointer>, int> = 0>
    constexpr basic_sv_wrapper(Pointer const& text) noexcept : basic_sv_wrapper(FromPointer(text))
    {
    }

    /// A literal: all its characters but the terminator, embedded NULs included.
    /// Deliberate: every array of const characters counts as a literal. Pass a
    /// buffer that is only partly filled as a pointer.
    template <std::size_t Count>
    constexpr basic_sv_wrapper(CharT const (&literal)[Count]) noexcept
        : m_Length(Count - 1),
          m_pText(literal),
          m_HasValue(true)
    {
    }

    /// A writable array: the text up to its terminating NUL.
    template <std::size_t Count>
    constexpr basic_sv_wrapper(CharT (&buffer)[Count]) noexcept
        : basic_sv_wrapper(FromPointer(buffer))
    {
    }

    /// `length` characters from `text`. A null `text` with a length is kept as
    /// given; who reads it says what comes of it (CSafeString refuses it).
    constexpr basic_sv_wrapper(CharT const* text, size_type length) noexcept
        : m_Length(length),
          m_pText(text),
          m_HasValue(text != nullptr)
    {
    }

    template <class Allocator>
    basic_sv_wrapper(std::basic_string<CharT, Traits, Allocator> const& text) noexcept
        : basic_sv_wrapper(text.data(), text.size())
    {
    }

    constexpr basic_sv_wrapper(std::basic_string_view<CharT, Traits> text) noexcept
        : basic_sv_wrapper(text.data(), text.size())
    {
    }

    constexpr size_type size() const noexcept { return m_Length; }
    constexpr CharT const* data() const noexcept { return m_pText; }
    /// True when the length is 0, whether the view is set or not.
    constexpr bool empty() const noexcept { return m_Length == 0; }
    constexpr const_iterator begin() const noexcept { return m_pText; }
    constexpr const_iterator end() const noexcept { return m_pText + m_Length; }

    /// True when the view is set and not empty.
    constexpr explicit operator bool() const noexcept { return m_HasValue && m_Length != 0; }

    constexpr explicit operator std::basic_string_view<CharT, Traits>() const noexcept
    {
        return std::basic_string_view<CharT, Traits>(m_pText, m_Length);
    }

    /// Equal lengths, equal characters and equal `m_HasValue`.
    /// Deliberate: two views of length 0 are equal whatever their flags.
    friend constexpr bool operator==(basic_sv_wrapper const& left, basic_sv_wrapper const& right)
    {
        if (left.m_Length != right.m_Length)
            return false;
        if (left.m_Length == 0)
            return true;
        // Only unset views may lack the text to compare. Set ones are not compared by address,
        // which is no constant where both view literals.
        return left.m_HasValue == right.m_HasValue
               && ((!left.m_HasValue && left.m_pText == right.m_pText)
                   || Traits::compare(left.m_pText, right.m_pText, left.m_Length) == 0);
    }

    friend constexpr bool operator!=(basic_sv_wrapper const& left, basic_sv_wrapper const& right)
    {
        return !(left == right);
    }

    /// The order of the standard view; the flag plays no part.
    friend constexpr bool operator<(basic_sv_wrapper const& left, basic_sv_wrapper const& right)
    {
        using View = std::basic_string_view<CharT, Traits>;
        return static_cast<View>(left) < static_cast<View>(right);
    }

private:
    static constexpr basic_sv_wrapper FromPointer(CharT const* text) noexcept
    {
        return text == nullptr ? basic_sv_wrapper() : basic_sv_wrapper(text, Traits::length(text));
    }

    size_type m_Length = 0;
    CharT const* m_pText = nullptr;

public:
    /// True when made from real text, also from empty text.
    bool m_HasValue = false;
};
