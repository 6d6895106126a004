#include "Allocations.h"
#include "Threads.h"

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/UIHelperBase.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <type_traits>

namespace
{
// As the program found them when it was loaded.
char const* const appNameAtLoad = UIHelperBase::m_AppName;
CQtSignaler* const signalerAtLoad = UIHelperBase::m_UISignaler;
EUserInputState const stateAtLoad = UIHelperBase::m_UserInputState;
EUserInputState const stateReturnedAtLoad = UIHelperBase::UserInputState();

class CRestoreRegistry
{
public:
    CRestoreRegistry() = default;
    CRestoreRegistry(CRestoreRegistry const&) = delete;
    CRestoreRegistry& operator=(CRestoreRegistry const&) = delete;
    ~CRestoreRegistry()
    {
        UIHelperBase::m_AppName = m_AppName;
        UIHelperBase::m_UISignaler = m_Signaler;
        UIHelperBase::m_UserInputState = m_State;
    }

private:
    char const* const m_AppName = UIHelperBase::m_AppName;
    CQtSignaler* const m_Signaler = UIHelperBase::m_UISignaler;
    EUserInputState const m_State = UIHelperBase::m_UserInputState;
};

class UIHelperBaseTest : public testing::Test
{
private:
    CRestoreRegistry const m_Restore;
};

using View = basic_sv_wrapper<char>;

// The first name decides for the whole process, so that each is tried in a process of its own.
struct NameRow
{
    char const* name;
    View first;
    char expected;
};

NameRow const nameRows[] = {
    {"Text", "Torqel", '\1'},
    {"OneCharacter", "x", '\1'},
    {"OneNul", View("\0", 1), '\1'},
    {"Empty", "", '\0'},
    {"Unset", View(), '\0'},
    {"Null", static_cast<char const*>(nullptr), '\0'},
    {"UnsetWithLength", View(nullptr, 3), '\0'},
};

class UIHelperBaseNameDeathTest : public testing::TestWithParam<NameRow>
{
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

INSTANTIATE_TEST_SUITE_P(All, UIHelperBaseNameDeathTest, testing::ValuesIn(nameRows),
                         [](auto const& row) { return std::string(row.param.name); });

void ExitUnless(bool holds, int code)
{
    if (!holds)
        std::_Exit(code);
}

// The text's one character and the terminating NUL behind it.
bool IsOneCharacter(char const* text, char character)
{
    return text != nullptr && text[0] == character && text[1] == '\0';
}
} // namespace

TEST_F(UIHelperBaseTest, HoldsNothingAtLoad)
{
    EXPECT_EQ(appNameAtLoad, nullptr);
    EXPECT_EQ(signalerAtLoad, nullptr);
    EXPECT_EQ(static_cast<int>(stateAtLoad), 0);
    EXPECT_EQ(static_cast<int>(stateReturnedAtLoad), 0);
}

TEST_F(UIHelperBaseTest, HasMembersOfTheirExactTypes)
{
    static_assert(std::is_same_v<decltype(UIHelperBase::m_AppName), char const*>);
    static_assert(std::is_same_v<decltype(UIHelperBase::m_UISignaler), CQtSignaler*>);
    static_assert(std::is_same_v<decltype(UIHelperBase::m_UserInputState), EUserInputState>);
    static_assert(std::is_same_v<decltype(UIHelperBase::UserInputState()), EUserInputState&>);
    static_assert(std::is_empty_v<UIHelperBase>);
    static_assert(!std::is_polymorphic_v<UIHelperBase>);
}

TEST_F(UIHelperBaseTest, PointsAtTheSignalerRegisteredLast)
{
    CQtSignaler first, second;
    UIHelperBase::QtSignaler(first);
    EXPECT_EQ(UIHelperBase::m_UISignaler, &first);
    UIHelperBase::QtSignaler(second);
    EXPECT_EQ(UIHelperBase::m_UISignaler, &second);
}

TEST_F(UIHelperBaseTest, KeepsPointingWhereTheSignalerWas)
{
    CQtSignaler* registered = nullptr;
    {
        CQtSignaler signaler;
        registered = &signaler;
        UIHelperBase::QtSignaler(signaler);
    }
    EXPECT_EQ(UIHelperBase::m_UISignaler, registered);
}

TEST_F(UIHelperBaseTest, ReturnsTheUserInputStateGivenLast)
{
    for (int const value : {1, 0, -1, 2147483647, -2147483647 - 1}) {
        SCOPED_TRACE(value);
        UIHelperBase::UserInputState(static_cast<EUserInputState>(value));
        EXPECT_EQ(static_cast<int>(UIHelperBase::UserInputState()), value);
        EXPECT_EQ(static_cast<int>(UIHelperBase::m_UserInputState), value);
    }
}

TEST_F(UIHelperBaseTest, ReturnsTheUserInputStateItself)
{
    EXPECT_EQ(&UIHelperBase::UserInputState(), &UIHelperBase::m_UserInputState);
    UIHelperBase::UserInputState() = static_cast<EUserInputState>(7);
    EXPECT_EQ(static_cast<int>(UIHelperBase::m_UserInputState), 7);
}

TEST_P(UIHelperBaseNameDeathTest, KeepsOnlyWhetherTheFirstNameWasSet)
{
    EXPECT_EXIT(
        {
            UIHelperBase::AppName(GetParam().first);
            ExitUnless(IsOneCharacter(UIHelperBase::m_AppName, GetParam().expected), 1);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(UIHelperBaseNameDeathTest, IsNotChangedByLaterNames)
{
    EXPECT_EXIT(
        {
            UIHelperBase::AppName(GetParam().first);
            char const* const text = UIHelperBase::m_AppName;
            for (View const later : {View("another name"), View(""), View()}) {
                UIHelperBase::AppName(later);
                ExitUnless(UIHelperBase::m_AppName == text, 1);
                ExitUnless(IsOneCharacter(text, GetParam().expected), 2);
            }
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

// A first call that fails makes no text, and the next one decides.
TEST(UIHelperBaseFirstNameDeathTest, LeavesNothingWhenItsAllocationFails)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const nameTwice = [] {
        bool threw = false;
        try {
            CAllocationFailure const failure(1);
            UIHelperBase::AppName("Torqel");
        } catch (std::bad_alloc const&) {
            threw = true;
        }
        ExitUnless(threw, 1);
        ExitUnless(UIHelperBase::m_AppName == nullptr, 2);
        UIHelperBase::AppName("");
        ExitUnless(IsOneCharacter(UIHelperBase::m_AppName, '\0'), 3);
        std::_Exit(0);
    };
    EXPECT_EXIT(nameTwice(), testing::ExitedWithCode(0), "");
}

// What is registered first is called last.
TEST(UIHelperBaseFirstNameDeathTest, LastsUntilTheProcessExitsAndIsReleasedThen)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const nameAndExit = [] {
        static CAllocationCounter const during;
        std::atexit([] { std::_Exit(during.Live() == 0 ? 0 : 1); });
        UIHelperBase::AppName("Torqel");
        ExitUnless(during.Live() != 0, 2);
        std::exit(3);
    };
    EXPECT_EXIT(nameAndExit(), testing::ExitedWithCode(0), "");
}

TEST_F(UIHelperBaseTest, PointsAtTheSameTextAgainAfterTheMemberWasChanged)
{
    UIHelperBase::AppName("Torqel");
    char const* const text = UIHelperBase::m_AppName;
    UIHelperBase::m_AppName = "spelled out";
    UIHelperBase::AppName("");
    EXPECT_EQ(UIHelperBase::m_AppName, text);
}

// The pointer is a plain store, so that each thread's call is compared before the next may begin;
// only the calls that make the text meet.
TEST(UIHelperBaseFirstNameDeathTest, IsMadeOnceByConcurrentFirstCalls)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            char const* seen[8] = {};
            CBarrier start(8);
            RunOnThreads(8, [&](unsigned index) {
                start.Wait();
                UIHelperBase::AppName(index % 2 == 0 ? View("Torqel") : View());
                seen[index] = __atomic_load_n(&UIHelperBase::m_AppName, __ATOMIC_RELAXED);
            });
            for (char const* const text : seen)
                ExitUnless(text == UIHelperBase::m_AppName && text != nullptr, 1);
            ExitUnless(IsOneCharacter(UIHelperBase::m_AppName, '\0')
                           || IsOneCharacter(UIHelperBase::m_AppName, '\1'),
                       2);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}
