#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// The bytes of one run, taken from the front as a target needs them. Once they are used up, every
/// further value is 0 and every further text empty.
class CFuzzInput
{
public:
    CFuzzInput(std::uint8_t const* bytes, std::size_t count)
        : m_Left(reinterpret_cast<char const*>(bytes), count)
    {
    }

    bool IsUsedUp() const { return m_Left.empty(); }

    /// A number of any type that is copied byte by byte.
    template <class Number>
    Number Take()
    {
        Number value{};
        std::string_view const bytes = Bytes(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    /// One of `count` alternatives.
    std::size_t Choice(std::size_t count) { return Take<std::uint8_t>() % count; }
    bool Flag() { return Choice(2) == 1; }
    /// A text of any bytes, preceded by its length; at most 255 of them.
    std::string Text() { return std::string(Bytes(Take<std::uint8_t>())); }
    /// All that is left.
    std::string Rest() { return std::string(Bytes(m_Left.size())); }

private:
    std::string_view Bytes(std::size_t count)
    {
        std::string_view const bytes = m_Left.substr(0, std::min(count, m_Left.size()));
        m_Left.remove_prefix(bytes.size());
        return bytes;
    }

    std::string_view m_Left;
};

/// Ends the process, and says what differs, where the library and its oracle do not agree.
void ExpectSame(char const* what, std::string_view library, std::string_view oracle);
void ExpectSame(char const* what, long long library, long long oracle);

/// Whether the oracle is to be wrong in one thing, to show that the target would notice. Each
/// target says beside its use what it then gets wrong.
bool IsDefectPlanted();

/// What is called with every input.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count);
