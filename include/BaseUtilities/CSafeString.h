#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

/// The owning string of every interface, safe to pass between shared libraries:
/// one pointer wide, its text allocated, grown and freed by this library alone.
/// Text is bytes and may hold NULs; made from wide or UTF-16 text it is UTF-8.
/// Sizes and positions count bytes.
///
/// A moved-from object holds nothing: destroy it, assign to it, or swap it by
/// move assignment. Every other use is undefined. No access checks bounds.
/// Allocation throws std::bad_alloc, impossible lengths std::length_error.
/// `char const*` arguments are NUL-terminated and not null unless said.
///
/// Threads: read from several at once; any change needs the caller's exclusion.
class BASEUTILITIES_EXPORT CSafeString
{
public:
    using iterator = std::string::iterator;
    using const_iterator = std::string::const_iterator;
    using reverse_iterator = std::string::reverse_iterator;
    using const_reverse_iterator = std::string::const_reverse_iterator;

    /// A null pointer gives empty text.
    CSafeString(char const* text = nullptr);
    /// A null view of length 0 gives empty text; one with a length throws
    /// std::logic_error. `m_HasValue` is not consulted.
    CSafeString(basic_sv_wrapper<char> const& text);
    CSafeString(unsigned long count, char character);
    CSafeString(basic_sv_wrapper<wchar_t> text);
    CSafeString(basic_sv_wrapper<char16_t> text);
    /// The items joined as by do_join.
    CSafeString(std::vector<CSafeString> const& items, basic_sv_wrapper<char> const& separator);
    CSafeString(std::vector<CSafeString> const& items, char separator);

    CSafeString(CSafeString const& other);
    CSafeString(CSafeString&& other) noexcept;
    /// Deliberate: the old text is released before the new storage exists. When
    /// that allocation fails, the target is left as if moved from.
    CSafeString& operator=(CSafeString const& other);
    /// Exchanges the two texts: `other` then owns this object's former text.
    CSafeString& operator=(CSafeString&& other) noexcept;
    ~CSafeString();

    /// Replaces the text, in the existing storage where it suffices. The view
    /// may point into this very string. A null view must have length 0.
    void set(basic_sv_wrapper<char> const& text);
    void set(basic_sv_wrapper<char16_t> text);
    void set(basic_sv_wrapper<wchar_t> text);
    /// Empties the text and keeps the storage.
    void clear();

    /// The NUL-terminated text; never null.
    char const* get() const noexcept;
    char const* data() const noexcept;
    char* data() noexcept;
    unsigned long size() const noexcept;
    bool empty() const noexcept;
    char& operator[](unsigned long position);
    char const& operator[](unsigned long position) const;
    /// On empty text, the terminating NUL.
    char& front();
    char const& front() const;
    /// Not to be called on empty text.
    char& back();
    char const& back() const;
    iterator begin();
    const_iterator cbegin();
    iterator end();
    const_iterator cend();
    reverse_iterator rbegin();
    const_reverse_iterator crbegin();
    reverse_iterator rend();
    const_reverse_iterator crend();

    /// Deliberate: seen through get(), so the view ends at the first NUL.
    operator basic_sv_wrapper<char>() const noexcept;

    /// Negative, 0 or positive: bytes first, then the difference of the sizes,
    /// clamped to int. A null view compares as empty text.
    int compare(basic_sv_wrapper<char> const& text) const;
    /// At most `count` bytes from `position`; empty at size(). Throws
    /// std::out_of_range beyond it.
    CSafeString substr(unsigned long position, unsigned long count) const;
    std::filesystem::path to_path() const;

    // Appends. When one throws, the previous text is intact.

    /// Deliberate: `other` is read through get(), up to its first NUL.
    CSafeString& operator+=(CSafeString const& other);
    CSafeString& operator+=(char const* text);
    CSafeString& operator+=(char character);
    CSafeString& operator+=(std::initializer_list<char> characters);
    CSafeString& operator+=(basic_sv_wrapper<char> const& text);
    CSafeString& append(basic_sv_wrapper<char> const& text);
    /// At most `count` bytes of `text` from `position`. Throws
    /// std::out_of_range when that lies beyond the view's length.
    CSafeString& append(basic_sv_wrapper<char> const& text, unsigned long position,
                        unsigned long count);
    /// Exactly `count` bytes, NULs included.
    CSafeString& append(char const* text, unsigned long count);
    CSafeString& append(char const* text);
    CSafeString& append(unsigned long count, char character);
    CSafeString& append(std::initializer_list<char> characters);

    /// The items with the separator between them; each up to its first NUL.
    /// One single item is copied whole. A NUL separator means none.
    /// Deliberate: a separator is written only once the result is not empty, so
    /// empty items at the front leave none ("", "", "x" gives "x") and those
    /// behind leave one each ("x", "", "y" gives "x,,y").
    static CSafeString do_join(std::vector<CSafeString> const& items,
                               basic_sv_wrapper<char> const& separator);
    static CSafeString do_join(std::vector<CSafeString> const& items, char separator);
    /// Replaces this text by do_join of the arguments and returns a copy of it.
    CSafeString join(std::vector<CSafeString> const& items,
                     basic_sv_wrapper<char> const& separator);
    CSafeString join(std::vector<CSafeString> const& items, char separator);

    /// The decimal text of a number: that of std::to_string; for floating point
    /// that of "%f", with the decimal point of the C library's locale.
    static CSafeString to_string(int value);
    static CSafeString to_string(long value);
    static CSafeString to_string(long long value);
    static CSafeString to_string(unsigned int value);
    static CSafeString to_string(unsigned long value);
    static CSafeString to_string(unsigned long long value);
    static CSafeString to_string(float value);
    static CSafeString to_string(double value);
    static CSafeString to_string(long double value);

    // With a literal or pointer: the whole text against the text up to its NUL; null is empty.
    friend bool operator==(CSafeString const& left, char const* right)
    {
        return left.compare(right) == 0;
    }
    friend bool operator==(char const* left, CSafeString const& right) { return right == left; }
    friend bool operator!=(CSafeString const& left, char const* right) { return !(left == right); }
    friend bool operator!=(char const* left, CSafeString const& right) { return !(right == left); }

    // With a view: the two views are compared, so the string is seen through get().
    friend bool operator==(CSafeString const& left, basic_sv_wrapper<char> const& right)
    {
        return static_cast<basic_sv_wrapper<char>>(left) == right;
    }
    friend bool operator==(basic_sv_wrapper<char> const& left, CSafeString const& right)
    {
        return right == left;
    }
    friend bool operator!=(CSafeString const& left, basic_sv_wrapper<char> const& right)
    {
        return !(left == right);
    }
    friend bool operator!=(basic_sv_wrapper<char> const& left, CSafeString const& right)
    {
        return !(right == left);
    }

    // Deliberate: no order by operator, not even by way of the view; std::less orders.
    template <class T>
    friend bool operator<(CSafeString const& left, T const& right) = delete;
    template <class T>
    friend bool operator<(T const& left, CSafeString const& right) = delete;

private:
    std::string* m_pString; // owned; null once moved from
};

/// Equal sizes and equal bytes.
BASEUTILITIES_EXPORT bool operator==(CSafeString const& left, CSafeString const& right);
inline bool operator!=(CSafeString const& left, CSafeString const& right)
{
    return !(left == right);
}

/// The order of CSafeString::compare, for ordered containers.
template <>
struct BASEUTILITIES_EXPORT std::less<CSafeString>
{
    bool operator()(CSafeString const& left, CSafeString const& right) const;
};

// Concatenation: a new string, the left text first; the operands keep theirs.
// Deliberate: no form reuses the storage of a temporary, and the forms differ
// in what they tolerate: only `char const* + CSafeString const&` takes a null
// pointer (as empty text), and only `char + CSafeString const&` reads the right
// text through get(), up to its first NUL. All others keep NULs.
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString const& left, CSafeString const& right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString&& left, CSafeString&& right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString&& left, CSafeString const& right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString const& left, CSafeString&& right);
BASEUTILITIES_EXPORT CSafeString operator+(char const* left, CSafeString const& right);
BASEUTILITIES_EXPORT CSafeString operator+(char const* left, CSafeString&& right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString const& left, char const* right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString&& left, char const* right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString const& left, char right);
BASEUTILITIES_EXPORT CSafeString operator+(CSafeString&& left, char right);
BASEUTILITIES_EXPORT CSafeString operator+(char left, CSafeString const& right);
BASEUTILITIES_EXPORT CSafeString operator+(char left, CSafeString&& right);
