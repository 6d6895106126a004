#include "FloorText.h"
#include "Operations.h"
#include "Samples.h"

#include <BaseUtilities/CSafeString.h>

#include <QString>

#include <absl/strings/str_cat.h>
#include <absl/strings/str_join.h>
#include <absl/strings/string_view.h>
#include <fmt/format.h>

#include <charconv>
#include <functional>
#include <utility>

namespace
{
char const* const Area = "Strings";

// Blocks of a string on the heap: the string itself, and its text when that does not fit inside.
int Blocks(std::size_t size)
{
    return size > 15 ? 2 : 1;
}

void AddLifeCycle(CCatalogue& catalogue, std::size_t size)
{
    std::string const text = MakeText(size);
    std::string const of = ", " + SizeName(size);
    int const blocks = Blocks(size);

    catalogue.Add(Area, "construct" + of)
        .Allocates(blocks)
        .Library([=] { return CSafeString(text); })
        .Floor([=] { return Floor::CText(text); })
        .Peer("std", [=] { return std::string(text.data(), text.size()); })
        .Peer("Qt", [=] { return QByteArray(text.data(), static_cast<qsizetype>(text.size())); });

    CSafeString const ours(text);
    Floor::CText const floors(text);
    catalogue.Add(Area, "copy" + of)
        .Allocates(blocks)
        .Library([=] { return CSafeString(ours); })
        .Floor([=] { return Floor::CText(floors); })
        .Peer("std", [=] { return std::string(text); });
    catalogue.Add(Area, "assign a copy" + of)
        .Allocates(blocks)
        .Library([ =, to = ours ]() mutable -> auto& { return to = ours; })
        .Floor([ =, to = floors ]() mutable -> auto& { return to = floors; })
        .Peer(
            "std", [ =, to = text ]() mutable -> auto& { return to = text; });
    catalogue.Add(Area, "set in place" + of)
        .Allocates(0)
        .Library([ =, to = ours ]() mutable -> auto& { return to.set(text), to; })
        .Floor([ =, to = floors ]() mutable -> auto& { return to.set(text), to; })
        .Peer(
            "std", [ =, to = text ]() mutable -> auto& { return to.assign(text); });
}

void AddMoves(CCatalogue& catalogue)
{
    std::string const text = MakeText(100);
    CSafeString const ours(text);
    Floor::CText const floors(text);

    catalogue.Add(Area, "move there and back")
        .Allocates(0)
        .Library([from = ours]() mutable -> auto& {
            CSafeString to(std::move(from));
            return from = std::move(to);
        })
        .Floor([from = floors]() mutable -> auto& {
            Floor::CText to(std::move(from));
            return from = std::move(to);
        })
        .Peer(
            "std", [from = text]() mutable -> auto& {
                std::string to(std::move(from));
                return from = std::move(to);
            });
    catalogue.Add(Area, "size and first character")
        .Allocates(0)
        .Library([=] { return ours.size() + static_cast<unsigned char>(*ours.get()); })
        .Floor([=] { return floors.size() + static_cast<unsigned char>(*floors.get()); });
}

void AddComparisons(CCatalogue& catalogue, std::size_t size)
{
    std::string const text = MakeText(size);
    std::string const other = text.substr(0, size - 1) + "~";
    std::string const of = ", " + SizeName(size);
    CSafeString const ours(text);
    CSafeString const ourEqual(text);
    CSafeString const ourOther(other);
    Floor::CText const floors(text);
    Floor::CText const floorEqual(text);
    Floor::CText const floorOther(other);
    std::string const equal = text;

    catalogue.Add(Area, "compare" + of)
        .Allocates(0)
        .Library([=] { return ours.compare(other) < 0; })
        .Floor([=] { return floors.compare(other) < 0; })
        .Peer("std", [=] { return text.compare(other) < 0; });
    catalogue.Add(Area, "==" + of)
        .Allocates(0)
        .Library([=] { return ours == ourEqual; })
        .Floor([=] { return floors == floorEqual; })
        .Peer("std", [=] { return text == equal; });
    catalogue.Add(Area, "std::less" + of)
        .Allocates(0)
        .Library([=] { return std::less<CSafeString>()(ours, ourOther); })
        .Floor([=] { return Less(floors, floorOther); })
        .Peer("std", [=] { return std::less<std::string>()(text, other); });
}

void AddSlices(CCatalogue& catalogue, std::size_t size)
{
    std::string const text = MakeText(2 * size);
    CSafeString const ours(text);
    Floor::CText const floors(text);
    std::size_t const start = size / 2;

    catalogue.Add(Area, "substr, " + SizeName(size))
        .Allocates(Blocks(size))
        .Library([=] { return ours.substr(start, size); })
        .Floor([=] { return floors.substr(start, size); })
        .Peer("std", [=] { return text.substr(start, size); });
}

template <class String, class View>
auto Appending(View piece)
{
    constexpr unsigned long Room = 4096; // from the beginning, and never more
    return [ =, to = String(Room, ' ') ]() mutable -> auto&
    {
        if (to.size() + 16 > Room)
            to.clear();
        return to += piece;
    };
}

void AddAppends(CCatalogue& catalogue)
{
    static std::string const piece = "a piece of text"; // the pointer must last
    catalogue.Add(Area, "append 15 B in place")
        .Allocates(0)
        .Library(Appending<CSafeString>(basic_sv_wrapper<char>("a piece of text")))
        .Floor(Appending<Floor::CText>(Floor::View("a piece of text")))
        .Peer("std", Appending<std::string>(piece));
    catalogue.Add(Area, "append a pointer in place")
        .Allocates(0)
        .Library(Appending<CSafeString>(piece.c_str()))
        .Floor(Appending<Floor::CText>(piece.c_str()))
        .Peer("std", Appending<std::string>(piece.c_str()));
    catalogue.Add(Area, "append a string in place")
        .Allocates(0)
        .Library(Appending<CSafeString>(CSafeString(piece)))
        .Floor(Appending<Floor::CText>(Floor::CText(piece)))
        .Peer("std", Appending<std::string>(piece));
    catalogue.Add(Area, "append a character in place")
        .Allocates(0)
        .Library(Appending<CSafeString>('x'))
        .Floor(Appending<Floor::CText>('x'))
        .Peer("std", Appending<std::string>('x'));
}

void AddConcatenations(CCatalogue& catalogue, std::size_t half)
{
    std::string const text = MakeText(half);
    std::string const of = ", " + SizeName(2 * half);
    std::size_t const sum = 2 * half;
    int const temporary = sum > 15 ? 1 : 0; // of exactly the room needed
    int const blocks = temporary + Blocks(sum);
    CSafeString const o(text);
    Floor::CText const f(text);

    catalogue.Add(Area, "string + string" + of)
        .Allocates(blocks)
        .Library([=] { return o + o; })
        .Floor([=] { return f + f; })
        .Peer("std", [=] { return text + text; })
        .Peer("Abseil", [=] { return absl::StrCat(text, text); });
    catalogue.Add(Area, "string&& + string&&" + of)
        .Allocates(blocks)
        .Library([o = o]() mutable { return std::move(o) + std::move(o); })
        .Floor([f = f]() mutable { return std::move(f) + std::move(f); });
    catalogue.Add(Area, "pointer + string" + of)
        .Allocates(blocks + Blocks(half))
        .Library([=] { return text.c_str() + o; })
        .Floor([=] { return text.c_str() + f; })
        .Peer("std", [=] { return text.c_str() + text; });
    catalogue.Add(Area, "string + pointer" + of)
        .Allocates(blocks)
        .Library([=] { return o + text.c_str(); })
        .Floor([=] { return f + text.c_str(); })
        .Peer("std", [=] { return text + text.c_str(); });
}

// Operands which are temporaries by type only: no form takes anything from them.
template <class String>
String&& AsTemporary(String& text)
{
    return std::move(text);
}

void AddOtherConcatenations(CCatalogue& catalogue)
{
    std::string const text = "ten bytes!";
    CSafeString const o(text);
    Floor::CText const f(text);

    catalogue.Add(Area, "string&& + string, 20 B")
        .Allocates(3)
        .Library([=, t = o]() mutable { return AsTemporary(t) + o; })
        .Floor([=, t = f]() mutable { return AsTemporary(t) + f; });
    catalogue.Add(Area, "string + string&&, 20 B")
        .Allocates(3)
        .Library([=, t = o]() mutable { return o + AsTemporary(t); })
        .Floor([=, t = f]() mutable { return f + AsTemporary(t); });
    catalogue.Add(Area, "pointer + string&&, 20 B")
        .Allocates(3)
        .Library([=, t = o]() mutable { return text.c_str() + AsTemporary(t); })
        .Floor([=, t = f]() mutable { return text.c_str() + AsTemporary(t); });
    catalogue.Add(Area, "string&& + pointer, 20 B")
        .Allocates(3)
        .Library([=, t = o]() mutable { return AsTemporary(t) + text.c_str(); })
        .Floor([=, t = f]() mutable { return AsTemporary(t) + text.c_str(); });
    catalogue.Add(Area, "string + character, 11 B")
        .Allocates(1)
        .Library([=] { return o + 'x'; })
        .Floor([=] { return f + 'x'; })
        .Peer("std", [=] { return text + 'x'; });
    catalogue.Add(Area, "string&& + character, 11 B")
        .Allocates(1)
        .Library([=, t = o]() mutable { return AsTemporary(t) + 'x'; })
        .Floor([=, t = f]() mutable { return AsTemporary(t) + 'x'; });
    catalogue.Add(Area, "character + string, 11 B")
        .Allocates(1)
        .Library([=] { return 'x' + o; })
        .Floor([=] { return 'x' + f; })
        .Peer("std", [=] { return 'x' + text; });
    catalogue.Add(Area, "character + string&&, 11 B")
        .Allocates(1)
        .Library([=, t = o]() mutable { return 'x' + AsTemporary(t); })
        .Floor([=, t = f]() mutable { return 'x' + AsTemporary(t); });
}

void AddJoin(CCatalogue& catalogue, std::size_t count)
{
    auto const ours = MakeWords<CSafeString>(count);
    auto const floors = MakeWords<Floor::CText>(count);
    auto const standard = MakeWords<std::string>(count);

    catalogue.Add(Area, "do_join " + std::to_string(count) + " items")
        .Library([=] { return CSafeString::do_join(ours, ", "); })
        .Floor([=] { return Floor::CText::do_join(floors, ", "); })
        .Peer("Abseil", [=] { return absl::StrJoin(standard, ", "); })
        .Peer("fmt", [=] { return fmt::format("{}", fmt::join(standard, ", ")); });
}

template <class Number>
void AddNumber(CCatalogue& catalogue, char const* name, Number value, int allocations)
{
    catalogue.Add(Area, std::string("to_string, ") + name)
        .Allocates(allocations)
        .Library([=] { return CSafeString::to_string(value); })
        .Floor([=] { return Floor::CText::to_string(value); })
        .Peer("std", [=] { return std::to_string(value); })
        .Peer("fmt", [=] {
            if constexpr (std::is_floating_point_v<Number>)
                return fmt::format("{:f}", value);
            else
                return fmt::to_string(value);
        });
}
} // namespace

void AddStrings(CCatalogue& catalogue)
{
    for (std::size_t const size : {8UL, 100UL, 1024UL, 1024UL * 1024})
        AddLifeCycle(catalogue, size);
    AddMoves(catalogue);
    for (std::size_t const size : {8UL, 1024UL}) {
        AddComparisons(catalogue, size);
        AddSlices(catalogue, size);
    }
    AddAppends(catalogue);
    for (std::size_t const half : {7UL, 10UL, 512UL})
        AddConcatenations(catalogue, half);
    AddOtherConcatenations(catalogue);
    AddJoin(catalogue, 10);
    AddJoin(catalogue, 1000);
    AddNumber(catalogue, "one digit", 7, 1);
    AddNumber(catalogue, "int", -1234567, 1);
    AddNumber(catalogue, "20 digits", 18446744073709551615ULL, 3);
    AddNumber(catalogue, "double", 3.25, 1);
}
