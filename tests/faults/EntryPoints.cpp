#include "EntryPoints.h"

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CMemWrapper.h>
#include <BaseUtilities/COSVersionInfo.h>
#include <BaseUtilities/ConsoleKeyboard.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/EncodingConversions.h>
#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/LibraryVersion.h>
#include <BaseUtilities/MakeTimeString.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TQUuid.h>
#include <BaseUtilities/TqCopyFile.h>
#include <BaseUtilities/UIHelperBase.h>
#include <BaseUtilities/adapters/Qt.h>
#include <BaseUtilities/adapters/hash.h>
#include <BaseUtilities/adapters/ostream.h>
#include <BaseUtilities/oss_system.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace
{
using CView = basic_sv_wrapper<char>;

wchar_t const LongWide[] = L"forty characters, which go onto the heap";
char16_t const LongUtf16[] = u"forty characters, which go onto the heap";
CView const LongView(LongText);
basic_sv_wrapper<wchar_t> const WideView(LongWide);
basic_sv_wrapper<char16_t> const Utf16View(LongUtf16);
char const* const LongPath = "/a/folder/of/that/name/is/not/there/at/all";
TEST_STATUS const OtherStatus = TEST_STATUS(0x1234);

template <class T>
void Discard(T const&)
{
}

void Require(bool condition, char const* claim)
{
    if (!condition)
        throw std::logic_error(claim);
}

template <class T>
void Destroy(SOperands& with)
{
    std::get<std::optional<T>>(with.doomed).reset();
}

template <class Exception>
void Construct(SOperands&)
{
    Exception const made(LongView, OtherStatus);
    Require(std::strcmp(made.what(), LongText) == 0, "what");
}

// Runs what must throw, once memory suffices.
template <class Operation>
void Expect(Operation const& operation, char const* what)
{
    try {
        operation();
    } catch (TQRunTimeException const& error) {
        Require(std::strcmp(error.what(), what) == 0, "what");
        Require(error.GetStatus() == OtherStatus, "status");
        return;
    }
    throw std::logic_error("nothing was thrown");
}

void ExpectNoCopy(char const* source, char const* destination)
{
    try {
        TqCopyFile(source, destination, ECopyFailType::Throw);
    } catch (TQRunTimeException const&) {
        Require(!TqCopyFile(source, destination, ECopyFailType::Report), "reported");
        return;
    }
    throw std::logic_error("nothing was thrown");
}

// A system out of memory may be the reason why a command cannot be started, or its folder found.
void RunCommand(SOperands&)
{
    try {
        oss_system(":", LongText, "/");
    } catch (fs::filesystem_error const& error) {
        Require(error.code() == std::errc::not_enough_memory, "out of memory");
    }
}

// Each test program has its standard input set to a file that is empty.
void ReadKey(SOperands&)
{
    std::clearerr(stdin);
    Require(oss_getch() == EOF, "the end of input");
}

bool HoldsNoText(SOperands const& with)
{
    std::string const* storage = nullptr;
    std::memcpy(&storage, static_cast<void const*>(&with.text), sizeof storage);
    return storage == nullptr;
}

bool HoldsFormerTextOrTheJoinedOne(SOperands const& with)
{
    return with.text == FormerText || with.text.size() == 2 * std::strlen(LongText) + 1;
}

// Deliberate in the library: the size is recorded first, so no second attempt is made for less.
bool BufferHoldsNoArray(SOperands const& with)
{
    return const_cast<CSimpleBuffer&>(with.buffer).Get(5000) == nullptr;
}

bool AssignedBufferHoldsNoArray(SOperands const& with)
{
    return const_cast<CSimpleBuffer&>(with.buffer).Get(4096) == nullptr;
}

constexpr EAllocates Never = EAllocates::Never;
constexpr EAllocates Always = EAllocates::Always;
constexpr EAllocates OnFirstCall = EAllocates::OnFirstCall;

std::vector<SEntryPoint> const strings = {
    {"CSafeString::CSafeString(CSafeString const&)",
     [](SOperands& with) { Discard(CSafeString(with.text)); }, Always},
    {"CSafeString::CSafeString(CSafeString&&)",
     [](SOperands& with) { with.text = CSafeString(std::move(with.text)); }},
    {"CSafeString::CSafeString(view)", [](SOperands&) { Discard(CSafeString(LongView)); }, Always},
    {"CSafeString::CSafeString(utf16)", [](SOperands&) { Discard(CSafeString(Utf16View)); },
     Always},
    {"CSafeString::CSafeString(wide)", [](SOperands&) { Discard(CSafeString(WideView)); }, Always},
    {"CSafeString::CSafeString(char const*)", [](SOperands&) { Discard(CSafeString(LongText)); },
     Always},
    {"CSafeString::CSafeString(strings, view)",
     [](SOperands& with) { Discard(CSafeString(with.items, LongView)); }, Always},
    {"CSafeString::CSafeString(strings, char)",
     [](SOperands& with) { Discard(CSafeString(with.items, ',')); }, Always},
    {"CSafeString::CSafeString(unsigned long, char)",
     [](SOperands&) { Discard(CSafeString(40, 'x')); }, Always},
    {"CSafeString::append(view)", [](SOperands& with) { with.text.append(LongView); }, Always},
    {"CSafeString::append(view, unsigned long, unsigned long)",
     [](SOperands& with) { with.text.append(LongView, 1, 30); }, Always},
    {"CSafeString::append(char const*)", [](SOperands& with) { with.text.append(LongText); },
     Always},
    {"CSafeString::append(char const*, unsigned long)",
     [](SOperands& with) { with.text.append(LongText, 30); }, Always},
    {"CSafeString::append(std::initializer_list<char>)",
     [](SOperands& with) {
         with.text.append({'a', 'b'});
     },
     Always},
    {"CSafeString::append(unsigned long, char)", [](SOperands& with) { with.text.append(30, 'x'); },
     Always},
    {"CSafeString::back()", [](SOperands& with) { Discard(with.text.back()); }},
    {"CSafeString::back() const",
     [](SOperands& with) { Discard(std::as_const(with.text).back()); }},
    {"CSafeString::begin()", [](SOperands& with) { Discard(with.text.begin()); }},
    {"CSafeString::cbegin()", [](SOperands& with) { Discard(with.text.cbegin()); }},
    {"CSafeString::cend()", [](SOperands& with) { Discard(with.text.cend()); }},
    {"CSafeString::clear()", [](SOperands& with) { with.text.clear(); }},
    {"CSafeString::compare(view) const",
     [](SOperands& with) { Discard(with.text.compare(LongView)); }},
    {"CSafeString::crbegin()", [](SOperands& with) { Discard(with.text.crbegin()); }},
    {"CSafeString::crend()", [](SOperands& with) { Discard(with.text.crend()); }},
    {"CSafeString::data()", [](SOperands& with) { Discard(with.text.data()); }},
    {"CSafeString::data() const",
     [](SOperands& with) { Discard(std::as_const(with.text).data()); }},
    {"CSafeString::do_join(strings, view)",
     [](SOperands& with) { Discard(CSafeString::do_join(with.items, LongView)); }, Always},
    {"CSafeString::do_join(strings, char)",
     [](SOperands& with) { Discard(CSafeString::do_join(with.items, ',')); }, Always},
    {"CSafeString::empty() const", [](SOperands& with) { Discard(with.text.empty()); }},
    {"CSafeString::end()", [](SOperands& with) { Discard(with.text.end()); }},
    {"CSafeString::front()", [](SOperands& with) { Discard(with.text.front()); }},
    {"CSafeString::front() const",
     [](SOperands& with) { Discard(std::as_const(with.text).front()); }},
    {"CSafeString::get() const", [](SOperands& with) { Discard(with.text.get()); }},
    {"CSafeString::join(strings, view)",
     [](SOperands& with) { Discard(with.text.join(with.items, ",")); }, Always, EMakesDo::Never,
     HoldsFormerTextOrTheJoinedOne},
    {"CSafeString::join(strings, char)",
     [](SOperands& with) { Discard(with.text.join(with.items, ',')); }, Always, EMakesDo::Never,
     HoldsFormerTextOrTheJoinedOne},
    {"CSafeString::operator view() const", [](SOperands& with) { Discard(CView(with.text)); }},
    {"CSafeString::operator+=(CSafeString const&)",
     [](SOperands& with) { with.text += with.other; }, Always},
    {"CSafeString::operator+=(view)", [](SOperands& with) { with.text += LongView; }, Always},
    {"CSafeString::operator+=(char const*)", [](SOperands& with) { with.text += LongText; },
     Always},
    {"CSafeString::operator+=(char)", [](SOperands& with) { with.text += 'x'; }, Always},
    {"CSafeString::operator+=(std::initializer_list<char>)",
     [](SOperands& with) {
         with.text += {'a', 'b'};
     },
     Always},
    {"CSafeString::operator=(CSafeString const&)", [](SOperands& with) { with.text = with.other; },
     Always, EMakesDo::Never, HoldsNoText},
    {"CSafeString::operator=(CSafeString&&)",
     [](SOperands& with) { with.text = std::move(with.other); }},
    {"CSafeString::operator[](unsigned long)", [](SOperands& with) { Discard(with.text[0]); }},
    {"CSafeString::operator[](unsigned long) const",
     [](SOperands& with) { Discard(std::as_const(with.text)[0]); }},
    {"CSafeString::rbegin()", [](SOperands& with) { Discard(with.text.rbegin()); }},
    {"CSafeString::rend()", [](SOperands& with) { Discard(with.text.rend()); }},
    {"CSafeString::set(view)",
     [](SOperands& with) {
         with.text.set(CView("a text longer than the former, for which there is no room yet"));
     },
     Always},
    {"CSafeString::set(utf16)", [](SOperands& with) { with.text.set(std::u16string(60, u'x')); },
     Always},
    {"CSafeString::set(wide)", [](SOperands& with) { with.text.set(std::wstring(60, L'x')); },
     Always},
    {"CSafeString::size() const", [](SOperands& with) { Discard(with.text.size()); }},
    {"CSafeString::substr(unsigned long, unsigned long) const",
     [](SOperands& with) { Discard(with.text.substr(1, 30)); }, Always},
    {"CSafeString::to_path() const", [](SOperands& with) { Discard(with.text.to_path()); }, Always},
    {"CSafeString::to_string(double)", [](SOperands&) { Discard(CSafeString::to_string(1e20)); },
     Always},
    {"CSafeString::to_string(float)", [](SOperands&) { Discard(CSafeString::to_string(1e20F)); },
     Always},
    {"CSafeString::to_string(int)", [](SOperands&) { Discard(CSafeString::to_string(-12)); },
     Always},
    {"CSafeString::to_string(long double)",
     [](SOperands&) { Discard(CSafeString::to_string(1e20L)); }, Always},
    {"CSafeString::to_string(long long)",
     [](SOperands&) { Discard(CSafeString::to_string(-1234567890123456LL)); }, Always},
    {"CSafeString::to_string(long)",
     [](SOperands&) { Discard(CSafeString::to_string(-1234567890123456L)); }, Always},
    {"CSafeString::to_string(unsigned int)",
     [](SOperands&) { Discard(CSafeString::to_string(1U)); }, Always},
    {"CSafeString::to_string(unsigned long long)",
     [](SOperands&) { Discard(CSafeString::to_string(1234567890123456ULL)); }, Always},
    {"CSafeString::to_string(unsigned long)",
     [](SOperands&) { Discard(CSafeString::to_string(1234567890123456UL)); }, Always},
    {"CSafeString::~CSafeString()", Destroy<CSafeString>},
    {"operator+(CSafeString const&, CSafeString const&)",
     [](SOperands& with) { Discard(with.text + with.other); }, Always},
    {"operator+(CSafeString const&, CSafeString&&)",
     [](SOperands& with) { Discard(with.text + std::move(with.other)); }, Always},
    {"operator+(CSafeString const&, char const*)",
     [](SOperands& with) { Discard(with.text + LongText); }, Always},
    {"operator+(CSafeString const&, char)", [](SOperands& with) { Discard(with.text + 'x'); },
     Always},
    {"operator+(CSafeString&&, CSafeString const&)",
     [](SOperands& with) { Discard(std::move(with.text) + with.other); }, Always},
    {"operator+(CSafeString&&, CSafeString&&)",
     [](SOperands& with) { Discard(std::move(with.text) + std::move(with.other)); }, Always},
    {"operator+(CSafeString&&, char const*)",
     [](SOperands& with) { Discard(std::move(with.text) + LongText); }, Always},
    {"operator+(CSafeString&&, char)", [](SOperands& with) { Discard(std::move(with.text) + 'x'); },
     Always},
    {"operator+(char const*, CSafeString const&)",
     [](SOperands& with) { Discard(LongText + with.text); }, Always},
    {"operator+(char const*, CSafeString&&)",
     [](SOperands& with) { Discard(LongText + std::move(with.text)); }, Always},
    {"operator+(char, CSafeString const&)", [](SOperands& with) { Discard('x' + with.text); },
     Always},
    {"operator+(char, CSafeString&&)", [](SOperands& with) { Discard('x' + std::move(with.text)); },
     Always},
    {"operator==(CSafeString const&, CSafeString const&)",
     [](SOperands& with) { Discard(with.text == with.other); }},
    {"[std::less<CSafeString>]",
     [](SOperands& with) { Discard(std::less<CSafeString>()(with.text, with.other)); }},
    {"[std::hash<CSafeString>]",
     [](SOperands& with) { Discard(std::hash<CSafeString>()(with.text)); }},
    {"[operator==(CSafeString const&, char const*)]",
     [](SOperands& with) { Discard(with.text == LongText); }},
};

std::vector<SEntryPoint> const utilities = {
    {"CMemWrapper::AllocateMemory(unsigned long, bool)",
     [](SOperands& with) {
         for (bool const zeroFill : {false, true}) {
             CMemWrapper::ReleaseMemory(with.block);
             with.block = CMemWrapper::AllocateMemory(40, zeroFill);
         }
         CMemWrapper::ReleaseMemory(with.block);
     },
     Always},
    {"CMemWrapper::ReleaseMemory(void*&)",
     [](SOperands& with) { CMemWrapper::ReleaseMemory(with.block); }},
    {"CSimpleBuffer::CSimpleBuffer(CSimpleBuffer const&)",
     [](SOperands& with) { CSimpleBuffer const copy(with.largeBuffer); }, Always},
    {"CSimpleBuffer::Get(unsigned long)", [](SOperands& with) { with.buffer.Get(5000); }, Always,
     EMakesDo::Never, BufferHoldsNoArray},
    {"CSimpleBuffer::Resize(unsigned long)", [](SOperands& with) { with.buffer.Resize(5000); },
     Always, EMakesDo::Never, BufferHoldsNoArray},
    {"CSimpleBuffer::operator=(CSimpleBuffer const&)",
     [](SOperands& with) { with.buffer = with.largeBuffer; }, Always, EMakesDo::Never,
     AssignedBufferHoldsNoArray},
    {"CSimpleBuffer::~CSimpleBuffer()", Destroy<CSimpleBuffer>},
    {"operator==(CSimpleBuffer const&, CSimpleBuffer const&)",
     [](SOperands& with) { Discard(with.buffer == with.largeBuffer); }},
    {"StringSplit(view, view)", [](SOperands&) { Discard(StringSplit(LongText, ",")); }, Always},
    // Qt's list does without the room that it was asked to reserve.
    {"StringJoin(strings, view)",
     [](SOperands& with) {
         Require(StringJoin(with.items, ",").size() == 2 * std::strlen(LongText) + 1, "all text");
     },
     Always, EMakesDo::AtMalloc},
    {"ToUpper(view)", [](SOperands&) { Discard(ToUpper(LongText)); }, Always},
    {"ToLower(view)", [](SOperands&) { Discard(ToLower(LongText)); }, Always},
    {"PluralNoun(unsigned long, view, view)",
     [](SOperands&) {
         Discard(PluralNoun(1, LongText, ""));
         Discard(PluralNoun(2, LongText, ""));
         Discard(PluralNoun(2, "w", LongText));
     },
     Always},
    {"PluralVerb(unsigned long, view, view)",
     [](SOperands&) {
         Discard(PluralVerb(1, LongText, ""));
         Discard(PluralVerb(2, LongText, ""));
         Discard(PluralVerb(2, "w", LongText));
     },
     Always},
    {"Utf8ToUtf16(view)", [](SOperands&) { Discard(Utf8ToUtf16(LongText)); }, Always},
    {"Utf16ToUtf8(utf16)", [](SOperands&) { Discard(Utf16ToUtf8(Utf16View)); }, Always},
    {"StdWStrToUtf8(wide)", [](SOperands&) { Discard(StdWStrToUtf8(WideView)); }, Always},
    {"void CustomDelete<std::string>(std::string*)",
     [](SOperands&) { CustomDelete(std::make_unique<std::string>(LongText).release()); }, Always},
    {"void CustomDelete<std::u16string>(std::u16string*)",
     [](SOperands&) { CustomDelete(std::make_unique<std::u16string>(LongUtf16).release()); },
     Always},
    {"[make_custom_unique]", [](SOperands&) { Discard(make_custom_unique(std::string(LongText))); },
     Always},
    {"[ToSafeString(QString const&)]",
     [](SOperands&) { Discard(ToSafeString(QString::fromUtf8(LongText))); }, Always},
    {"[ToQString]", [](SOperands& with) { Discard(ToQString(with.text)); }, Never},
};

std::vector<SEntryPoint> const errors = {
    {"CFormatInfo::AddBackColor(TQColor const&, bool)",
     [](SOperands&) {
         CFormatInfo().AddBackColor(TQColor{1, 2, 3, 4}, true);
     }},
    {"CFormatInfo::AddColor(TQColor const&, bool)",
     [](SOperands&) {
         CFormatInfo().AddColor(TQColor{1, 2, 3, 4}, true);
     }},
    {"CFormatInfo::AddColor(TQColor&, TQColor)",
     [](SOperands&) {
         TQColor color;
         CFormatInfo::AddColor(color, TQColor{1, 2, 3, 4});
     }},
    {"CFormatInfo::ClearBackColor(bool)", [](SOperands&) { CFormatInfo().ClearBackColor(true); }},
    {"CFormatInfo::ClearColor(bool)", [](SOperands&) { CFormatInfo().ClearColor(true); }},
    {"CFormatInfo::ClearFormat()", [](SOperands&) { CFormatInfo().ClearFormat(); }},
    {"CFormatInfo::MergeFormat(CFormatInfo const&)",
     [](SOperands&) { CFormatInfo().MergeFormat(CFormatInfo()); }},
    {"CFormatInfo::ResetChangeFlags()", [](SOperands&) { CFormatInfo().ResetChangeFlags(); }},
    {"CFormattedString::~CFormattedString()",
     [](SOperands&) { CFormattedString const text("%s %d", LongText, 2); }, Always},
    {"[CFormattedString::operator CSafeString]",
     [](SOperands&) { Discard(CSafeString(CFormattedString("%s", LongText))); }, Always},
    {"[CBasicFlatString::DoBuild]",
     [](SOperands& with) {
         std::string const text(2000, 'x');
         CBasicFlatString::DoBuild(with.buffer, std::tuple<unsigned long, char>(2, ' '), "%s",
                                   text.c_str());
     },
     Always, EMakesDo::Never,
     // The output is assigned last: it holds its former text, or no array.
     [](SOperands const& with) {
         char const* const text = const_cast<CSimpleBuffer&>(with.buffer).Get(0);
         return text == nullptr || std::strcmp(text, "kept") == 0;
     }},
    {"void DoThrow<TQRunTimeException, char const*, char const*>(TEST_STATUS, view, "
     "char const* const&, char const* const&)",
     [](SOperands&) {
         Expect([] { DoThrow<TQRunTimeException>(OtherStatus, "%s %s", LongText, "b"); },
                "forty characters, which go onto the heap b");
     },
     Always, EMakesDo::AtMalloc},
    {"void DoThrow<TQRunTimeException, char const*, std::filesystem::file_type>(TEST_STATUS, view, "
     "char const* const&, std::filesystem::file_type const&)",
     [](SOperands&) {
         Expect([] { DoThrow<TQRunTimeException>(OtherStatus, "%s %d", "a", fs::file_type::fifo); },
                "a 6");
     },
     Always, EMakesDo::AtMalloc},
    {"void DoThrow<TQRunTimeException, char const*>(TEST_STATUS, view, char const* const&)",
     [](SOperands&) {
         Expect([] { DoThrow<TQRunTimeException>(OtherStatus, "%s", LongText); }, LongText);
     },
     Always, EMakesDo::AtMalloc},
    {"void DoThrow<TQRunTimeException, std::string, std::string, int, char const*>(TEST_STATUS, "
     "view, std::string const&, std::string const&, int const&, char const* const&)",
     [](SOperands&) {
         Expect(
             [] {
                 DoThrow<TQRunTimeException>(OtherStatus, "%s %s %d %s", std::string("a"),
                                             std::string("b"), 1, LongText);
             },
             "a b 1 forty characters, which go onto the heap");
     },
     Always, EMakesDo::AtMalloc},
    // A failure while the stream is written ends the text there, as any failure of the facet does.
    {"MakeCurrentTimeString(char const*)",
     [](SOperands&) { Discard(MakeCurrentTimeString("%Y, and some more text, for the heap")); },
     Always, EMakesDo::Always},
    {"MakeTimeString(char const*, std::chrono::time_point<std::chrono::_V2::system_clock, "
     "std::chrono::duration<long, std::ratio<1l, 1000000000l> > > const&)",
     [](SOperands&) { Discard(MakeTimeString("%Y, and some more text, for the heap", {})); },
     Always, EMakesDo::Always},
    {"TQException::DoMakeWhatString(view)",
     [](SOperands&) {
         Require(std::strcmp(TQException::DoMakeWhatString(LongText), LongText) == 0, "what");
     },
     Always},
    {"CTestSuiteException::CTestSuiteException(view, TEST_STATUS)", Construct<CTestSuiteException>,
     Always},
    {"CTestSuiteException::~CTestSuiteException()", Destroy<CTestSuiteException>},
    {"TQAppException::TQAppException(view, TEST_STATUS)", Construct<TQAppException>, Always},
    {"TQAppException::~TQAppException()", Destroy<TQAppException>},
    {"TQDOMDocException::TQDOMDocException(view, TEST_STATUS)", Construct<TQDOMDocException>,
     Always},
    {"TQDOMDocException::~TQDOMDocException()", Destroy<TQDOMDocException>},
    {"TQException::TQException(view, TEST_STATUS)", Construct<TQException>, Always},
    {"TQException::~TQException()", Destroy<TQException>},
    {"TQParseTreeException::TQParseTreeException(view, TEST_STATUS)",
     Construct<TQParseTreeException>, Always},
    {"TQParseTreeException::~TQParseTreeException()", Destroy<TQParseTreeException>},
    {"TQRunTimeException::TQRunTimeException(view, TEST_STATUS)", Construct<TQRunTimeException>,
     Always},
    {"TQRunTimeException::~TQRunTimeException()", Destroy<TQRunTimeException>},
    {"TQAppExitException::ExceptionThrown()",
     [](SOperands&) { TQAppExitException::ExceptionThrown(); }},
    {"TQAppExitException::ExceptionThrown(bool)",
     [](SOperands&) { TQAppExitException::ExceptionThrown(true); }},
    {"TQAppExitException::TQAppExitException(view, TEST_STATUS)", Construct<TQAppExitException>,
     Always},
    {"TQAppExitException::what() const",
     [](SOperands& with) {
         if (auto const& made = std::get<std::optional<TQAppExitException>>(with.doomed))
             Discard(made->what());
     }},
    {"TQAppExitException::~TQAppExitException()", Destroy<TQAppExitException>},
    {"TQUuid::ToString() const", [](SOperands&) { Discard(TQUuid().ToString()); }, Always},
};

CView const NoText;
gui::EAbortPromptState const NoPrompt{};

std::vector<SEntryPoint> const runControl = {
    {"CQtSignaler::AbortTestSuite(bool)", [](SOperands&) { CQtSignaler().AbortTestSuite(true); },
     Always},
    {"CQtSignaler::BooleanChoice(EUIMode, unsigned int, view, bool*, view, view, "
     "gui::EAbortPromptState, view)",
     [](SOperands&) {
         CQtSignaler().BooleanChoice({}, 1, LongText, nullptr, NoText, NoText, NoPrompt, NoText);
     },
     Always},
    {"CQtSignaler::CQtSignaler()", [](SOperands&) { CQtSignaler const made; }, Always},
    {"CQtSignaler::CloseUserInput(bool)", [](SOperands&) { CQtSignaler().CloseUserInput(true); },
     Always},
    {"CQtSignaler::GetInteger(EUIMode, unsigned int, view, view, unsigned long*, ENumericBase, "
     "bool, unsigned long, unsigned long, view, view, gui::EAbortPromptState, view)",
     [](SOperands&) {
         CQtSignaler().GetInteger({}, 1, LongText, LongText, nullptr, {}, false, 1, 0, NoText,
                                  NoText, NoPrompt, NoText);
     },
     Always},
    {"CQtSignaler::PickDirectory(view, view, view)",
     [](SOperands&) { Discard(CQtSignaler().PickDirectory(LongText, LongText, NoText)); }, Always},
    {"CQtSignaler::PickMultipleFiles(view, view, view, view)",
     [](SOperands&) {
         Discard(CQtSignaler().PickMultipleFiles(LongText, LongText, NoText, NoText));
     },
     Always},
    {"CQtSignaler::PickSingleFile(view, view, view, view)",
     [](SOperands&) { Discard(CQtSignaler().PickSingleFile(LongText, LongText, NoText, NoText)); },
     Always},
    {"CQtSignaler::RefreshCompleted() const",
     [](SOperands&) { Discard(CQtSignaler().RefreshCompleted()); }, Always},
    {"CQtSignaler::RefreshDone()", [](SOperands&) { CQtSignaler().RefreshDone(); }, Always},
    {"CQtSignaler::RefreshInit()", [](SOperands&) { CQtSignaler().RefreshInit(); }, Always},
    {"CQtSignaler::SelectItem(EUIMode, unsigned int, view, strings, int*, view, view, "
     "gui::EAbortPromptState, view)",
     [](SOperands& with) {
         CQtSignaler().SelectItem({}, 1, LongText, with.items, nullptr, NoText, NoText, NoPrompt,
                                  NoText);
     },
     Always},
    {"CQtSignaler::SelectMultipleItems(EUIMode, unsigned int, view, strings, "
     "std::vector<int, std::allocator<int> >**, view, view, gui::EAbortPromptState, view)",
     [](SOperands& with) {
         CQtSignaler().SelectMultipleItems({}, 1, LongText, with.items, nullptr, NoText, NoText,
                                           NoPrompt, NoText);
     },
     Always},
    {"CQtSignaler::SetRefreshCompleted()", [](SOperands&) { CQtSignaler().SetRefreshCompleted(); },
     Always},
    {"CQtSignaler::ShowInfo(EUIMode, unsigned int, view, bool, view, EUIEmphasis, "
     "gui::EAbortPromptState, view)",
     [](SOperands&) {
         CQtSignaler().ShowInfo({}, 1, LongText, true, NoText, {}, NoPrompt, NoText);
     },
     Always},
    {"CQtSignaler::UpdateResults()", [](SOperands&) { CQtSignaler().UpdateResults(); }, Always},
    {"CQtSignaler::metaObject() const", [](SOperands&) { Discard(CQtSignaler().metaObject()); },
     Always},
    {"CQtSignaler::qt_metacall(QMetaObject::Call, int, void**)",
     [](SOperands&) {
         void* none[] = {nullptr};
         int const last = CQtSignaler::staticMetaObject.methodCount() - 1;
         CQtSignaler().qt_metacall(QMetaObject::InvokeMetaMethod, last, none);
     },
     Always},
    {"CQtSignaler::qt_metacast(char const*)",
     [](SOperands&) { Discard(CQtSignaler().qt_metacast("CQtSignaler")); }, Always},
    {"CQtSignaler::~CQtSignaler()", [](SOperands&) { CQtSignaler const made; }, Always},
    {"TQUserAbort::EnableUserAbort(bool)", [](SOperands&) { TQUserAbort::EnableUserAbort(true); }},
    {"TQUserAbort::IsPaused()", [](SOperands&) { TQUserAbort::IsPaused(); }},
    {"TQUserAbort::IsUserAbortOk()", [](SOperands&) { TQUserAbort::IsUserAbortOk(); }},
    {"TQUserAbort::RequestUserAbort()",
     [](SOperands&) {
         TQUserAbort::EnableUserAbort(true);
         TQUserAbort::RequestUserAbort();
     }},
    {"TQUserAbort::Send()",
     [](SOperands&) {
         TQUserAbort::UserAbortReset();
         try {
             TQUserAbort::Send();
         } catch (TQUserAbort const&) {
             return;
         }
         throw std::logic_error("nothing was thrown");
     },
     Never, EMakesDo::AtMalloc},
    {"TQUserAbort::SetUserAbortOk()", [](SOperands&) { TQUserAbort::SetUserAbortOk(); }},
    {"TQUserAbort::UserAbortEnabled()", [](SOperands&) { TQUserAbort::UserAbortEnabled(); }},
    {"TQUserAbort::UserAbortPause()", [](SOperands&) { TQUserAbort::UserAbortPause(); }},
    {"TQUserAbort::UserAbortRequested()", [](SOperands&) { TQUserAbort::UserAbortRequested(); }},
    {"TQUserAbort::UserAbortReset()", [](SOperands&) { TQUserAbort::UserAbortReset(); }},
    {"TQUserAbort::UserAbortResume()", [](SOperands&) { TQUserAbort::UserAbortResume(); }},
    {"TQUserAbort::UserAbortSent()", [](SOperands&) { TQUserAbort::UserAbortSent(); }},
    {"UIHelperBase::AppName(view)", [](SOperands&) { UIHelperBase::AppName(LongText); },
     OnFirstCall},
    {"UIHelperBase::QtSignaler(CQtSignaler&)",
     [](SOperands&) {
         CQtSignaler signaler;
         UIHelperBase::QtSignaler(signaler);
         UIHelperBase::m_UISignaler = nullptr;
     },
     Always},
    {"UIHelperBase::UserInputState()", [](SOperands&) { UIHelperBase::UserInputState(); }},
    {"UIHelperBase::UserInputState(EUserInputState)",
     [](SOperands&) { UIHelperBase::UserInputState(EUserInputState{}); }},
    {"oss_get_current_code_page()", [](SOperands&) { oss_get_current_code_page(); }},
    {"oss_set_current_code_page(unsigned int)", [](SOperands&) { oss_set_current_code_page(1); }},
    {"oss_utf8_code_page_number()", [](SOperands&) { oss_utf8_code_page_number(); }},
    // The stream does without a buffer where there is no memory for it.
    {"oss_getch()", ReadKey, OnFirstCall, EMakesDo::AtMalloc},
    {"oss_query_getch()", [](SOperands&) { Require(!oss_query_getch(), "no key"); }},
};

std::vector<SEntryPoint> const platform = {
    {"AppendToPath(view, view)", [](SOperands&) { Discard(AppendToPath(LongView, LongText)); },
     Always},
    {"AppendToPath(std::filesystem::path const&, view)",
     [](SOperands&) { Discard(AppendToPath(fs::path(LongText), LongText)); }, Always},
    {"CheckEnvVar(view)", [](SOperands&) { CheckEnvVar(LongText); }, Always},
    {"GetAppInstallPathName(view)", [](SOperands&) { Discard(GetAppInstallPathName(LongText)); },
     Always},
    {"GetProgramDataParentFolder()", [](SOperands&) { Discard(GetProgramDataParentFolder()); },
     Always},
    {"GetQuillonDocsPathName()", [](SOperands&) { Discard(GetQuillonDocsPathName()); }, Always},
    {"GetQuillonJsonFolderPathName()", [](SOperands&) { Discard(GetQuillonJsonFolderPathName()); },
     Always},
    {"GetStandardDirName(QStandardPaths::StandardLocation)",
     [](SOperands&) { Discard(GetStandardDirName(QStandardPaths::DocumentsLocation)); }, Always},
    {"GetWorkFilesFolderPathName()", [](SOperands&) { Discard(GetWorkFilesFolderPathName()); },
     Always},
    {"MakeLongPath(view)", [](SOperands&) { Discard(MakeLongPath(LongView)); }, Always},
    {"MakeLongPath(wide)", [](SOperands&) { Discard(MakeLongPath(WideView)); }, Always},
    {"MakeShortPath(view)", [](SOperands&) { Discard(MakeShortPath(LongView)); }, Always},
    {"MakeShortPath(wide)", [](SOperands&) { Discard(MakeShortPath(WideView)); }, Always},
    {"TqCopyFile(view, view, ECopyFailType)",
     [](SOperands&) {
         // Onto itself, a failed check and a failed copy; copies that succeed are tested with the
         // copy itself.
         Discard(TqCopyFile("/proc/self/cmdline", "/proc/self/cmdline", ECopyFailType::Throw));
         ExpectNoCopy(LongPath, LongPath);
         ExpectNoCopy("/proc/self/cmdline", "/proc/self");
     },
     Always, EMakesDo::AtMalloc},
    {"oss_system(view, view, view)", RunCommand, Always, EMakesDo::AtMalloc},
    {"COSVersionInfo::COSVersionInfo()", [](SOperands&) { COSVersionInfo const made; }, Always},
    {"COSVersionInfo::Major()", [](SOperands&) { COSVersionInfo().Major(); }, Always},
    {"COSVersionInfo::Minor()", [](SOperands&) { COSVersionInfo().Minor(); }, Always},
    {"COSVersionInfo::Patch()", [](SOperands&) { COSVersionInfo().Patch(); }, Always},
    {"void CustomDelete<COSVersionInfoImpl>(COSVersionInfoImpl*)",
     [](SOperands&) { COSVersionInfo const made; }, Always},
    {"GetVersionMajor", [](SOperands&) { GetVersionMajor(); }},
    {"GetVersionMinor", [](SOperands&) { GetVersionMinor(); }},
    {"GetVersionPatch", [](SOperands&) { GetVersionPatch(); }},
    {"GetVersionTweak", [](SOperands&) { GetVersionTweak(); }},
};

void Replace(std::string& text, std::string const& what, std::string const& by)
{
    for (std::size_t found = text.find(what); found != std::string::npos; found = text.find(what))
        text.replace(found, what.size(), by);
}
} // namespace

SOperands::SOperands()
    : doomed(LongView, std::nullopt, LongView, LongView, LongView, LongView, LongView, LongView,
             LongView)
{
    std::strcpy(buffer.Get(10), "kept");
    std::memset(largeBuffer.Get(4000), 'x', 4000);
    std::get<std::optional<CSimpleBuffer>>(doomed).emplace(largeBuffer);
    TQAppExitException::ExceptionThrown(false);
    TQUserAbort::EnableUserAbort(false);
    TQUserAbort::UserAbortReset();
}

std::string SOperands::Describe() const
{
    std::ostringstream description;
    description << text << '|' << other << '|';
    for (CSafeString const& item : items)
        description << item << ',';
    description << const_cast<CSimpleBuffer&>(buffer).Get(0) << '|' << block << '|'
                << TQAppExitException::ExceptionThrown() << TQUserAbort::UserAbortSent()
                << TQUserAbort::UserAbortRequested() << TQUserAbort::UserAbortEnabled()
                << TQUserAbort::IsPaused() << TQUserAbort::IsUserAbortOk()
                << (UIHelperBase::m_AppName == nullptr ? "" : UIHelperBase::m_AppName)
                << (UIHelperBase::m_UISignaler == nullptr);
    return description.str();
}

std::vector<SEntryPoint> const& EntryPoints()
{
    static std::vector<SEntryPoint> const all = [] {
        std::vector<SEntryPoint> together;
        for (auto const* part : {&strings, &utilities, &errors, &runControl, &platform})
            together.insert(together.end(), part->begin(), part->end());
        return together;
    }();
    return all;
}

std::string Abbreviated(std::string exportedName)
{
    Replace(exportedName, "basic_sv_wrapper<char, std::char_traits<char> > const&", "view");
    Replace(exportedName, "basic_sv_wrapper<char, std::char_traits<char> >", "view");
    Replace(exportedName, "basic_sv_wrapper<wchar_t, std::char_traits<wchar_t> >", "wide");
    Replace(exportedName, "basic_sv_wrapper<char16_t, std::char_traits<char16_t> >", "utf16");
    Replace(exportedName, "std::vector<CSafeString, std::allocator<CSafeString> > const&",
            "strings");
    Replace(exportedName, "[abi:cxx11]", "");
    Replace(exportedName, "__cxx11::", "");
    for (std::string const type : {"char", "char16_t"}) {
        std::string const name = type == "char" ? "std::string" : "std::u16string";
        Replace(exportedName,
                "std::basic_string<" + type + ", std::char_traits<" + type + ">, std::allocator<"
                    + type + "> >",
                name);
    }
    Replace(exportedName, " >(", ">(");
    return exportedName;
}
