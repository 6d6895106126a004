#pragma once

#include <BaseUtilities/CSafeString.h>

#include <QString>

// The library's text and Qt's, both ways; UTF-8 on the library's side.

inline QString ToQString(basic_sv_wrapper<char> const& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline CSafeString ToSafeString(QString const& text)
{
    return text.toUtf8().constData();
}
