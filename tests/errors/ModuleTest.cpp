// Exceptions and shared statics across the executable, the library and a module
// that is loaded at run time with its names hidden.

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQException.h>
#include <BaseUtilities/TqCopyFile.h>

#include "Allocations.h"
#include "Messages.h"
#include "TemporaryFolder.h"
#include "TestModule.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace
{
constexpr TEST_STATUS OtherStatus = TEST_STATUS(0x12345678);

struct ModuleClass
{
    char const* name;
    std::type_info const* type;
};

ModuleClass const family[] = {
    {"TQException", &typeid(TQException)},
    {"TQAppException", &typeid(TQAppException)},
    {"TQDOMDocException", &typeid(TQDOMDocException)},
    {"TQParseTreeException", &typeid(TQParseTreeException)},
    {"TQRunTimeException", &typeid(TQRunTimeException)},
    {"CTestSuiteException", &typeid(CTestSuiteException)},
};

template <class Handler>
void ExpectModuleThrowIsCaughtAs(char const* className)
{
    SCOPED_TRACE(className);
    try {
        LoadTestModule().raise(className, "message", OtherStatus);
        ADD_FAILURE() << "nothing was thrown";
    } catch (Handler const& caught) {
        EXPECT_STREQ(caught.what(), "message");
    } catch (...) {
        ADD_FAILURE() << "not caught";
    }
}

// Clears the flag of exit requests and puts back what it was.
class CScopedExitFlag
{
public:
    CScopedExitFlag() { TQAppExitException::ExceptionThrown(false); }
    CScopedExitFlag(CScopedExitFlag const&) = delete;
    CScopedExitFlag& operator=(CScopedExitFlag const&) = delete;
    ~CScopedExitFlag() { TQAppExitException::ExceptionThrown(m_Before); }

private:
    bool m_Before = TQAppExitException::ExceptionThrown();
};

void CopyMissingFile()
{
    CTemporaryFolder const folder;
    TqCopyFile(folder / "missing", folder / "copy", ECopyFailType::Throw);
}
} // namespace

// One type information each, so that handlers need not compare names.
TEST(ErrorsAcrossModules, TypesAreTheSameObjectsInTheModule)
{
    for (ModuleClass const& row : family)
        EXPECT_EQ(LoadTestModule().typeOf(row.name), row.type) << row.name;
    EXPECT_EQ(LoadTestModule().typeOf("TQAppExitException"), &typeid(TQAppExitException));
}

TEST(ErrorsAcrossModules, ModulesExceptionIsCaughtByItsExactType)
{
    ExpectModuleThrowIsCaughtAs<TQException>("TQException");
    ExpectModuleThrowIsCaughtAs<TQAppException>("TQAppException");
    ExpectModuleThrowIsCaughtAs<TQDOMDocException>("TQDOMDocException");
    ExpectModuleThrowIsCaughtAs<TQParseTreeException>("TQParseTreeException");
    ExpectModuleThrowIsCaughtAs<TQRunTimeException>("TQRunTimeException");
    ExpectModuleThrowIsCaughtAs<CTestSuiteException>("CTestSuiteException");
    ExpectModuleThrowIsCaughtAs<TQAppExitException>("TQAppExitException");
}

TEST(ErrorsAcrossModules, ModulesExceptionIsCaughtByItsBases)
{
    for (ModuleClass const& row : family) {
        ExpectModuleThrowIsCaughtAs<TQException>(row.name);
        ExpectModuleThrowIsCaughtAs<std::runtime_error>(row.name);
    }
    ExpectModuleThrowIsCaughtAs<TQDOMDocException>("CTestSuiteException");
}

TEST(ErrorsAcrossModules, ModulesExceptionKeepsTypeTextAndStatus)
{
    for (ModuleClass const& row : family) {
        SCOPED_TRACE(row.name);
        Caught const caught = Catch([&] { LoadTestModule().raise(row.name, "text", OtherStatus); });
        ASSERT_NE(caught.type, nullptr);
        EXPECT_EQ(*caught.type, *row.type);
        EXPECT_EQ(caught.text, "text");
        EXPECT_EQ(caught.status, OtherStatus);
    }
}

TEST(ErrorsAcrossModules, ModulesFormattedMessageArrives)
{
    Caught const caught = Catch([] { LoadTestModule().raiseFormatted(OtherStatus, "number", 7); });
    ASSERT_NE(caught.type, nullptr);
    EXPECT_EQ(*caught.type, typeid(TQRunTimeException));
    EXPECT_EQ(caught.text, "number 7");
    EXPECT_EQ(caught.status, OtherStatus);
}

TEST(ErrorsAcrossModules, LibrarysExceptionIsCaughtByExactTypeAndBases)
{
    EXPECT_THROW(CopyMissingFile(), TQRunTimeException);
    EXPECT_THROW(CopyMissingFile(), TQException);
    EXPECT_THROW(CopyMissingFile(), std::runtime_error);
    Caught const caught = Catch(CopyMissingFile);
    ASSERT_NE(caught.type, nullptr);
    EXPECT_EQ(*caught.type, typeid(TQRunTimeException));
    EXPECT_EQ(caught.status, TEST_STATUS_ERROR);
}

TEST(ErrorsAcrossModules, ModuleCatchesWhatOthersThrow)
{
    auto const& module = LoadTestModule();
    EXPECT_TRUE(module.catches("TQRunTimeException", CopyMissingFile));
    EXPECT_TRUE(module.catches("TQException", CopyMissingFile));
    EXPECT_FALSE(module.catches("TQAppException", CopyMissingFile));
    EXPECT_TRUE(module.catches("TQDOMDocException", [] { throw CTestSuiteException("x"); }));
    EXPECT_FALSE(module.catches("TQException", [] { throw std::runtime_error("x"); }));
}

TEST(ErrorsAcrossModules, StaticsAreOneForAll)
{
    auto const& module = LoadTestModule();
    EXPECT_EQ(module.exitFlag(), &TQAppExitException::m_ExceptionThrown);
    EXPECT_EQ(module.indentLevel(), &CFormattedString::m_sIndentLevel);
    EXPECT_EQ(module.emptyStr(), &CFormattedString::EMPTY_STR[0]);
}

TEST(ErrorsAcrossModules, ExitRequestMadeInTheModuleIsKnownOutside)
{
    CScopedExitFlag const cleared;
    EXPECT_THROW(LoadTestModule().raise("TQAppExitException", "leave", OtherStatus),
                 TQAppExitException);
    EXPECT_TRUE(TQAppExitException::ExceptionThrown());
}

TEST(ErrorsAcrossModules, HolderOfWhatTextsIsOneForAll)
{
    char const* const longText = "a text too long for any small buffer inside a string";
    TQException::DoMakeWhatString("x");
    EXPECT_STREQ(LoadTestModule().makeWhatString(longText), longText);
    CAllocationCounter const during;
    EXPECT_STREQ(TQException::DoMakeWhatString(longText), longText);
    EXPECT_EQ(during.Live(), 0); // it took the place of the module's text
}
