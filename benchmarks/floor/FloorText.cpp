#include "FloorText.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

namespace Floor
{
namespace
{
int CompareBytes(std::string const& left, std::string_view right)
{
    return left.compare(right); // what the steps say, to the letter
}

// The temporary of exactly the needed room, and the copy which becomes the result.
std::string* NewConcatenation(std::string_view left, std::string_view right)
{
    std::string text;
    text.reserve(left.size() + right.size());
    text.append(left.data(), left.size());
    text.append(right.data(), right.size());
    return new std::string(text.data(), text.size());
}

template <class Integer>
std::string* NewNumber(Integer value)
{
    std::string const text = std::to_string(value);
    return new std::string(text.data(), text.size());
}
} // namespace

CText::CText(char const* text) : m_pString(new std::string(text == nullptr ? "" : text)) {}

CText::CText(View const& text) : m_pString(new std::string(text.data(), text.size())) {}

CText::CText(unsigned long count, char character) : m_pString(new std::string(count, character)) {}

CText::CText(CText const& other)
    : m_pString(new std::string(other.m_pString->data(), other.m_pString->size()))
{
}

CText::CText(CText&& other) noexcept : m_pString(std::exchange(other.m_pString, nullptr)) {}

CText& CText::operator=(CText const& other)
{
    if (this == &other)
        return *this;
    delete std::exchange(m_pString, nullptr);
    m_pString = new std::string(other.m_pString->data(), other.m_pString->size());
    return *this;
}

CText& CText::operator=(CText&& other) noexcept
{
    std::swap(m_pString, other.m_pString);
    return *this;
}

CText::~CText()
{
    delete m_pString;
}

void CText::set(View const& text)
{
    m_pString->assign(text.data(), text.size());
}

void CText::clear()
{
    m_pString->clear();
}

char const* CText::get() const noexcept
{
    return m_pString->data();
}

unsigned long CText::size() const noexcept
{
    return m_pString->size();
}

int CText::compare(View const& text) const
{
    return CompareBytes(*m_pString, {text.data(), text.size()});
}

CText CText::substr(unsigned long position, unsigned long count) const
{
    return CText(new std::string(m_pString->data() + position,
                                 std::min(count, m_pString->size() - position)));
}

CText& CText::operator+=(CText const& other)
{
    m_pString->append(other.m_pString->data());
    return *this;
}

CText& CText::operator+=(char const* text)
{
    m_pString->append(text);
    return *this;
}

CText& CText::operator+=(char character)
{
    m_pString->push_back(character);
    return *this;
}

CText& CText::operator+=(View const& text)
{
    m_pString->append(text.data(), text.size());
    return *this;
}

CText CText::do_join(std::vector<CText> const& items, View const& separator)
{
    CText const between(new std::string(separator.data(), separator.size()));
    CText result(new std::string);
    if (items.size() == 1) {
        result = items.front();
        return result;
    }
    char const* const separatorText = between.m_pString->data();
    std::size_t const separatorLength = std::strlen(separatorText);
    std::string& text = *result.m_pString;
    text.resize(text.capacity());
    char* end = text.data(); // of what is used
    std::size_t room = text.size();
    auto const append = [&](char const* from, std::size_t size) {
        if (size <= room) {
            end = static_cast<char*>(std::memcpy(end, from, size)) + size;
            room -= size;
            return;
        }
        text.resize(text.size() - room);
        text.append(from, size); // grows as it is promised to
        std::size_t const used = text.size();
        text.resize(std::min(text.capacity(), used + 4096));
        end = text.data() + used;
        room = text.size() - used;
    };
    for (CText const& item : items) {
        if (end != text.data())
            append(separatorText, separatorLength);
        char const* const itemText = item.m_pString->data();
        append(itemText, std::strlen(itemText));
    }
    text.resize(text.size() - room);
    return result;
}

CText CText::to_string(int value)
{
    return CText(NewNumber(value));
}

CText CText::to_string(unsigned long long value)
{
    return CText(NewNumber(value));
}

CText CText::to_string(double value)
{
    __attribute__((uninitialized)) char buffer[std::numeric_limits<double>::max_exponent10 + 20];
    // Volatile: a length that is none has to reach the string, which refuses it.
    int const volatile length = std::snprintf(buffer, sizeof buffer, "%f", value);
    std::string const text(buffer, static_cast<std::size_t>(length));
    return CText(new std::string(text.data(), text.size()));
}

bool operator==(CText const& left, CText const& right)
{
    std::size_t const size = left.m_pString->size();
    return size == right.m_pString->size()
           && std::memcmp(left.m_pString->data(), right.m_pString->data(), size) == 0;
}

bool Less(CText const& left, CText const& right)
{
    return CompareBytes(*left.m_pString, *right.m_pString) < 0;
}

CText operator+(CText const& left, CText const& right)
{
    return CText(NewConcatenation(*left.m_pString, *right.m_pString));
}

CText operator+(CText&& left, CText&& right)
{
    return CText(NewConcatenation(*left.m_pString, *right.m_pString));
}

CText operator+(CText&& left, CText const& right)
{
    return CText(NewConcatenation(*left.m_pString, *right.m_pString));
}

CText operator+(CText const& left, CText&& right)
{
    return CText(NewConcatenation(*left.m_pString, *right.m_pString));
}

[[gnu::flatten]] CText operator+(char const* left, CText const& right)
{
    CText const own(new std::string(left == nullptr ? "" : left));
    return CText(NewConcatenation(*own.m_pString, *right.m_pString));
}

CText operator+(char const* left, CText&& right)
{
    return CText(NewConcatenation(left, *right.m_pString));
}

CText operator+(CText const& left, char const* right)
{
    return CText(NewConcatenation(*left.m_pString, right));
}

CText operator+(CText&& left, char const* right)
{
    return CText(NewConcatenation(*left.m_pString, right));
}

CText operator+(CText const& left, char right)
{
    return CText(NewConcatenation(*left.m_pString, {&right, 1}));
}

CText operator+(CText&& left, char right)
{
    return CText(NewConcatenation(*left.m_pString, {&right, 1}));
}

CText operator+(char left, CText const& right)
{
    std::string text(right.m_pString->data());
    text.insert(text.begin(), left);
    return CText(new std::string(text.data(), text.size()));
}

CText operator+(char left, CText&& right)
{
    return CText(NewConcatenation({&left, 1}, *right.m_pString));
}
} // namespace Floor
