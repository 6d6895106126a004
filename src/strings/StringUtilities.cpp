#include <BaseUtilities/StringUtilities.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <stdexcept>
#include <string>

namespace
{
QString ToQString(basic_sv_wrapper<char> const& text)
{
    if (text.data() == nullptr && !text.empty())
        throw std::logic_error("basic_string: construction from null is not valid");
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// By way of a standard string of its own.
QString ItemToQString(CSafeString const& item)
{
    return QString::fromStdString(std::string(item.get()));
}

CSafeString ToSafeString(QString const& text)
{
    return text.toUtf8().constData();
}

CSafeString WithS(basic_sv_wrapper<char> const& word)
{
    CSafeString result(word);
    result += 's';
    return result;
}
} // namespace

std::vector<CSafeString> StringSplit(basic_sv_wrapper<char> const& text,
                                     basic_sv_wrapper<char> const& separator)
{
    QString const between = ToQString(separator);
    QStringList const parts = ToQString(text).split(between, Qt::KeepEmptyParts, Qt::CaseSensitive);
    std::vector<CSafeString> result;
    result.reserve(static_cast<std::size_t>(parts.size()));
    for (QString const& part : parts)
        result.push_back(ToSafeString(part));
    return result;
}

CSafeString StringJoin(std::vector<CSafeString> const& items,
                       basic_sv_wrapper<char> const& separator)
{
    QString const between = ToQString(separator);
    QStringList list;
    list.reserve(static_cast<qsizetype>(items.size()));
    for (CSafeString const& item : items)
        list.append(ItemToQString(item));
    return ToSafeString(list.join(between));
}

CSafeString PluralNoun(unsigned long count, basic_sv_wrapper<char> const& singular,
                       basic_sv_wrapper<char> const& plural)
{
    if (plural)
        return plural;
    return count != 1 ? WithS(singular) : CSafeString(singular);
}

CSafeString PluralVerb(unsigned long count, basic_sv_wrapper<char> const& singular,
                       basic_sv_wrapper<char> const& plural)
{
    if (plural)
        return plural;
    return count == 1 ? WithS(singular) : CSafeString(singular);
}
