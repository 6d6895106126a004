#include <BaseUtilities/EncodingConversions.h>

#include <QByteArray>
#include <QString>

template BASEUTILITIES_EXPORT void CustomDelete<std::string>(std::string*);
template BASEUTILITIES_EXPORT void CustomDelete<std::u16string>(std::u16string*);

namespace
{
template <class CharT>
qsizetype LengthOf(basic_sv_wrapper<CharT> const& text)
{
    return static_cast<qsizetype>(text.size());
}

custom_unique_ptr<std::string, std::string> ToUtf8(QString const& text)
{
    return make_custom_unique<std::string, std::string>(text.toUtf8().toStdString());
}
} // namespace

// Flattened: short texts are converted in the time of the calls that this saves.
[[gnu::flatten]] custom_unique_ptr<std::u16string, std::u16string>
Utf8ToUtf16(basic_sv_wrapper<char> const& text)
{
    QString const units = QString::fromUtf8(text.data(), LengthOf(text));
    return make_custom_unique<std::u16string, std::u16string>(units.toStdU16String());
}

custom_unique_ptr<std::string, std::string> Utf16ToUtf8(basic_sv_wrapper<char16_t> text)
{
    return ToUtf8(QString(reinterpret_cast<QChar const*>(text.data()), LengthOf(text)));
}

custom_unique_ptr<std::string, std::string> StdWStrToUtf8(basic_sv_wrapper<wchar_t> text)
{
    static_assert(sizeof(wchar_t) == sizeof(char32_t), "wide text is UCS-4");
    return ToUtf8(
        QString::fromUcs4(reinterpret_cast<char32_t const*>(text.data()), LengthOf(text)));
}
