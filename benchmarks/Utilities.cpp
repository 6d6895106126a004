#include "FloorConversions.h"
#include "FloorText.h"
#include "Operations.h"
#include "Samples.h"

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/EncodingConversions.h>
#include <BaseUtilities/StringUtilities.h>

#include <QString>
#include <QStringList>

#include <absl/strings/ascii.h>
#include <absl/strings/str_join.h>
#include <absl/strings/str_split.h>

namespace
{
char const* const Area = "Utilities";

void AddCases(CCatalogue& catalogue, std::size_t size)
{
    std::string const text = MakeText(size);
    std::string const of = ", " + SizeName(size);
    int const blocks = size > 15 ? 2 : 1;

    catalogue.Add(Area, "ToUpper" + of)
        .Allocates(blocks)
        .Library([=] { return ToUpper(text); })
        .Floor([=] { return Floor::ToUpper(text); })
        .Peer("Abseil", [=] { return absl::AsciiStrToUpper(text); })
        .Peer("Qt", [=] { return QByteArray::fromStdString(text).toUpper(); });
    catalogue.Add(Area, "ToLower" + of)
        .Allocates(blocks)
        .Library([=] { return ToLower(text); })
        .Floor([=] { return Floor::ToLower(text); })
        .Peer("Abseil", [=] { return absl::AsciiStrToLower(text); });
}

void AddSplitAndJoin(CCatalogue& catalogue)
{
    constexpr std::size_t Count = 1000;
    auto const ours = MakeWords<CSafeString>(Count);
    auto const floors = MakeWords<Floor::CText>(Count);
    auto const standard = MakeWords<std::string>(Count);
    std::string const fields = absl::StrJoin(standard, ",");

    catalogue.Add(Area, "StringSplit 1000 fields")
        .Library([=] { return StringSplit(fields, ","); })
        .Floor([=] { return Floor::StringSplit(fields, ","); })
        .Peer("Abseil", [=] { return std::vector<std::string>(absl::StrSplit(fields, ',')); });
    catalogue.Add(Area, "StringJoin 1000 fields")
        .Library([=] { return StringJoin(ours, ","); })
        .Floor([=] { return Floor::StringJoin(floors, ","); })
        .Peer("Abseil", [=] { return absl::StrJoin(standard, ","); });
    catalogue.Add(Area, "PluralNoun")
        .Allocates(1)
        .Library([] { return PluralNoun(2, "test", ""); })
        .Floor([] { return Floor::PluralNoun(2, "test", ""); })
        .Peer("std", [word = std::string("test")] {
            std::string plural(word);
            plural += 's';
            return plural;
        });
}

void AddConversions(CCatalogue& catalogue, std::string const& script, std::string const& unit,
                    std::size_t size)
{
    std::string const utf8 = MakeText(size, unit);
    QString const units = QString::fromStdString(utf8);
    std::u16string const utf16 = units.toStdU16String();
    std::wstring const wide = units.toStdWString();
    std::string const of = ", " + script + ", " + SizeName(size);

    catalogue.Add("Conversions", "Utf8ToUtf16" + of)
        .Library([=] { return Utf8ToUtf16(utf8); })
        .Floor([=] { return Floor::Utf8ToUtf16(utf8); })
        .Peer("Qt", [=] { return QString::fromStdString(utf8).toStdU16String(); });
    catalogue.Add("Conversions", "Utf16ToUtf8" + of)
        .Library([=] { return Utf16ToUtf8(utf16); })
        .Floor([=] { return Floor::Utf16ToUtf8(utf16); })
        .Peer("Qt", [=] { return QString::fromStdU16String(utf16).toStdString(); });
    catalogue.Add("Conversions", "StdWStrToUtf8" + of)
        .Library([=] { return StdWStrToUtf8(wide); })
        .Floor([=] { return Floor::StdWStrToUtf8(wide); })
        .Peer("Qt", [=] { return QString::fromStdWString(wide).toStdString(); });
}
} // namespace

void AddUtilities(CCatalogue& catalogue)
{
    for (std::size_t const size : {16UL, 100UL, 1024UL, 1024UL * 1024})
        AddCases(catalogue, size);
    AddSplitAndJoin(catalogue);
}

void AddConversions(CCatalogue& catalogue)
{
    for (std::size_t const size : {16UL, 1024UL, 1024UL * 1024}) {
        AddConversions(catalogue, "ASCII", "The quick brown fox ", size);
        AddConversions(catalogue, "Latin", "Fjörd, crème, Öl ", size);
        AddConversions(catalogue, "CJK", "漢字仮名交じり文", size);
        AddConversions(catalogue, "emoji", "😀🚀🎉👍", size);
    }
    std::u16string const utf16 = u"a name of 19 units.";
    std::wstring const wide = L"a name of 19 units.";
    catalogue.Add("Conversions", "construct from UTF-16, 19 units")
        .Library([=] { return CSafeString(utf16); })
        .Floor([=] { return Floor::CText(utf16); });
    catalogue.Add("Conversions", "construct from wide, 19 units")
        .Library([=] { return CSafeString(wide); })
        .Floor([=] { return Floor::CText(wide); });
}
