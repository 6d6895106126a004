// What the headers say under "Threads:", kept by eight threads at once: each must get what one
// thread alone got before them. ThreadSanitizer watches the same.

#include <BaseUtilities/CFormatInfo.h>
#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CMemWrapper.h>
#include <BaseUtilities/COSVersionInfo.h>
#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/EncodingConversions.h>
#include <BaseUtilities/FolderResolution.h>
#include <BaseUtilities/LibraryVersion.h>
#include <BaseUtilities/MakeTimeString.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TQUuid.h>
#include <BaseUtilities/TqCopyFile.h>
#include <BaseUtilities/UIHelperBase.h>

#include "AbortFlags.h"
#include "TemporaryFolder.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace
{
constexpr unsigned Threads = 8;
constexpr unsigned Rounds = 100; // of each thread

CSafeString const sharedText = "one text, read by all";
CQtSignaler* signaler = nullptr; // one for all threads of a test

// What the threads must not do at once, they do one after another.
std::mutex oneAtATime;

std::string ReadSharedString(unsigned number)
{
    CSafeString const copy(sharedText);
    EXPECT_TRUE(copy == sharedText);
    EXPECT_EQ(sharedText.compare(copy), 0);
    return (sharedText.substr(number % 8, 5) + sharedText.get()).get();
}

std::string ChangeOwnString(unsigned number)
{
    CSafeString text = CSafeString::to_string(number);
    text += ' ';
    text.append(3, 'x').append(CSafeString::to_string(number / 8.0));
    return (text + "." + CSafeString::do_join({text, text}, ',')).get();
}

std::string ViewSharedString(unsigned number)
{
    basic_sv_wrapper<char> const view(sharedText);
    basic_sv_wrapper<char> const part(view.data(), view.size() - number % 8);
    return std::string(part.data(), part.size()) + (part == view ? " whole" : "");
}

std::string ResizeOwnBuffer(unsigned number)
{
    CSimpleBuffer buffer;
    std::strcpy(buffer.Get(1024 * (number % 3 + 1)), "kept");
    CSimpleBuffer const copy(buffer);
    EXPECT_TRUE(copy == buffer);
    return buffer.Get(5);
}

std::string Convert(unsigned number)
{
    std::string const text = "\u00fc\u20ac" + std::to_string(number);
    auto const wide = Utf8ToUtf16(text);
    std::wstring const ucs4(number % 5, L'\u20ac');
    return *Utf16ToUtf8(*wide) + *StdWStrToUtf8(ucs4);
}

std::string SplitAndJoin(unsigned number)
{
    auto const parts = StringSplit("a,b," + std::to_string(number), ",");
    CSafeString const joined = StringJoin(parts, "; ") + PluralNoun(number, "part", "")
                               + PluralVerb(number, "fit", "") + ToLower("LOWER");
    return ToUpper(joined + CSafeString(80, 'z')).get();
}

std::string AllocateAndRelease(unsigned number)
{
    void* block = CMemWrapper::AllocateMemory(number % 64 + 1, true);
    auto* const bytes = static_cast<char*>(block);
    bool const zero = bytes[0] == 0 && bytes[number % 64] == 0;
    std::memset(block, 'x', number % 64 + 1);
    CMemWrapper::ReleaseMemory(block);
    return zero && block == nullptr ? "released" : "not zero";
}

std::string BuildMessage(unsigned number)
{
    CSimpleBuffer out;
    CBasicFlatString::DoBuild(out, {number % 4, '-'}, "%*u %g", int(number % 2000), number,
                              number / 4.0);
    return out.Get(0);
}

std::string FormatOwnText(unsigned number)
{
    CFormattedString const text("%s of %u: %g", sharedText, number, number / 2.0);
    return text.get();
}

template <class Exception, class... Args>
std::string Thrown(unsigned number, Args const&... args)
{
    try {
        DoThrow<Exception>(TEST_STATUS(number), "%u failed%s", number, args...);
    } catch (Exception const& caught) {
        return std::string(caught.what()) + "/" + std::to_string(caught.GetStatus());
    }
}

std::string ThrowMessages(unsigned number)
{
    return Thrown<TQException>(number, "") + Thrown<TQAppException>(number, std::string("!"))
           + Thrown<CTestSuiteException>(number, sharedText);
}

std::string ThrowTexts(unsigned number)
{
    try {
        throw TQParseTreeException(std::to_string(number), TEST_STATUS(number));
    } catch (TQException const& caught) {
        TQException const copy(caught);
        return std::string(copy.what()) + TQDOMDocException(nullptr).what();
    }
}

std::string MakeWhatStrings(unsigned number)
{
    std::lock_guard<std::mutex> const alone(oneAtATime);
    return TQException::DoMakeWhatString(std::to_string(number));
}

std::string RequestExit(unsigned number)
{
    try {
        throw TQAppExitException(std::to_string(number), TEST_STATUS(number));
    } catch (TQAppExitException const& caught) {
        TQAppExitException const copy(caught);
        return copy.what() + std::string(TQAppExitException::ExceptionThrown() ? " asked" : "");
    }
}

std::string WriteIdentifier(unsigned number)
{
    return TQUuid{number, 2, 3, {1, 2, 3, 4, 5, 6, 7, 8}}.ToString().get();
}

std::string WriteTime(unsigned number)
{
    std::lock_guard<std::mutex> const alone(oneAtATime);
    std::chrono::system_clock::time_point const when{std::chrono::hours(24 * number)};
    return MakeTimeString("%Y-%m-%d", when).get();
}

std::string MergeOwnFormat(unsigned number)
{
    CFormatInfo info, other;
    other.AddColor({number % 256, 2, 3, 255}, true);
    info.MergeFormat(other);
    return std::to_string(info.m_Color.m_Red) + (info.m_ColorChanged ? " changed" : "");
}

std::string PauseTheSuite(unsigned)
{
    TQUserAbort::UserAbortPause();
    TQUserAbort::SetUserAbortOk();
    EXPECT_NO_THROW(TQUserAbort::Send());
    return std::string(TQUserAbort::IsPaused() ? "paused" : "running")
           + (TQUserAbort::IsUserAbortOk() ? ", ok" : "");
}

std::string Ask(unsigned number)
{
    auto const answer = signaler->PickDirectory(std::to_string(number), "", "");
    return answer ? answer->get() : "no answer";
}

std::string ReadTheRegistry(unsigned)
{
    EXPECT_EQ(UIHelperBase::m_UISignaler, signaler);
    return UIHelperBase::m_AppName + std::to_string(int(UIHelperBase::UserInputState()));
}

std::string ReadVersions(unsigned)
{
    COSVersionInfo system;
    std::string text;
    for (int const part : {system.Major(), system.Minor(), system.Patch(), GetVersionMajor(),
                           GetVersionMinor(), GetVersionPatch(), GetVersionTweak()})
        text += std::to_string(part) + ".";
    return text;
}

std::string ResolveFolders(unsigned number)
{
    EXPECT_FALSE(CheckEnvVar("A variable that nobody sets"));
    CSafeString const name = CSafeString::to_string(number);
    std::string text = AppendToPath(GetQuillonDocsPathName(), name).get();
    for (CSafeString const& path :
         {GetStandardDirName(QStandardPaths::TempLocation), GetAppInstallPathName(name),
          AppendToPath(std::filesystem::path("/base"), name), GetWorkFilesFolderPathName(),
          GetQuillonJsonFolderPathName(), GetProgramDataParentFolder(), MakeLongPath(name),
          MakeLongPath(L"wide"), MakeShortPath(name), MakeShortPath(L"wide")})
        text += path.get();
    return text;
}

std::string FailToCopy(unsigned number)
{
    std::string const missing = "/nowhere/" + std::to_string(number);
    EXPECT_FALSE(TqCopyFile(missing, "/nowhere/copy", ECopyFailType::Report));
    try {
        TqCopyFile(missing, "/nowhere/copy", ECopyFailType::Throw);
    } catch (TQRunTimeException const& caught) {
        return caught.what();
    }
    return "copied";
}

struct PromiseRow
{
    char const* header;
    char const* name;
    std::string (*work)(unsigned number);
};

PromiseRow const promises[] = {
    {"CSafeString.h", "ReadOneStringAtOnce", ReadSharedString},
    {"CSafeString.h", "ChangeStringsOfTheirOwn", ChangeOwnString},
    {"basic_sv_wrapper.h", "ViewOneStringAtOnce", ViewSharedString},
    {"CSimpleBuffer.h", "ResizeBuffersOfTheirOwn", ResizeOwnBuffer},
    {"EncodingConversions.h", "ConvertAtOnce", Convert},
    {"StringUtilities.h", "SplitAndJoinAtOnce", SplitAndJoin},
    {"CMemWrapper.h", "AllocateAndReleaseAtOnce", AllocateAndRelease},
    {"CBasicFlatString.h", "BuildMessagesAtOnce", BuildMessage},
    {"CFormattedString.h", "FormatTextsOfTheirOwn", FormatOwnText},
    {"DoThrow.h", "ThrowMessagesAtOnce", ThrowMessages},
    {"TQException.h", "ThrowTextsAtOnce", ThrowTexts},
    {"TQException.h", "MakeWhatStringsInTurn", MakeWhatStrings},
    {"TQAppExitException.h", "RequestExitAtOnce", RequestExit},
    {"TQUuid.h", "WriteIdentifiersAtOnce", WriteIdentifier},
    {"MakeTimeString.h", "WriteTimesInTurn", WriteTime},
    {"CFormatInfo.h", "MergeFormatsOfTheirOwn", MergeOwnFormat},
    {"TQUserAbort.h", "PauseTheSuiteAtOnce", PauseTheSuite},
    {"CQtSignaler.h", "AskAtOnce", Ask},
    {"UIHelperBase.h", "ReadWhatWasSetBeforeThem", ReadTheRegistry},
    {"COSVersionInfo.h", "ReadTheSystemsVersionAtOnce", ReadVersions},
    {"LibraryVersion.h", "ReadTheLibrarysVersionAtOnce", ReadVersions},
    {"FolderResolution.h", "ResolveFoldersAtOnce", ResolveFolders},
    {"TqCopyFile.h", "FailToCopyAtOnce", FailToCopy},
};

// For one thread of the whole process, by the caller's care: a terminal and the current folder.
std::set<std::string> const singleThreaded = {"ConsoleKeyboard.h", "oss_system.h"};

class ThreadPromises : public testing::TestWithParam<PromiseRow>
{
protected:
    ThreadPromises()
    {
        QObject::connect(
            &m_Signaler, &CQtSignaler::PickDirectory, &m_Signaler,
            [](sv_wrapper const& text, sv_wrapper const&, sv_wrapper const&) {
                return CSafeString(text) + "!";
            },
            Qt::DirectConnection);
        signaler = &m_Signaler;
        UIHelperBase::QtSignaler(m_Signaler);
        UIHelperBase::m_AppName = "name";
        UIHelperBase::UserInputState(static_cast<EUserInputState>(5));
        TQUserAbort::EnableUserAbort(true);
    }

    ~ThreadPromises() override
    {
        signaler = nullptr;
        UIHelperBase::m_UISignaler = m_SignalerBefore;
        UIHelperBase::m_AppName = m_NameBefore;
        UIHelperBase::UserInputState(m_StateBefore);
        TQAppExitException::ExceptionThrown(m_ExitBefore);
    }

private:
    CRestoreAbortFlags const m_Restore;
    CQtSignaler* const m_SignalerBefore = UIHelperBase::m_UISignaler;
    char const* const m_NameBefore = UIHelperBase::m_AppName;
    EUserInputState const m_StateBefore = UIHelperBase::UserInputState();
    bool const m_ExitBefore = TQAppExitException::ExceptionThrown();
    CQtSignaler m_Signaler;
};

INSTANTIATE_TEST_SUITE_P(, ThreadPromises, testing::ValuesIn(promises),
                         [](auto const& row) { return std::string(row.param.name); });

bool SpeaksOfThreads(std::filesystem::path const& header)
{
    std::ifstream file(header);
    std::string const text{std::istreambuf_iterator<char>(file), {}};
    return text.find("Threads: ") != std::string::npos;
}
} // namespace

TEST_P(ThreadPromises, AreKeptByEightThreads)
{
    auto const work = GetParam().work;
    std::vector<std::string> expected;
    for (unsigned number = 0; number < Threads * Rounds; ++number)
        expected.push_back(work(number));

    std::vector<std::string> found(expected.size());
    CBarrier barrier(Threads);
    RunOnThreads(Threads, [&](unsigned index) {
        barrier.Wait();
        for (unsigned number = index; number < found.size(); number += Threads)
            found[number] = work(number);
    });
    EXPECT_EQ(found, expected);
}

// A new header that speaks of threads needs a row, too.
TEST(ThreadPromisesOfHeaders, HaveARowEach)
{
    std::set<std::string> covered = singleThreaded;
    for (PromiseRow const& row : promises)
        covered.insert(row.header);
    std::set<std::string> promised;
    for (auto const& entry : std::filesystem::directory_iterator(HEADERS))
        if (entry.is_regular_file() && SpeaksOfThreads(entry))
            promised.insert(entry.path().filename());
    EXPECT_EQ(covered, promised);
}
