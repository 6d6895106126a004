#include <BaseUtilities/CSafeString.h>

#include <string>
#include <string_view>
#include <utility>

namespace
{
std::string_view WholeText(CSafeString const& text)
{
    return {text.get(), text.size()};
}

// Flattened: small texts are made in the time of the calls that this saves.
[[gnu::flatten]] CSafeString Concatenate(std::string_view left, std::string_view right)
{
    std::string text;
    text.reserve(left.size() + right.size());
    text.append(left);
    text.append(right);
    return basic_sv_wrapper<char>(text);
}
} // namespace

CSafeString operator+(CSafeString const& left, CSafeString const& right)
{
    return Concatenate(WholeText(left), WholeText(right));
}

CSafeString operator+(CSafeString&& left, CSafeString&& right)
{
    return Concatenate(WholeText(left), WholeText(right));
}

CSafeString operator+(CSafeString&& left, CSafeString const& right)
{
    return Concatenate(WholeText(left), WholeText(right));
}

CSafeString operator+(CSafeString const& left, CSafeString&& right)
{
    return Concatenate(WholeText(left), WholeText(right));
}

[[gnu::flatten]] CSafeString operator+(char const* left, CSafeString const& right)
{
    return CSafeString(left) + right;
}

CSafeString operator+(char const* left, CSafeString&& right)
{
    return Concatenate(left, WholeText(right));
}

CSafeString operator+(CSafeString const& left, char const* right)
{
    return Concatenate(WholeText(left), right);
}

CSafeString operator+(CSafeString&& left, char const* right)
{
    return std::as_const(left) + right;
}

CSafeString operator+(CSafeString const& left, char right)
{
    return Concatenate(WholeText(left), {&right, 1});
}

CSafeString operator+(CSafeString&& left, char right)
{
    return std::as_const(left) + right;
}

[[gnu::flatten]] CSafeString operator+(char left, CSafeString const& right)
{
    std::string text(right.get());
    text.insert(text.begin(), left);
    return basic_sv_wrapper<char>(text);
}

CSafeString operator+(char left, CSafeString&& right)
{
    return Concatenate({&left, 1}, WholeText(right));
}
