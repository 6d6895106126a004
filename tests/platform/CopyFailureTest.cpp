#include "CopyFailure.h"

#include <BaseUtilities/TQException.h>

#include <gtest/gtest.h>

#include <typeinfo>

namespace fs = std::filesystem;

namespace
{
template <class Operation>
std::string Thrown(Operation operation)
{
    try {
        operation();
    } catch (TQRunTimeException const& error) {
        EXPECT_EQ(typeid(error), typeid(TQRunTimeException));
        EXPECT_EQ(error.GetStatus(), TEST_STATUS_ERROR);
        return error.what();
    }
    return "nothing was thrown";
}

struct CType
{
    char const* name;
    fs::file_type type;
    char const* what;
};

CType const types[] = {
    {"Missing", fs::file_type::not_found, "Destination file /a/b does not exist."},
    {"Folder", fs::file_type::directory, "Destination file /a/b is a directory."},
    // Deliberate: two blanks after "link.".
    {"SymbolicLink", fs::file_type::symlink,
     "Destination file /a/b is a symbolic link.  TQ does not support symbolic links at this time."},
    {"NoStatus", fs::file_type::none, "Couldn't obtain file status for /a/b."},
    {"BlockDevice", fs::file_type::block, "Unexpected file type for /a/b: 4"},
    {"CharacterDevice", fs::file_type::character, "Unexpected file type for /a/b: 5"},
    {"Pipe", fs::file_type::fifo, "Unexpected file type for /a/b: 6"},
    {"Socket", fs::file_type::socket, "Unexpected file type for /a/b: 7"},
    {"Unknown", fs::file_type::unknown, "Unexpected file type for /a/b: 8"},
    {"OfAnotherSystem", static_cast<fs::file_type>(100), "Unexpected file type for /a/b: 100"},
    // Deliberate: widened without a sign.
    {"Negative", static_cast<fs::file_type>(-2), "Unexpected file type for /a/b: 254"},
};

class NotACopy : public testing::TestWithParam<CType>
{
};
} // namespace

INSTANTIATE_TEST_SUITE_P(All, NotACopy, testing::ValuesIn(types),
                         [](auto const& row) { return row.param.name; });

TEST_P(NotACopy, HasAMessageForEachType)
{
    EXPECT_EQ(Thrown([] { ThrowNotACopy("/a/b", GetParam().type); }), GetParam().what);
}

TEST_P(NotACopy, TakesTheNameForTextAndNotForAFormat)
{
    std::string const name = "/%s%n%d 100% \n\xff\xc3\xa4";
    std::string what = GetParam().what;
    what.replace(what.find("/a/b"), 4, name);
    EXPECT_EQ(Thrown([&] { ThrowNotACopy(name, GetParam().type); }), what);
}

TEST(CopyError, NamesBothPathsAndTheCode)
{
    fs::filesystem_error const error("prefix", "/a/one", "/b/two",
                                     std::make_error_code(std::errc::file_exists));
    // Deliberate: the stray full stop before the second quote, the line break and three blanks.
    EXPECT_EQ(Thrown([&] { ThrowCopyError(error); }),
              "Unable to copy file '/a/one' to ./b/two':\n   status = 17 (File exists)");
}

TEST(CopyError, LeavesThePathsEmptyThatTheErrorLacks)
{
    fs::filesystem_error const error("prefix", std::make_error_code(std::errc::io_error));
    EXPECT_EQ(Thrown([&] { ThrowCopyError(error); }),
              "Unable to copy file '' to .':\n   status = 5 (Input/output error)");
}

TEST(CopyError, TakesThePathsForTextAndNotForAFormat)
{
    fs::filesystem_error const error("prefix", "%n%s", "%d\n\xff",
                                     std::make_error_code(std::errc::no_such_file_or_directory));
    EXPECT_EQ(Thrown([&] { ThrowCopyError(error); }),
              "Unable to copy file '%n%s' to .%d\n\xff':\n   status = 2 (No such file or "
              "directory)");
}

namespace
{
class CTestCategory : public std::error_category
{
public:
    char const* name() const noexcept override { return "test"; }
    std::string message(int code) const override
    {
        return "%s%n of a test, " + std::to_string(code);
    }
};
} // namespace

TEST(CopyError, TakesTheTextOfTheCodesOwnCategory)
{
    CTestCategory const category;
    fs::filesystem_error const error("prefix", "a", "b", std::error_code(-7, category));
    EXPECT_EQ(Thrown([&] { ThrowCopyError(error); }),
              "Unable to copy file 'a' to .b':\n   status = -7 (%s%n of a test, -7)");
}
