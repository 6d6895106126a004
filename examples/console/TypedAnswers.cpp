#include "TypedAnswers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <numeric>
#include <set>

namespace
{
constexpr std::string_view blanks = " \t";

std::string_view Trimmed(std::string_view text)
{
    std::size_t const first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// The next part between blanks and commas, which leaves the text.
std::string_view TakeWord(std::string_view& text)
{
    constexpr std::string_view separators = " \t,";
    text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
    std::string_view const word = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(word.size());
    return word;
}

// "3" or "3-5", within 1 and `count`.
bool AddRange(std::string_view word, std::size_t count, std::set<std::int32_t>& chosen)
{
    std::size_t const dash = word.find('-');
    std::optional<std::uintptr_t> const first = TypedNumber(word.substr(0, dash), 10);
    std::optional<std::uintptr_t> const last =
        dash == std::string_view::npos ? first : TypedNumber(word.substr(dash + 1), 10);
    if (!first || !last || *first < 1 || *first > *last || *last > count)
        return false;
    for (std::uintptr_t number = *first; number <= *last; ++number)
        chosen.insert(static_cast<std::int32_t>(number - 1));
    return true;
}
} // namespace

std::optional<std::uintptr_t> TypedNumber(std::string_view text, int base)
{
    text = Trimmed(text);
    bool const prefixed = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    if (base == 16 && prefixed)
        text.remove_prefix(2);
    std::uintptr_t number = 0;
    char const* const begin = text.data();
    char const* const end = begin + text.size();
    auto const [stop, error] = std::from_chars(begin, end, number, base);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

std::string NumberText(std::uintptr_t number, int base)
{
    std::array<char, 64> digits{}; // enough in base 2
    auto const [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, base);
    std::string text(digits.data(), error == std::errc() ? end : digits.data());
    std::transform(text.begin(), text.end(), text.begin(), [](char digit) {
        return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
    });
    return text;
}

std::optional<std::vector<std::int32_t>> TypedItems(std::string_view text, std::size_t count)
{
    std::string_view const whole = Trimmed(text);
    std::vector<std::int32_t> items;
    if (whole == "none")
        return items;
    if (whole == "all") {
        items.resize(count);
        std::iota(items.begin(), items.end(), 0);
        return items;
    }
    std::set<std::int32_t> chosen;
    while (!Trimmed(text).empty())
        if (std::string_view const word = TakeWord(text); !AddRange(word, count, chosen))
            return std::nullopt;
    if (chosen.empty())
        return std::nullopt;
    items.assign(chosen.begin(), chosen.end());
    return items;
}

std::filesystem::path TypedPath(std::string const& text, std::filesystem::path const& folder)
{
    std::filesystem::path path = folder / text;
    char const* const home = std::getenv("HOME");
    if (home != nullptr && (text == "~" || text.rfind("~/", 0) == 0))
        path = std::filesystem::path(home) / text.substr(std::min<std::size_t>(2, text.size()));
    path = path.lexically_normal();
    return path.has_filename() ? path : path.parent_path(); // without a slash at its end
}
