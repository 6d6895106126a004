#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A text of exactly `bytes` bytes: `unit` again and again, and blanks to fill up.
inline std::string MakeText(std::size_t bytes, std::string const& unit = "The quick brown fox ")
{
    std::string text;
    text.reserve(bytes);
    while (text.size() + unit.size() <= bytes)
        text += unit;
    text.resize(bytes, ' ');
    return text;
}

inline std::string SizeName(std::size_t bytes)
{
    if (bytes >= 1024UL * 1024)
        return std::to_string(bytes / 1024 / 1024) + " MiB";
    if (bytes >= 1024)
        return std::to_string(bytes / 1024) + " KiB";
    return std::to_string(bytes) + " B";
}

/// `count` short words, as strings of any kind that is made from a pointer.
template <class String>
std::vector<String> MakeWords(std::size_t count)
{
    std::vector<String> words;
    words.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
        words.emplace_back(("word" + std::to_string(index)).c_str());
    return words;
}
