// Prints size, alignment and the places of the members of every type whose layout is promised. A
// test compares the output with the kept list, layouts.txt.

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQColor.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TQUuid.h>
#include <BaseUtilities/UIEnumerations.h>
#include <BaseUtilities/basic_sv_wrapper.h>
#include <BaseUtilities/custom_unique_ptr.h>

#include <iostream>

namespace
{
// An explicit instantiation may name private members; this is how the test reaches them.
template <class Tag, auto Member>
struct Reveal
{
    friend constexpr auto Revealed(Tag) { return Member; }
};

template <class T>
void PrintType(char const* name)
{
    std::cout << name << ": size " << sizeof(T) << ", alignment " << alignof(T) << '\n';
}

template <class T, class Class>
void PrintMember(char const* name, Class const& object, T Class::*member)
{
    auto const* const start = reinterpret_cast<char const*>(&object);
    auto const* const place = reinterpret_cast<char const*>(&(object.*member));
    std::cout << "    " << name << ": offset " << place - start << ", size " << sizeof(T) << '\n';
}

template <class Base, class T>
void PrintBase(char const* name, T const& object)
{
    auto const* const start = reinterpret_cast<char const*>(&object);
    auto const* const place = reinterpret_cast<char const*>(static_cast<Base const*>(&object));
    std::cout << "    base " << name << ": offset " << place - start << '\n';
}
} // namespace

#define REVEAL(Class, member)                                                                      \
    struct Class##_##member                                                                        \
    {                                                                                              \
        friend constexpr auto Revealed(Class##_##member);                                          \
    };                                                                                             \
    template struct Reveal<Class##_##member, &Class::member>;
#define MEMBER(object, Class, member) PrintMember(#member, object, Revealed(Class##_##member{}))
#define PUBLIC_MEMBER(object, Class, member) PrintMember(#member, object, &Class::member)

namespace
{
using CharView = basic_sv_wrapper<char>;
using WideView = basic_sv_wrapper<wchar_t>;
using Utf16View = basic_sv_wrapper<char16_t>;

REVEAL(CSafeString, m_pString)
REVEAL(CharView, m_Length)
REVEAL(CharView, m_pText)
REVEAL(WideView, m_Length)
REVEAL(WideView, m_pText)
REVEAL(Utf16View, m_Length)
REVEAL(Utf16View, m_pText)
REVEAL(CSimpleBuffer, m_pBuffer)
REVEAL(CSimpleBuffer, m_Size)
REVEAL(CFormattedString, m_Indent)
REVEAL(CFormattedString, m_Buffer)
REVEAL(CFormattedString, m_pText)
REVEAL(TQException, m_Status)
REVEAL(TQAppExitException, m_Message)
REVEAL(TQAppExitException, m_Status)

void PrintStrings()
{
    PrintType<CSafeString>("CSafeString");
    MEMBER(CSafeString(), CSafeString, m_pString);
    PrintType<CharView>("basic_sv_wrapper<char>");
    MEMBER(CharView(), CharView, m_Length);
    MEMBER(CharView(), CharView, m_pText);
    PUBLIC_MEMBER(CharView(), CharView, m_HasValue);
    PrintType<WideView>("basic_sv_wrapper<wchar_t>");
    MEMBER(WideView(), WideView, m_Length);
    MEMBER(WideView(), WideView, m_pText);
    PUBLIC_MEMBER(WideView(), WideView, m_HasValue);
    PrintType<Utf16View>("basic_sv_wrapper<char16_t>");
    MEMBER(Utf16View(), Utf16View, m_Length);
    MEMBER(Utf16View(), Utf16View, m_pText);
    PUBLIC_MEMBER(Utf16View(), Utf16View, m_HasValue);
    PrintType<CSimpleBuffer>("CSimpleBuffer");
    MEMBER(CSimpleBuffer(), CSimpleBuffer, m_pBuffer);
    MEMBER(CSimpleBuffer(), CSimpleBuffer, m_Size);
    PrintType<custom_unique_ptr<std::string>>("custom_unique_ptr<std::string>");
}

void PrintFormatsAndIdentifiers()
{
    PrintType<TQColor>("TQColor");
    PUBLIC_MEMBER(TQColor(), TQColor, m_Red);
    PUBLIC_MEMBER(TQColor(), TQColor, m_Green);
    PUBLIC_MEMBER(TQColor(), TQColor, m_Blue);
    PUBLIC_MEMBER(TQColor(), TQColor, m_Alpha);
    PrintType<CFormatInfo>("CFormatInfo");
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_Color);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_BackColor);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_TextStyle);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_Weight);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_TextEffect);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_ColorChanged);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_BackColorChanged);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_TextStyleChanged);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_WeightChanged);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_TextEffectChanged);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_HasColor);
    PUBLIC_MEMBER(CFormatInfo(), CFormatInfo, m_HasBackColor);
    PrintType<TQUuid>("TQUuid");
    PUBLIC_MEMBER(TQUuid(), TQUuid, m_Data1);
    PUBLIC_MEMBER(TQUuid(), TQUuid, m_Data2);
    PUBLIC_MEMBER(TQUuid(), TQUuid, m_Data3);
    PUBLIC_MEMBER(TQUuid(), TQUuid, m_Data4);
    PrintType<EUIMode>("EUIMode");
    PrintType<EUIEmphasis>("EUIEmphasis");
    PrintType<ENumericBase>("ENumericBase");
    PrintType<EUserInputState>("EUserInputState");
    PrintType<gui::EAbortPromptState>("gui::EAbortPromptState");
}

template <class Exception>
void PrintException(char const* name)
{
    PrintType<Exception>(name);
    PrintBase<std::runtime_error>("std::runtime_error", Exception());
    PrintBase<TQException>("TQException", Exception());
}

void PrintErrors()
{
    PrintType<TEST_STATUS>("TEST_STATUS");
    PrintException<TQException>("TQException");
    MEMBER(TQException(), TQException, m_Status);
    PrintException<TQAppException>("TQAppException");
    PrintException<TQDOMDocException>("TQDOMDocException");
    PrintException<TQParseTreeException>("TQParseTreeException");
    PrintException<TQRunTimeException>("TQRunTimeException");
    PrintException<CTestSuiteException>("CTestSuiteException");
    PrintBase<TQDOMDocException>("TQDOMDocException", CTestSuiteException());
    PrintType<TQAppExitException>("TQAppExitException");
    MEMBER(TQAppExitException(), TQAppExitException, m_Message);
    MEMBER(TQAppExitException(), TQAppExitException, m_Status);
    PrintType<TQUserAbort>("TQUserAbort");
    CFormattedString const text("");
    PrintType<CFormattedString>("CFormattedString");
    MEMBER(text, CFormattedString, m_Indent);
    MEMBER(text, CFormattedString, m_Buffer);
    MEMBER(text, CFormattedString, m_pText);
}
} // namespace

int main()
{
    PrintStrings();
    PrintFormatsAndIdentifiers();
    PrintErrors();
}
