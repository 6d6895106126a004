#include "CChildProcess.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

namespace
{
struct CResult
{
    std::string m_Output;
    int m_ExitCode;
};

CResult RunFirstSteps(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), FIRST_STEPS_PROGRAM);
    CLaunch launch;
    launch.m_Command = arguments;
    CChildProcess program(launch);
    std::string const output = program.ReadAll();
    return {output, program.Wait()};
}
} // namespace

TEST(FirstSteps, CopiesAFile)
{
    CTemporaryFolder const folder;
    WriteFile(folder / "source", "text");
    CResult const result = RunFirstSteps({folder / "source", folder / "copy"});
    EXPECT_EQ(result.m_Output, (folder / "copy") + " is there.\n");
    EXPECT_EQ(result.m_ExitCode, 0);
    EXPECT_EQ(ReadFile(folder / "copy"), "text");
}

TEST(FirstSteps, SaysWhyItCopiesNothing)
{
    CTemporaryFolder const folder;
    CResult const result = RunFirstSteps({folder / "missing", folder / "copy"});
    EXPECT_EQ(result.m_Output, "Unable to copy file 'Cannot copy from source: "
                                   + (folder / "missing") + " does not exist.' to ''.\n");
    EXPECT_EQ(result.m_ExitCode, 1);
}

TEST(FirstSteps, SaysHowItIsUsed)
{
    CResult const result = RunFirstSteps({});
    EXPECT_EQ(result.m_Output, "Usage: " FIRST_STEPS_PROGRAM " SOURCE DESTINATION\n");
    EXPECT_EQ(result.m_ExitCode, 1);
}

// All but its includes.
TEST(FirstSteps, IsTheExampleOfTheReadme)
{
    std::string const program = ReadFile(SOURCE_FOLDER "/examples/first_steps/main.cpp");
    std::string const readme = ReadFile(SOURCE_FOLDER "/README.md");
    std::size_t const start = program.find("int main(");
    ASSERT_NE(start, std::string::npos);
    EXPECT_NE(readme.find("```cpp\n" + program.substr(start) + "```\n"), std::string::npos);
}
