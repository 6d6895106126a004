// Holds one object of each kind that the printers show, and stops where the debugger waits. Part of
// a program, or of a module that a program loads.

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/EncodingConversions.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQColor.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TQUuid.h>

#include <cstring>
#include <utility>

__attribute__((noinline)) void Stop()
{
    asm volatile(""); // so that the call stays
}

extern "C" __attribute__((visibility("default"))) int ShowObjects()
{
    CSafeString text("short");
    CSafeString longText(300, 'x');
    CSafeString withNul(basic_sv_wrapper<char>("a\0b"));
    CSafeString empty;
    CSafeString moved("gone");
    CSafeString const taker(std::move(moved));

    basic_sv_wrapper<char> view("seen");
    basic_sv_wrapper<char> part("seen", 2);
    basic_sv_wrapper<char> unsetView;
    basic_sv_wrapper<char> emptyView("");
    basic_sv_wrapper<wchar_t> wideView(L"w\u00efde");
    basic_sv_wrapper<char16_t> utf16View(u"\u00fctf");

    CSimpleBuffer emptyBuffer;
    CSimpleBuffer buffer;
    std::strcpy(buffer.Get(1025), "scratch");

    [[maybe_unused]] TQUuid const identifier{
        0x12345678, 0x9abc, 0xdef0, {1, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef}};
    [[maybe_unused]] TQColor const color{1, 2, 3, 4};
    CFormatInfo format;
    format.AddColor(TQColor{255, 0, 0, 255}, true);

    TQException root("root", TEST_STATUS(7));
    CTestSuiteException const derived("suite \"A\" failed");
    [[maybe_unused]] TQException const& base = derived;
    TQAppExitException exitRequest("please");
    TQUserAbort userAbort;

    auto owner = Utf16ToUtf8(u"owned");
    custom_unique_ptr<std::string> nobody;
    auto second = Utf16ToUtf8(u"kept");
    auto const newOwner = std::move(second);

    Stop();
    return text.empty() || !newOwner || taker.empty() || userAbort.UserAbortSent();
}
