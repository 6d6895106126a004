#pragma once

#include "FloorExport.h"

#include <BaseUtilities/basic_sv_wrapper.h>

#include <string>
#include <vector>

// The floor: the cheapest code which still does exactly the steps that each operation of
// BaseUtilities owes its callers, with the same allocations, behind a library boundary of the same
// kind. It is measured, not used: nothing is checked, and nothing is offered that is not measured.
namespace Floor
{
using View = basic_sv_wrapper<char>;

/// What CSafeString has to be: one pointer to a standard string on the heap.
class FLOOR_EXPORT CText
{
public:
    CText(char const* text = nullptr);
    CText(View const& text);
    CText(unsigned long count, char character);
    CText(basic_sv_wrapper<wchar_t> text);
    CText(basic_sv_wrapper<char16_t> text);
    CText(CText const& other);
    CText(CText&& other) noexcept;
    CText& operator=(CText const& other);
    CText& operator=(CText&& other) noexcept;
    ~CText();

    void set(View const& text);
    void clear();
    char const* get() const noexcept;
    unsigned long size() const noexcept;
    int compare(View const& text) const;
    CText substr(unsigned long position, unsigned long count) const;

    CText& operator+=(CText const& other);
    CText& operator+=(char const* text);
    CText& operator+=(char character);
    CText& operator+=(View const& text);

    static CText do_join(std::vector<CText> const& items, View const& separator);
    static CText to_string(int value);
    static CText to_string(unsigned long long value);
    static CText to_string(double value);

    friend FLOOR_EXPORT bool operator==(CText const& left, CText const& right);
    friend FLOOR_EXPORT bool Less(CText const& left, CText const& right);

    friend FLOOR_EXPORT CText operator+(CText const& left, CText const& right);
    friend FLOOR_EXPORT CText operator+(CText&& left, CText&& right);
    friend FLOOR_EXPORT CText operator+(CText&& left, CText const& right);
    friend FLOOR_EXPORT CText operator+(CText const& left, CText&& right);
    friend FLOOR_EXPORT CText operator+(char const* left, CText const& right);
    friend FLOOR_EXPORT CText operator+(char const* left, CText&& right);
    friend FLOOR_EXPORT CText operator+(CText const& left, char const* right);
    friend FLOOR_EXPORT CText operator+(CText&& left, char const* right);
    friend FLOOR_EXPORT CText operator+(CText const& left, char right);
    friend FLOOR_EXPORT CText operator+(CText&& left, char right);
    friend FLOOR_EXPORT CText operator+(char left, CText const& right);
    friend FLOOR_EXPORT CText operator+(char left, CText&& right);

    friend FLOOR_EXPORT CText ToUpper(View const& text);
    friend FLOOR_EXPORT CText ToLower(View const& text);

private:
    explicit CText(std::string* owned) noexcept : m_pString(owned) {}

    std::string* m_pString;
};

FLOOR_EXPORT CText ToUpper(View const& text);
FLOOR_EXPORT CText ToLower(View const& text);
FLOOR_EXPORT std::vector<CText> StringSplit(View const& text, View const& separator);
FLOOR_EXPORT CText StringJoin(std::vector<CText> const& items, View const& separator);
FLOOR_EXPORT CText PluralNoun(unsigned long count, View const& singular, View const& plural);
} // namespace Floor
