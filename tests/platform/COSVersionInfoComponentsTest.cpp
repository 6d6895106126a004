// Stands in for Qt, which tells no version of a Linux: three unknown components would look alike.
// The library asks Qt when it is loaded, so this is a program of its own.

#include <BaseUtilities/COSVersionInfo.h>

#include <QOperatingSystemVersion>

#include <gtest/gtest.h>

namespace
{
int questions = 0; // set before any library is initialised
} // namespace

QOperatingSystemVersion QOperatingSystemVersion::current()
{
    ++questions;
    return {QOperatingSystemVersion::Unknown, 11, 22, 33};
}

TEST(COSVersionInfoComponents, GoByTheNamesThatTheyHaveInQt)
{
    COSVersionInfo info;
    EXPECT_EQ(info.Major(), 11);
    EXPECT_EQ(info.Minor(), 22);
    EXPECT_EQ(info.Patch(), 33);
}

TEST(COSVersionInfoComponents, AreAskedForOnceAndBeforeAnyObject)
{
    EXPECT_EQ(questions, 1);
    COSVersionInfo info;
    static_cast<void>(info.Major());
    EXPECT_EQ(questions, 1);
}
