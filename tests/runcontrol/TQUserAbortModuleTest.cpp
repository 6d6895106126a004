#include <BaseUtilities/TQUserAbort.h>

#include "AbortFlags.h"
#include "TestModule.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace
{
class TQUserAbortAcrossModules : public testing::Test
{
    CRestoreAbortFlags const m_Restore;
};
} // namespace

TEST_F(TQUserAbortAcrossModules, FlagsAreOneForAll)
{
    bool const* const flags[] = {&TQUserAbort::m_UserAbortOk, &TQUserAbort::m_UserAbortPaused,
                                 &TQUserAbort::m_UserAbortSent, &TQUserAbort::m_UserAbortRequested,
                                 &TQUserAbort::m_UserAbortEnabled};
    for (int place = 0; place < 5; ++place)
        EXPECT_EQ(LoadTestModule().abortFlag(place), flags[place]) << "place " << place;
}

// The library's operations and the flags seen here: the very same ones.
TEST_F(TQUserAbortAcrossModules, OperationsOfTheLibraryActOnTheFlagsOfTheExecutable)
{
    SetFlags("00000");
    TQUserAbort::EnableUserAbort(true);
    EXPECT_EQ(CurrentFlags(), "00001");
    SetFlags("01001");
    EXPECT_TRUE(TQUserAbort::IsPaused());
}

TEST_F(TQUserAbortAcrossModules, RequestMadeInTheModuleIsSeenOutside)
{
    TQUserAbort::EnableUserAbort(true);
    EXPECT_TRUE(LoadTestModule().requestUserAbort());
    EXPECT_TRUE(TQUserAbort::UserAbortRequested());
    EXPECT_FALSE(TQUserAbort::RequestUserAbort());
}

TEST_F(TQUserAbortAcrossModules, AbortSentInTheModuleIsCaughtOutsideByItsType)
{
    SetFlags("00000");
    EXPECT_EQ(LoadTestModule().typeOf("TQUserAbort"), &typeid(TQUserAbort));
    EXPECT_THROW(LoadTestModule().raise("TQUserAbort", "", TEST_STATUS_ERROR), TQUserAbort);
    EXPECT_TRUE(TQUserAbort::UserAbortSent());
    EXPECT_NO_THROW(TQUserAbort::Send());
}

TEST_F(TQUserAbortAcrossModules, AbortSentOutsideIsCaughtInTheModule)
{
    SetFlags("00000");
    EXPECT_TRUE(LoadTestModule().catches("TQUserAbort", [] { TQUserAbort::Send(); }));
}
