#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <QByteArray>
#include <QDebug>
#include <QHashFunctions>
#include <QString>

#include <cstddef>
#include <string_view>
#include <type_traits>

// Opt-in: the library's text beside Qt's. Text is UTF-8; ill-formed bytes become U+FFFD.
//
// Threads: any number at once.

/// The whole text, NULs included; empty for a view that is not set.
template <
    class Text,
    std::enable_if_t<
        std::is_same_v<Text, CSafeString> || std::is_same_v<Text, basic_sv_wrapper<char>>, int> = 0>
QString ToQString(Text const& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The whole text as UTF-8. Throws std::bad_alloc.
inline CSafeString ToSafeString(QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    return basic_sv_wrapper<char>(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

/// For QHash and QSet; equal texts have equal hashes.
inline std::size_t qHash(CSafeString const& text, std::size_t seed = 0) noexcept
{
    return qHashBits(text.data(), text.size(), seed);
}

/// Writes the text as QDebug writes a QString, between quotes unless noquote() is set.
template <
    class Text,
    std::enable_if_t<
        std::is_same_v<Text, CSafeString> || std::is_same_v<Text, basic_sv_wrapper<char>>, int> = 0>
QDebug operator<<(QDebug debug, Text const& text)
{
    return debug << ToQString(text);
}
