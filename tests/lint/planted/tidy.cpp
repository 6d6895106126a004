// Planted for script/lint, which trusts clang-tidy only once it has found this.
//
// Must be reported: bugprone-use-after-move
// Must be reported: clang-analyzer-core.NullDereference

#include <string>
#include <utility>

std::string::size_type AskTheMovedFrom(std::string& target, std::string text)
{
    target = std::move(text);
    return text.size();
}

int ReadNothing(int const* pointer)
{
    return pointer == nullptr ? *pointer : 0;
}
