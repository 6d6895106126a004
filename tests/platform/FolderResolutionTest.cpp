#include <BaseUtilities/FolderResolution.h>

#include "Allocations.h"
#include "Privileges.h"
#include "ScopedCurrentPath.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <QCoreApplication>
#include <QString>

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace
{
std::string Bytes(CSafeString const& text)
{
    return std::string(text.data(), text.size());
}

auto const NameOfRow = [](auto const& row) { return std::string(row.param.m_Name); };

struct SSwitchRow
{
    char const* m_Name;
    std::optional<std::string> m_Value;
    bool m_IsOn;
};

class CheckEnvVarTable : public testing::TestWithParam<SSwitchRow>
{
};

char const* const SwitchName = "BASEUTILITIES_TEST_SWITCH";
} // namespace

TEST_P(CheckEnvVarTable, Switch)
{
    CScopedEnvironment const value(SwitchName, GetParam().m_Value);
    EXPECT_EQ(CheckEnvVar(SwitchName), GetParam().m_IsOn);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CheckEnvVarTable,
    testing::Values(
        SSwitchRow{"UnsetIsOff", std::nullopt, false}, SSwitchRow{"EmptyIsOff", "", false},
        SSwitchRow{"ZeroIsOff", "0", false}, SSwitchRow{"OneIsOn", "1", true},
        SSwitchRow{"TwoDigitsAreOn", "10", true}, SSwitchRow{"ManyZerosAreOff", "0000", false},
        SSwitchRow{"HexadecimalZeroIsOff", "0x0", false},
        SSwitchRow{"HexadecimalIsOn", "0x10", true},
        SSwitchRow{"HexadecimalInUpperCaseIsOn", "0XA", true},
        SSwitchRow{"HexadecimalLetterIsOn", "0xf", true},
        SSwitchRow{"HexadecimalPrefixWithoutDigitsIsOff", "0x", false},
        SSwitchRow{"HexadecimalPrefixWithOtherLettersIsOff", "0xg1", false},
        SSwitchRow{"OctalZeroIsOff", "00", false}, SSwitchRow{"OctalIsOn", "010", true},
        SSwitchRow{"OctalEndsBeforeAnEight", "08", false},
        SSwitchRow{"OctalOneBeforeAnEightIsOn", "018", true},
        SSwitchRow{"MinusOneIsOn", "-1", true}, SSwitchRow{"PlusOneIsOn", "+1", true},
        SSwitchRow{"MinusZeroIsOff", "-0", false}, SSwitchRow{"PlusZeroIsOff", "+0", false},
        SSwitchRow{"SignAloneIsOff", "-", false}, SSwitchRow{"TwoSignsAreOff", "+-1", false},
        SSwitchRow{"BlankBehindTheSignIsOff", "- 1", false},
        SSwitchRow{"LeadingBlanksAreSkipped", " \t\n 1", true},
        SSwitchRow{"LeadingBlanksBeforeASign", "  -7", true},
        SSwitchRow{"LeadingBlanksBeforeZero", "  0", false},
        SSwitchRow{"BlanksAloneAreOff", "   ", false},
        SSwitchRow{"LettersBehindADigitAreIgnored", "2abc", true},
        SSwitchRow{"LettersBehindAZeroAreIgnored", "0abc", false},
        SSwitchRow{"NumberBehindAZeroIsIgnored", "0 1", false},
        SSwitchRow{"FractionBehindAZeroIsIgnored", "0.9", false},
        SSwitchRow{"LettersAreOff", "yes", false}, SSwitchRow{"TrueIsOff", "true", false},
        SSwitchRow{"HexadecimalLettersWithoutPrefixAreOff", "ff", false},
        SSwitchRow{"LettersBeforeADigitAreOff", "a1", false},
        SSwitchRow{"PunctuationIsOff", "#1", false},
        SSwitchRow{"LargestNumberIsOn", "18446744073709551615", true},
        SSwitchRow{"NumberWhoseLowHalfIsZeroIsOn", "0x100000000", true},
        SSwitchRow{"OverflowIsOn", "18446744073709551616", true},
        SSwitchRow{"LongOverflowIsOn", std::string(200, '9'), true},
        SSwitchRow{"NegativeOverflowIsOn", "-99999999999999999999999", true}),
    NameOfRow);

TEST(CheckEnvVar, IsOffForAnEmptyName)
{
    EXPECT_FALSE(CheckEnvVar(""));
    EXPECT_FALSE(CheckEnvVar(basic_sv_wrapper<char>()));
}

TEST(CheckEnvVar, DoesNotConsultTheEnvironmentForAnEmptyName)
{
    CScopedEnvironment const value(SwitchName, "1");
    CAllocationCounter const during;
    EXPECT_FALSE(CheckEnvVar(basic_sv_wrapper<char>(SwitchName, 0)));
    EXPECT_EQ(during.Count(), 0u); // not even the terminated copy of the name
}

TEST(CheckEnvVar, ReadsTheNameOnlyAsFarAsTheViewReaches)
{
    CScopedEnvironment const value(SwitchName, "1");
    std::string const longer = SwitchName + "_OTHER"s;
    EXPECT_TRUE(CheckEnvVar(basic_sv_wrapper<char>(longer.data(), longer.size() - 6)));
    EXPECT_FALSE(CheckEnvVar(longer));
}

TEST(CheckEnvVar, DistinguishesNamesByCase)
{
    CScopedEnvironment const value(SwitchName, "1");
    CScopedEnvironment const other("baseutilities_test_switch", std::nullopt);
    EXPECT_FALSE(CheckEnvVar("baseutilities_test_switch"));
}

TEST(CheckEnvVar, SeesAChangeAtTheNextCall)
{
    CScopedEnvironment value(SwitchName, "1");
    EXPECT_TRUE(CheckEnvVar(SwitchName));
    value.Set("0");
    EXPECT_FALSE(CheckEnvVar(SwitchName));
    value.Set(std::nullopt);
    EXPECT_FALSE(CheckEnvVar(SwitchName));
}

namespace
{
template <class Operation>
void ExpectNullIsRefused(Operation operation)
{
    try {
        operation(basic_sv_wrapper<char>(nullptr, 3));
        ADD_FAILURE() << "nothing was thrown";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
}

using View = basic_sv_wrapper<char> const&;
} // namespace

TEST(FolderResolution, RefusesNullViewsWithALength)
{
    ExpectNullIsRefused([](View null) { CheckEnvVar(null); });
    ExpectNullIsRefused([](View null) { GetAppInstallPathName(null); });
    ExpectNullIsRefused([](View null) { AppendToPath(null, "x"); });
    ExpectNullIsRefused([](View null) { AppendToPath("x", null); });
    ExpectNullIsRefused([](View null) { AppendToPath(fs::path("x"), null); });
    ExpectNullIsRefused([](View null) { MakeLongPath(null); });
    ExpectNullIsRefused([](View null) { MakeShortPath(null); });
}

namespace
{
struct SJoinRow
{
    char const* m_Name;
    std::string m_Base;
    std::string m_Appended;
    std::string m_Result;
};

class AppendToPathTable : public testing::TestWithParam<SJoinRow>
{
};
} // namespace

TEST_P(AppendToPathTable, GivesTheSameTextByBothOverloads)
{
    SJoinRow const& row = GetParam();
    EXPECT_EQ(Bytes(AppendToPath(basic_sv_wrapper<char>(row.m_Base), row.m_Appended)),
              row.m_Result);
    EXPECT_EQ(Bytes(AppendToPath(fs::path(row.m_Base), row.m_Appended)), row.m_Result);
}

TEST_P(AppendToPathTable, JoinsAsTheStandardPathDoes)
{
    SJoinRow const& row = GetParam();
    fs::path joined(row.m_Base);
    joined /= fs::path(row.m_Appended);
    EXPECT_EQ(Bytes(AppendToPath(fs::path(row.m_Base), row.m_Appended)), joined.native());
    EXPECT_EQ(Bytes(AppendToPath(basic_sv_wrapper<char>(row.m_Base), row.m_Appended)),
              joined.native());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AppendToPathTable,
    testing::Values(SJoinRow{"OneSeparatorIsInserted", "/a/b", "c", "/a/b/c"},
                    SJoinRow{"NoneBehindATrailingSeparator", "/a/b/", "c", "/a/b/c"},
                    SJoinRow{"DoubledSeparatorsStay", "/a//", "c", "/a//c"},
                    SJoinRow{"RootTakesNoOtherSeparator", "/", "c", "/c"},
                    SJoinRow{"AbsoluteNameReplacesTheBase", "/a", "/c/d", "/c/d"},
                    SJoinRow{"AbsoluteNameReplacesARelativeBase", "a", "/c", "/c"},
                    SJoinRow{"EmptyBaseGivesTheNameAlone", "", "c", "c"},
                    SJoinRow{"EmptyBaseGivesAnAbsoluteNameAlone", "", "/c", "/c"},
                    SJoinRow{"EmptyNameEndsTheBaseWithASeparator", "/a", "", "/a/"},
                    SJoinRow{"EmptyNameBehindASeparator", "/a/", "", "/a/"},
                    SJoinRow{"BothEmpty", "", "", ""},
                    SJoinRow{"RelativeBase", "a", "b/c", "a/b/c"},
                    SJoinRow{"DotsAreKept", "a/.", "../c", "a/./../c"},
                    SJoinRow{"BlanksAreKept", "/my files ", " c d", "/my files / c d"},
                    SJoinRow{"NameEndingInASeparator", "/a", "c/", "/a/c/"},
                    SJoinRow{"TextBeyondAscii", "/\xC3\xA4", "\xE2\x82\xAC",
                             "/\xC3\xA4/\xE2\x82\xAC"},
                    SJoinRow{"IllFormedBytesAreKept", "/\xFF", "\xC3", "/\xFF/\xC3"},
                    SJoinRow{"BackslashIsALetter", "a\\", "b\\c", "a\\/b\\c"},
                    SJoinRow{"NulsAreKept", "a\0b"s, "c\0d"s, "a\0b/c\0d"s},
                    SJoinRow{"LongTexts", "/" + std::string(3000, 'a'), std::string(3000, 'b'),
                             "/" + std::string(3000, 'a') + "/" + std::string(3000, 'b')}),
    NameOfRow);

TEST(AppendToPath, TakesEveryKindOfText)
{
    char buffer[16] = "/a";
    char const* const pointer = "/a";
    CSafeString const safe("/a");
    std::string const standard = "/a";
    for (CSafeString const& result :
         {AppendToPath("/a", "b"), AppendToPath(pointer, "b"), AppendToPath(safe, "b"),
          AppendToPath(standard, std::string("b")), AppendToPath(buffer, "b"),
          AppendToPath(std::string_view("/a"), std::string_view("b")),
          AppendToPath(basic_sv_wrapper<char>("/a"), CSafeString("b")),
          AppendToPath(fs::path("/a"), "b"), AppendToPath(CSafeString("/a"), "b"),
          AppendToPath(std::string("/a"), "b")})
        EXPECT_EQ(Bytes(result), "/a/b");
}

TEST(AppendToPath, TakesUnsetViewsAsEmpty)
{
    EXPECT_EQ(Bytes(AppendToPath(basic_sv_wrapper<char>(), "c")), "c");
    EXPECT_EQ(Bytes(AppendToPath("/a", basic_sv_wrapper<char>())), "/a/");
}

TEST(AppendToPath, LeavesTheBaseAsItWas)
{
    fs::path const base("/a");
    AppendToPath(base, "b");
    EXPECT_EQ(base, "/a");
}

TEST(AppendToPath, PassesOnEveryFailedAllocation)
{
    std::string const base(100, 'a');
    std::string const name(100, 'b');
    fs::path const path(base);
    CAllocationCounter const during;
    EXPECT_GT(FailEachAllocation([&] { AppendToPath(base, name); }, [] {}), 2);
    EXPECT_GT(FailEachAllocation([&] { AppendToPath(path, name); }, [] {}), 2);
    EXPECT_EQ(during.Live(), 0);
}

namespace
{
/// A private home, configuration and data folders, and nothing of the user's.
class StandardFolders : public testing::Test
{
protected:
    std::string MakeFolder(std::string const& name)
    {
        fs::create_directories(m_Folder / name);
        return m_Folder / name;
    }
    /// Names the documents folder in the user's configuration file.
    void SetDocuments(std::string const& value, std::string const& config = "config")
    {
        MakeFolder(config);
        WriteFile(m_Folder / config + "/user-dirs.dirs",
                  "# folders\nXDG_DESKTOP_DIR=\"$HOME/Desk\"\nXDG_DOCUMENTS_DIR=\"" + value
                      + "\"\n");
    }

    CTemporaryFolder m_Folder;
    CScopedEnvironment m_Home{"HOME", MakeFolder("home")};
    CScopedEnvironment m_Config{"XDG_CONFIG_HOME", MakeFolder("config")};
    CScopedEnvironment m_Data{"XDG_DATA_HOME", m_Folder / "data"};
    CScopedEnvironment m_SystemData{"XDG_DATA_DIRS", m_Folder / "first:" + m_Folder / "second"};
};

class CApplicationName
{
public:
    explicit CApplicationName(QString const& name) { QCoreApplication::setApplicationName(name); }
    CApplicationName(CApplicationName const&) = delete;
    CApplicationName& operator=(CApplicationName const&) = delete;
    ~CApplicationName() { QCoreApplication::setApplicationName(m_Before); }

private:
    QString m_Before = QCoreApplication::applicationName();
};

std::string Documents()
{
    return Bytes(GetStandardDirName(QStandardPaths::DocumentsLocation));
}

std::string Applications()
{
    return Bytes(GetStandardDirName(QStandardPaths::ApplicationsLocation));
}
} // namespace

TEST_F(StandardFolders, DocumentsStandInTheHomeFolderByDefault)
{
    std::string const expected = MakeFolder("home/Documents");
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, DocumentsFollowTheUsersConfigurationBelowTheHomeFolder)
{
    MakeFolder("home/Documents");
    SetDocuments("$HOME/Papers");
    std::string const expected = MakeFolder("home/Papers");
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, DocumentsFollowTheUsersConfigurationToAnAbsoluteFolder)
{
    std::string const expected = MakeFolder("my own papers");
    SetDocuments(expected);
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, ConfigurationStandsInTheHomeFolderByDefault)
{
    m_Config.Set(std::nullopt);
    SetDocuments("$HOME/Papers", "home/.config");
    std::string const expected = MakeFolder("home/Papers");
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, NamesBeyondAsciiAreUtf8)
{
    std::string const expected = MakeFolder("home/\xC3\x84kten\xE2\x82\xAC\xF0\x9F\x98\x80");
    SetDocuments(expected);
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, TrailingAndDoubledSeparatorsAreRemoved)
{
    std::string const expected = MakeFolder("home/Papers");
    SetDocuments("$HOME//Papers//");
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, FullStopsAreResolved)
{
    std::string const expected = MakeFolder("home/Papers");
    SetDocuments("$HOME/./other/../Papers/.");
    MakeFolder("home/other");
    EXPECT_EQ(Documents(), expected);
}

TEST_F(StandardFolders, RootKeepsItsSeparator)
{
    SetDocuments("/");
    EXPECT_EQ(Documents(), "/");
    EXPECT_EQ(Bytes(GetQuillonDocsPathName()), "/Quillon Test Suite");
}

TEST_F(StandardFolders, MissingDocumentsGiveEmptyTextAndBareRelativePaths)
{
    EXPECT_EQ(Documents(), "");
    EXPECT_EQ(Bytes(GetQuillonDocsPathName()), "Quillon Test Suite");
    EXPECT_EQ(Bytes(GetWorkFilesFolderPathName()), "Quillon Test Suite/Work Files");
    EXPECT_EQ(Bytes(GetQuillonJsonFolderPathName()),
              "Quillon Test Suite/Downloaded Quillon Vendor File");
}

TEST_F(StandardFolders, FileInPlaceOfTheDocumentsIsNoFolder)
{
    WriteFile(m_Folder / "home/Documents", "");
    EXPECT_EQ(Documents(), "");
}

// It is there, but nobody can go into it.
TEST_F(StandardFolders, DocumentsThatCannotBeEnteredAreNotFound)
{
    std::string const documents = MakeFolder("home/Documents");
    fs::permissions(m_Folder.Path(),
                    fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    fs::permissions(documents, fs::perms::owner_read | fs::perms::owner_write);
    CUnprivilegedFileAccess const unprivileged;
    std::error_code ignored;
    if (!fs::is_directory(documents, ignored))
        GTEST_SKIP() << "the folder of temporary files is closed to other users";
    EXPECT_EQ(Documents(), "");
}

TEST_F(StandardFolders, SuiteFoldersStandBelowTheDocuments)
{
    std::string const suite = MakeFolder("home/Documents") + "/Quillon Test Suite";
    EXPECT_EQ(Bytes(GetQuillonDocsPathName()), suite);
    EXPECT_EQ(Bytes(GetWorkFilesFolderPathName()), suite + "/Work Files");
}

// Deliberate in the library: "File", not "Files".
TEST_F(StandardFolders, FolderOfVendorFilesIsNamedInTheSingular)
{
    std::string const documents = MakeFolder("home/Documents");
    EXPECT_EQ(Bytes(GetQuillonJsonFolderPathName()),
              documents + "/Quillon Test Suite/Downloaded Quillon Vendor File");
}

TEST_F(StandardFolders, NothingIsCreated)
{
    std::string const documents = MakeFolder("home/Documents");
    GetQuillonDocsPathName();
    GetWorkFilesFolderPathName();
    GetQuillonJsonFolderPathName();
    GetAppInstallPathName("x");
    GetProgramDataParentFolder();
    EXPECT_TRUE(fs::is_empty(documents));
    EXPECT_FALSE(fs::exists(m_Folder / "data"));
}

TEST_F(StandardFolders, SuiteFolderIsNotChecked)
{
    std::string const suite = MakeFolder("home/Documents") + "/Quillon Test Suite";
    WriteFile(suite, "a file, not a folder");
    EXPECT_EQ(Bytes(GetWorkFilesFolderPathName()), suite + "/Work Files");
}

TEST_F(StandardFolders, ChangesBetweenCallsAreSeen)
{
    std::string const first = MakeFolder("home/Documents");
    EXPECT_EQ(Documents(), first);

    m_Home.Set(MakeFolder("other"));
    EXPECT_EQ(Documents(), "");
    std::string const second = MakeFolder("other/Documents");
    EXPECT_EQ(Documents(), second);

    SetDocuments("$HOME/Papers");
    std::string const third = MakeFolder("other/Papers");
    EXPECT_EQ(Documents(), third);
    EXPECT_EQ(Bytes(GetQuillonDocsPathName()), third + "/Quillon Test Suite");
}

TEST_F(StandardFolders, ApplicationsOfTheUserComeFirst)
{
    std::string const expected = MakeFolder("data/applications");
    MakeFolder("first/applications");
    MakeFolder("second/applications");
    EXPECT_EQ(Applications(), expected);
}

TEST_F(StandardFolders, ApplicationsOfTheSystemFollowInTheirOrder)
{
    std::string const last = MakeFolder("second/applications");
    EXPECT_EQ(Applications(), last);
    std::string const before = MakeFolder("first/applications");
    EXPECT_EQ(Applications(), before);
}

TEST_F(StandardFolders, ApplicationsStandInTheHomeFolderByDefault)
{
    m_Data.Set(std::nullopt);
    std::string const expected = MakeFolder("home/.local/share/applications");
    EXPECT_EQ(Applications(), expected);
}

TEST_F(StandardFolders, MissingApplicationsGiveEmptyText)
{
    EXPECT_EQ(Applications(), "");
}

TEST_F(StandardFolders, InstallPathIsTheNameBelowTheApplications)
{
    std::string const applications = MakeFolder("data/applications");
    EXPECT_EQ(Bytes(GetAppInstallPathName("Torqel")), applications + "/Torqel");
    EXPECT_EQ(Bytes(GetAppInstallPathName("a/b")), applications + "/a/b");
    EXPECT_EQ(Bytes(GetAppInstallPathName("")), applications + "/");
    EXPECT_EQ(Bytes(GetAppInstallPathName("/opt/x")), "/opt/x");
}

TEST_F(StandardFolders, InstallPathWithoutApplicationsIsTheNameAlone)
{
    EXPECT_EQ(Bytes(GetAppInstallPathName("Torqel")), "Torqel");
    EXPECT_EQ(Bytes(GetAppInstallPathName("")), "");
}

TEST_F(StandardFolders, InstallPathDoesNotDependOnTheCurrentFolder)
{
    std::string const applications = MakeFolder("data/applications");
    MakeFolder("elsewhere/Torqel");
    CScopedCurrentPath const current(m_Folder / "elsewhere");
    EXPECT_EQ(Bytes(GetAppInstallPathName("Torqel")), applications + "/Torqel");
}

TEST_F(StandardFolders, SharedDataOfTheUserComeFirst)
{
    std::string const first = MakeFolder("first");
    EXPECT_EQ(Bytes(GetProgramDataParentFolder()), first);
    std::string const own = MakeFolder("data");
    EXPECT_EQ(Bytes(GetProgramDataParentFolder()), own);
    EXPECT_EQ(Bytes(GetStandardDirName(QStandardPaths::GenericDataLocation)), own);
}

TEST_F(StandardFolders, SharedDataFollowTheSystemsOrder)
{
    std::string const second = MakeFolder("second");
    EXPECT_EQ(Bytes(GetProgramDataParentFolder()), second);
}

// Data shared between applications: no application's name stands in the path.
TEST_F(StandardFolders, NoFolderDependsOnTheApplicationsName)
{
    std::string const own = MakeFolder("data");
    std::string const applications = MakeFolder("data/applications");
    MakeFolder("data/Torqel/applications");
    CApplicationName const name("Torqel");
    EXPECT_EQ(Bytes(GetProgramDataParentFolder()), own);
    EXPECT_EQ(Applications(), applications);
}

TEST_F(StandardFolders, MissingSharedDataGiveEmptyText)
{
    EXPECT_EQ(Bytes(GetProgramDataParentFolder()), "");
}

TEST_F(StandardFolders, OtherLocationsAreResolvedAlike)
{
    EXPECT_EQ(Bytes(GetStandardDirName(QStandardPaths::HomeLocation)), m_Folder / "home");
    EXPECT_EQ(Bytes(GetStandardDirName(QStandardPaths::GenericConfigLocation)),
              m_Folder / "config");
}

TEST_F(StandardFolders, NoLocationEndsInASeparatorOrAFullStop)
{
    MakeFolder("home/Documents");
    for (int location = QStandardPaths::DesktopLocation;
         location <= QStandardPaths::AppConfigLocation; ++location) {
        SCOPED_TRACE(location);
        std::string const name =
            Bytes(GetStandardDirName(static_cast<QStandardPaths::StandardLocation>(location)));
        if (!name.empty()) {
            EXPECT_NE(name.back(), '/') << name;
            EXPECT_NE(name.back(), '.') << name;
        }
    }
}

TEST_F(StandardFolders, EveryFailedAllocationIsPassedOn)
{
    MakeFolder("home/Documents");
    MakeFolder("data/applications");
    // Once beforehand, so that what Qt makes once per process is made.
    GetQuillonJsonFolderPathName();
    std::string const name(100, 'n');
    CAllocationCounter const during;
    EXPECT_GT(FailEachAllocation([&] { GetAppInstallPathName(name); }, [] {}), 2);
    EXPECT_GT(FailEachAllocation([] { GetQuillonDocsPathName(); }, [] {}), 2);
    EXPECT_GT(FailEachAllocation([] { GetWorkFilesFolderPathName(); }, [] {}), 2);
    EXPECT_GT(FailEachAllocation([] { GetQuillonJsonFolderPathName(); }, [] {}), 2);
    EXPECT_GT(FailEachAllocation([] { GetProgramDataParentFolder(); }, [] {}), 0);
    EXPECT_GT(FailEachAllocation([&] { CheckEnvVar(name); }, [] {}), 0);
    EXPECT_EQ(during.Live(), 0);
}

namespace
{
struct SConversionRow
{
    char const* m_Name;
    std::string m_Text;
    std::wstring m_Wide;
};

class ConversionPoints : public testing::TestWithParam<SConversionRow>
{
};
} // namespace

TEST_P(ConversionPoints, ReturnTheSameText)
{
    EXPECT_EQ(Bytes(MakeLongPath(GetParam().m_Text)), GetParam().m_Text);
    EXPECT_EQ(Bytes(MakeShortPath(GetParam().m_Text)), GetParam().m_Text);
}

TEST_P(ConversionPoints, ReturnWideTextAsUtf8)
{
    EXPECT_EQ(Bytes(MakeLongPath(basic_sv_wrapper<wchar_t>(GetParam().m_Wide))), GetParam().m_Text);
    EXPECT_EQ(Bytes(MakeShortPath(basic_sv_wrapper<wchar_t>(GetParam().m_Wide))),
              GetParam().m_Text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ConversionPoints,
    testing::Values(SConversionRow{"Empty", "", L""},
                    SConversionRow{"Path", "/a/b c.txt", L"/a/b c.txt"},
                    SConversionRow{"NothingIsCleaned", "a//./b/../", L"a//./b/../"},
                    SConversionRow{"BackslashesStay", "C:\\a", L"C:\\a"},
                    SConversionRow{"BeyondAscii", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
                                   L"\u00E4\u20AC\U0001F600"},
                    SConversionRow{"NulsAreKept", "a\0b"s, L"a\0b"s}),
    NameOfRow);

TEST(MakePath, KeepIllFormedBytes)
{
    EXPECT_EQ(Bytes(MakeLongPath("\xFF\xC3")), "\xFF\xC3");
    EXPECT_EQ(Bytes(MakeShortPath("\xFF\xC3")), "\xFF\xC3");
}

TEST(MakePath, PassOnEveryFailedAllocation)
{
    std::string const text(100, 'a');
    std::wstring const wide(100, L'a');
    basic_sv_wrapper<wchar_t> const wideView(wide);
    CAllocationCounter const during;
    EXPECT_GT(FailEachAllocation([&] { MakeLongPath(text); }, [] {}), 1);
    EXPECT_GT(FailEachAllocation([&] { MakeShortPath(text); }, [] {}), 1);
    EXPECT_GT(FailEachAllocation([&] { MakeLongPath(wideView); }, [] {}), 1);
    EXPECT_GT(FailEachAllocation([&] { MakeShortPath(wideView); }, [] {}), 1);
    EXPECT_EQ(during.Live(), 0);
}
