// The operations of CSafeString, one after the other, against those of std::string.

#include "Fuzz.h"

#include <BaseUtilities/CSafeString.h>

#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

namespace
{
using View = basic_sv_wrapper<char>;

struct CPair
{
    CSafeString m_Text;
    std::string m_Oracle;
};

std::string Bytes(CSafeString const& text)
{
    return {text.get(), text.size()};
}

// What is left of a text that passes through a NUL-terminated one.
std::string UpToNul(std::string const& text)
{
    return text.c_str();
}

// Whether the operation throws std::out_of_range.
template <class Operation>
bool IsRefused(Operation operation)
{
    try {
        operation();
    } catch (std::out_of_range const&) {
        return true;
    }
    return false;
}

void Set(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    pair.m_Text.set(View(text));
    pair.m_Oracle = text;
}

void SetToPartOfItself(CFuzzInput& input, CPair& pair)
{
    std::size_t const start = input.Choice(pair.m_Oracle.size() + 1);
    std::size_t const count = input.Choice(pair.m_Oracle.size() - start + 1);
    pair.m_Text.set(View(pair.m_Text.get() + start, count));
    pair.m_Oracle = pair.m_Oracle.substr(start, count);
}

void Clear(CFuzzInput&, CPair& pair)
{
    pair.m_Text.clear();
    pair.m_Oracle.clear();
}

// Planted defect: NULs of the appended text are kept.
void AddSafeString(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    pair.m_Text += CSafeString(View(text));
    pair.m_Oracle += IsDefectPlanted() ? text : UpToNul(text);
}

void AddPointer(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    if (input.Flag())
        pair.m_Text += text.c_str();
    else
        pair.m_Text.append(text.c_str());
    pair.m_Oracle += UpToNul(text);
}

void AddCharacter(CFuzzInput& input, CPair& pair)
{
    char const character = input.Take<char>();
    pair.m_Text += character;
    pair.m_Oracle += character;
}

void AddView(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    if (input.Flag())
        pair.m_Text += View(text);
    else
        pair.m_Text.append(View(text));
    pair.m_Oracle += text;
}

void AddItself(CFuzzInput& input, CPair& pair)
{
    if (input.Flag()) {
        pair.m_Text += pair.m_Text;
        pair.m_Oracle += UpToNul(pair.m_Oracle);
    } else {
        pair.m_Text.append(View(pair.m_Text.get(), pair.m_Text.size()));
        pair.m_Oracle += std::string(pair.m_Oracle);
    }
}

void AppendPart(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    std::size_t const start = input.Choice(256);
    std::size_t const count = input.Choice(256);
    bool const refused = IsRefused([&] { pair.m_Text.append(View(text), start, count); });
    ExpectSame("refused append", refused,
               IsRefused([&] { pair.m_Oracle.append(text, start, count); }));
}

void AppendCounted(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    std::size_t const count = input.Choice(text.size() + 1);
    pair.m_Text.append(text.data(), count);
    pair.m_Oracle.append(text.data(), count);
}

void AppendCopies(CFuzzInput& input, CPair& pair)
{
    std::size_t const count = input.Choice(256);
    char const character = input.Take<char>();
    pair.m_Text.append(count, character);
    pair.m_Oracle.append(count, character);
}

void AppendList(CFuzzInput& input, CPair& pair)
{
    char const one = input.Take<char>();
    char const other = input.Take<char>();
    if (input.Flag())
        pair.m_Text.append({one, other, one});
    else
        pair.m_Text += {one, other, one};
    pair.m_Oracle.append({one, other, one});
}

void ConcatenateStrings(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    CSafeString const right{View(text)};
    switch (input.Choice(4)) {
    case 0:
        pair.m_Text = pair.m_Text + right;
        break;
    case 1:
        pair.m_Text = CSafeString(pair.m_Text) + right;
        break;
    case 2:
        pair.m_Text = pair.m_Text + CSafeString(right);
        break;
    default:
        pair.m_Text = CSafeString(pair.m_Text) + CSafeString(right);
    }
    pair.m_Oracle = pair.m_Oracle + text;
}

void ConcatenatePointers(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    switch (input.Choice(4)) {
    case 0:
        pair.m_Text = pair.m_Text + text.c_str();
        pair.m_Oracle = pair.m_Oracle + text.c_str();
        break;
    case 1:
        pair.m_Text = CSafeString(pair.m_Text) + text.c_str();
        pair.m_Oracle = pair.m_Oracle + text.c_str();
        break;
    case 2:
        pair.m_Text = text.c_str() + pair.m_Text;
        pair.m_Oracle = text.c_str() + pair.m_Oracle;
        break;
    default:
        pair.m_Text = text.c_str() + CSafeString(pair.m_Text);
        pair.m_Oracle = text.c_str() + pair.m_Oracle;
    }
}

void ConcatenateCharacters(CFuzzInput& input, CPair& pair)
{
    char const character = input.Take<char>();
    switch (input.Choice(4)) {
    case 0:
        pair.m_Text = pair.m_Text + character;
        pair.m_Oracle = pair.m_Oracle + character;
        break;
    case 1:
        pair.m_Text = CSafeString(pair.m_Text) + character;
        pair.m_Oracle = pair.m_Oracle + character;
        break;
    case 2: // the one form that reads its string up to the first NUL
        pair.m_Text = character + pair.m_Text;
        pair.m_Oracle = character + UpToNul(pair.m_Oracle);
        break;
    default:
        pair.m_Text = character + CSafeString(pair.m_Text);
        pair.m_Oracle = character + pair.m_Oracle;
    }
}

void TakePart(CFuzzInput& input, CPair& pair)
{
    std::size_t const start = input.Take<std::uint16_t>();
    std::size_t const count = input.Take<std::size_t>();
    bool const refused = IsRefused([&] { pair.m_Text = pair.m_Text.substr(start, count); });
    ExpectSame("refused substr", refused,
               IsRefused([&] { pair.m_Oracle = pair.m_Oracle.substr(start, count); }));
}

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

void Compare(CFuzzInput& input, CPair& pair)
{
    std::string const text = input.Text();
    std::string const seen = UpToNul(pair.m_Oracle); // as a view shows the string
    CSafeString const other{View(text)};
    ExpectSame("compare", Sign(pair.m_Text.compare(View(text))), Sign(pair.m_Oracle.compare(text)));
    ExpectSame("==", pair.m_Text == other, pair.m_Oracle == text);
    ExpectSame("!=", pair.m_Text != other, pair.m_Oracle != text);
    ExpectSame("== pointer", pair.m_Text == text.c_str(), pair.m_Oracle == UpToNul(text));
    ExpectSame("pointer !=", text.c_str() != pair.m_Text, pair.m_Oracle != UpToNul(text));
    ExpectSame("== view", pair.m_Text == View(text), seen == text);
    ExpectSame("view !=", View(text) != pair.m_Text, seen != text);
    ExpectSame("less", std::less<CSafeString>()(pair.m_Text, other), pair.m_Oracle < text);
}

void CopyAndMove(CFuzzInput& input, CPair& pair)
{
    CSafeString other(View(input.Text()));
    CSafeString const before = other;
    other = std::move(pair.m_Text); // exchanges the two
    ExpectSame("move assignment", Bytes(other), pair.m_Oracle);
    ExpectSame("the other of it", Bytes(pair.m_Text), Bytes(before));
    CSafeString moved(std::move(other));
    pair.m_Text = moved;
    moved += 'x';
}

void WriteCharacters(CFuzzInput& input, CPair& pair)
{
    if (pair.m_Oracle.empty())
        return;
    std::size_t const position = input.Choice(pair.m_Oracle.size());
    pair.m_Text[position] = pair.m_Oracle[position] = input.Take<char>();
    pair.m_Text.front() = pair.m_Oracle.front() = input.Take<char>();
    pair.m_Text.back() = pair.m_Oracle.back() = input.Take<char>();
}

// The rule of the separator: none before anything is there.
std::string Joined(std::vector<std::string> const& items, std::string const& separator)
{
    if (items.size() == 1)
        return items.front();
    std::string joined;
    for (std::string const& item : items)
        joined += (joined.empty() ? "" : UpToNul(separator)) + UpToNul(item);
    return joined;
}

void Join(CFuzzInput& input, CPair& pair)
{
    std::vector<std::string> items(input.Choice(6));
    for (std::string& item : items)
        item = input.Text();
    std::vector<CSafeString> safe;
    for (std::string const& item : items)
        safe.emplace_back(View(item));
    if (input.Flag()) {
        std::string const separator = input.Text();
        ExpectSame("join", Bytes(pair.m_Text.join(safe, View(separator))),
                   Joined(items, separator));
        pair.m_Oracle = Joined(items, separator);
    } else {
        std::string const separator(1, input.Take<char>());
        ExpectSame("do_join", Bytes(CSafeString::do_join(safe, separator.front())),
                   Joined(items, separator));
        pair.m_Text = CSafeString(safe, separator.front());
        pair.m_Oracle = Joined(items, separator);
    }
}

void (*const Operations[])(CFuzzInput&, CPair&) = {
    Set,           SetToPartOfItself,  Clear,
    AddSafeString, AddPointer,         AddCharacter,
    AddView,       AddItself,          AppendPart,
    AppendCounted, AppendCopies,       AppendList,
    TakePart,      ConcatenateStrings, ConcatenatePointers,
    Compare,       CopyAndMove,        ConcatenateCharacters,
    Join,          WriteCharacters,
};

void ExpectSameText(CPair& pair)
{
    ExpectSame("size", static_cast<long long>(pair.m_Text.size()),
               static_cast<long long>(pair.m_Oracle.size()));
    ExpectSame("text", Bytes(pair.m_Text), pair.m_Oracle);
    ExpectSame("terminator", pair.m_Text.get()[pair.m_Oracle.size()], '\0');
    ExpectSame("empty", pair.m_Text.empty(), pair.m_Oracle.empty());
    ExpectSame("forward", std::string(pair.m_Text.begin(), pair.m_Text.end()), pair.m_Oracle);
    ExpectSame("backward", std::string(pair.m_Text.crbegin(), pair.m_Text.crend()),
               std::string(pair.m_Oracle.rbegin(), pair.m_Oracle.rend()));
    ExpectSame("view", std::string_view(View(pair.m_Text)), UpToNul(pair.m_Oracle));
    ExpectSame("path", pair.m_Text.to_path().native(), pair.m_Oracle);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    CPair pair;
    while (!input.IsUsedUp()) {
        Operations[input.Choice(std::size(Operations))](input, pair);
        ExpectSameText(pair);
        if (pair.m_Oracle.size() > 4096)
            Clear(input, pair);
    }
    return 0;
}
