#include <ConsoleOptions.h>

#include <gtest/gtest.h>

namespace
{
CConsoleOptions Parse(std::vector<char const*> arguments)
{
    arguments.insert(arguments.begin(), "torqel-console");
    return ParseOptions(static_cast<int>(arguments.size()), arguments.data());
}
} // namespace

TEST(ConsoleOptions, AreAllOffWithoutArguments)
{
    CConsoleOptions const options = Parse({});
    EXPECT_EQ(options.m_Suite.m_Folder, "/usr/share/common-licenses");
    EXPECT_TRUE(options.m_Colour);
    EXPECT_FALSE(options.m_Suite.m_Asks);
    EXPECT_FALSE(options.m_Help || options.m_Version || options.m_Quiet || options.m_Plain);
}

TEST(ConsoleOptions, EachSwitchSetsWhatItsNameSays)
{
    EXPECT_TRUE(Parse({"--help"}).m_Help);
    EXPECT_TRUE(Parse({"-h"}).m_Help);
    EXPECT_TRUE(Parse({"--version"}).m_Version);
    EXPECT_TRUE(Parse({"--ask"}).m_Suite.m_Asks);
    EXPECT_TRUE(Parse({"-a"}).m_Suite.m_Asks);
    EXPECT_TRUE(Parse({"--quiet"}).m_Quiet);
    EXPECT_TRUE(Parse({"-q"}).m_Quiet);
    EXPECT_TRUE(Parse({"--plain"}).m_Plain);
    EXPECT_FALSE(Parse({"--no-colour"}).m_Colour);
    EXPECT_FALSE(Parse({"--no-color"}).m_Colour);
}

TEST(ConsoleOptions, TakeOneFolderBetweenTheSwitches)
{
    CConsoleOptions const options = Parse({"-q", "some folder", "--plain"});
    EXPECT_EQ(options.m_Suite.m_Folder, "some folder");
    EXPECT_TRUE(options.m_Quiet && options.m_Plain);
}

TEST(ConsoleOptions, TakeAFolderWithADashBehindTwoDashes)
{
    EXPECT_EQ(Parse({"--", "--quiet"}).m_Suite.m_Folder, "--quiet");
}

TEST(ConsoleOptions, RefuseWhatMeansNothing)
{
    struct CRow
    {
        std::vector<char const*> m_Arguments;
        char const* m_Message;
    };
    CRow const rows[] = {
        {{"--fast"}, "There is no option --fast."},
        {{"-x"}, "There is no option -x."},
        {{"a", "b"}, "Only one folder can be checked at a time."},
        {{""}, "The folder's name is empty."},
    };
    for (CRow const& row : rows) {
        SCOPED_TRACE(row.m_Message);
        try {
            Parse(row.m_Arguments);
            ADD_FAILURE() << "taken";
        } catch (CUsageError const& error) {
            EXPECT_STREQ(error.what(), row.m_Message);
        }
    }
}
