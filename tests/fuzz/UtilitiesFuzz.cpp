// Splitting and joining against Qt, and against a search for bytes where the text is plain; letter
// case and word forms against the C library and the rule.

#include "Fuzz.h"

#include <BaseUtilities/StringUtilities.h>

#include <QString>
#include <QStringList>

#include <cctype>
#include <vector>

namespace
{
using View = basic_sv_wrapper<char>;

QString ToQString(std::string const& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The parts one after the other, each up to its first NUL and with its length.
std::string Listed(std::vector<std::string> const& parts)
{
    std::string list;
    for (std::string const& part : parts)
        list += std::to_string(std::strlen(part.c_str())) + ':' + part.c_str() + ' ';
    return list;
}

bool IsPlainUtf8(std::string const& text)
{
    return text.find('\0') == std::string::npos && ToQString(text).toUtf8().toStdString() == text;
}

std::vector<std::string> SplitBytes(std::string const& text, std::string const& separator)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(separator, start)) != std::string::npos;
         start = end + separator.size())
        parts.push_back(text.substr(start, end - start));
    parts.push_back(text.substr(start));
    return parts;
}

// Planted defect: empty parts are left out.
void Split(CFuzzInput& input)
{
    std::string const separator = input.Text().substr(0, input.Choice(4));
    std::string const text = input.Text();
    std::vector<std::string> parts;
    for (CSafeString const& part : StringSplit(View(text), View(separator)))
        parts.emplace_back(part.get(), part.size());

    std::vector<std::string> expected;
    auto const behavior = IsDefectPlanted() ? Qt::SkipEmptyParts : Qt::KeepEmptyParts;
    for (QString const& part : ToQString(text).split(ToQString(separator), behavior))
        expected.push_back(part.toUtf8().toStdString());
    ExpectSame("split", Listed(parts), Listed(expected));
    if (!separator.empty() && IsPlainUtf8(text) && IsPlainUtf8(separator))
        ExpectSame("split of bytes", Listed(parts), Listed(SplitBytes(text, separator)));
}

void Join(CFuzzInput& input)
{
    std::string const separator = input.Text();
    std::vector<CSafeString> items;
    QStringList list;
    for (std::size_t left = input.Choice(8); left > 0; --left) {
        std::string const item = input.Text();
        items.emplace_back(View(item));
        list.append(QString::fromUtf8(item.c_str()));
    }
    std::string const expected = list.join(ToQString(separator)).toUtf8().toStdString();
    CSafeString const joined = StringJoin(items, View(separator));
    ExpectSame("join", std::string(joined.get(), joined.size()), expected.c_str());
}

void ChangeCase(CFuzzInput& input)
{
    std::string const text = input.Text();
    std::string upper = text;
    std::string lower = text;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const byte = static_cast<unsigned char>(text[i]);
        upper[i] = static_cast<char>(std::toupper(byte));
        lower[i] = static_cast<char>(std::tolower(byte));
    }
    CSafeString const ours = ToUpper(View(text));
    ExpectSame("upper case", std::string(ours.get(), ours.size()), upper);
    CSafeString const other = ToLower(View(text));
    ExpectSame("lower case", std::string(other.get(), other.size()), lower);
}

void FormWords(CFuzzInput& input)
{
    auto const count = input.Flag() ? input.Take<std::size_t>() : input.Choice(3);
    std::string const singular = input.Text();
    std::string const plural = input.Text();
    // A plural is handed on as a view of a view, and so keeps what a string would end at.
    bool const given = !plural.empty();
    CSafeString const noun = PluralNoun(count, View(singular), View(plural));
    ExpectSame("noun", std::string(noun.get(), noun.size()),
               given ? plural : singular + (count == 1 ? "" : "s"));
    CSafeString const verb = PluralVerb(count, View(singular), View(plural));
    ExpectSame("verb", std::string(verb.get(), verb.size()),
               given ? plural : singular + (count == 1 ? "s" : ""));
}

void (*const Checks[])(CFuzzInput&) = {Split, Join, ChangeCase, FormWords};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t count)
{
    CFuzzInput input(bytes, count);
    while (!input.IsUsedUp())
        Checks[input.Choice(std::size(Checks))](input);
    return 0;
}
