#include "FloorConversions.h"
#include "FloorText.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <cstring>

#include <langinfo.h>

namespace Floor
{
namespace
{
using Table = std::array<std::int32_t, 256>;

// The letters from `first` to `last` exchanged for those of the other case, all else as it is.
constexpr Table MakeAsciiTable(int first, int last)
{
    Table table{};
    for (int byte = 0; byte < 256; ++byte)
        table[static_cast<std::size_t>(byte)] = byte >= first && byte <= last ? byte ^ 0x20 : byte;
    return table;
}

constexpr Table AsciiUpper = MakeAsciiTable('a', 'z');
constexpr Table AsciiLower = MakeAsciiTable('A', 'Z');
constexpr std::size_t WorthAComparison = 64; // bytes of text

void Convert(std::string& text, nl_item item, Table const& ascii, char first)
{
    void const* const current = nl_langinfo(item); // what toupper reads in this thread's locale
    std::int32_t const* const table = static_cast<std::int32_t const*>(current) + 128;
    if (text.size() >= WorthAComparison && std::memcmp(table, ascii.data(), sizeof(Table)) == 0) {
        for (char& byte : text) // plain arithmetic, for the compiler to make vectors of
            byte = static_cast<char>(byte ^ (static_cast<unsigned char>(byte - first) < 26) << 5);
        return;
    }
    for (char& byte : text)
        byte = static_cast<char>(table[static_cast<unsigned char>(byte)]);
}

QString ToQString(View const& text)
{
    std::string const own(text.data(), text.size());
    return QString::fromUtf8(own.data(), static_cast<qsizetype>(own.size()));
}
} // namespace

CText ToUpper(View const& text)
{
    CText result(new std::string(text.data(), text.size()));
    Convert(*result.m_pString, _NL_CTYPE_TOUPPER, AsciiUpper, 'a');
    return result;
}

CText ToLower(View const& text)
{
    CText result(new std::string(text.data(), text.size()));
    Convert(*result.m_pString, _NL_CTYPE_TOLOWER, AsciiLower, 'A');
    return result;
}

std::vector<CText> StringSplit(View const& text, View const& separator)
{
    QString const between =
        QString::fromUtf8(separator.data(), static_cast<qsizetype>(separator.size()));
    QStringList const parts = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
                                  .split(between, Qt::KeepEmptyParts, Qt::CaseSensitive);
    std::vector<CText> result;
    result.reserve(static_cast<std::size_t>(parts.size()));
    for (QString const& part : parts)
        result.emplace_back(part.toUtf8().constData());
    return result;
}

CText StringJoin(std::vector<CText> const& items, View const& separator)
{
    QString const between =
        QString::fromUtf8(separator.data(), static_cast<qsizetype>(separator.size()));
    QStringList list;
    list.reserve(static_cast<qsizetype>(items.size()));
    for (CText const& item : items)
        list.append(ToQString(item.get()));
    return {list.join(between).toUtf8().constData()};
}

namespace
{
CText WithS(View const& word)
{
    CText result(word);
    result += 's';
    return result;
}
} // namespace

CText PluralNoun(unsigned long count, View const& singular, View const& plural)
{
    if (plural)
        return {plural};
    if (count == 1)
        return {singular};
    return WithS(singular);
}

namespace
{
template <class String>
Owner<String> Own(String&& text)
{
    return Owner<String>(new String(std::forward<String>(text)), &CustomDelete<String>);
}
} // namespace

Owner<std::u16string> Utf8ToUtf16(View const& text)
{
    return Own(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU16String());
}

Owner<std::string> Utf16ToUtf8(basic_sv_wrapper<char16_t> text)
{
    return Own(
        QString(reinterpret_cast<QChar const*>(text.data()), static_cast<qsizetype>(text.size()))
            .toUtf8()
            .toStdString());
}

Owner<std::string> StdWStrToUtf8(basic_sv_wrapper<wchar_t> text)
{
    return Own(QString::fromUcs4(reinterpret_cast<char32_t const*>(text.data()),
                                 static_cast<qsizetype>(text.size()))
                   .toUtf8()
                   .toStdString());
}

CText::CText(basic_sv_wrapper<wchar_t> text) : m_pString(new std::string(*StdWStrToUtf8(text))) {}

CText::CText(basic_sv_wrapper<char16_t> text) : m_pString(new std::string(*Utf16ToUtf8(text))) {}
} // namespace Floor
