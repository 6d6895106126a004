#include <BaseUtilities/LibraryVersion.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>

namespace
{
struct SComponentRow
{
    char const* m_Name; // of the function, plain
    int (*m_pFunction)();
    int m_Expected; // the project's version, from the build system
};

class LibraryVersion : public testing::TestWithParam<SComponentRow>
{
};
} // namespace

TEST_P(LibraryVersion, IsTheProjectsVersion)
{
    EXPECT_EQ(GetParam().m_pFunction(), GetParam().m_Expected);
}

TEST_P(LibraryVersion, IsFoundInTheLibraryUnderItsPlainName)
{
    void* const library = dlopen("libBaseUtilities.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr) << dlerror();
    void* const symbol = dlsym(library, GetParam().m_Name);
    ASSERT_NE(symbol, nullptr) << dlerror();
    EXPECT_EQ(symbol, reinterpret_cast<void*>(GetParam().m_pFunction));
    EXPECT_EQ(reinterpret_cast<int (*)()>(symbol)(), GetParam().m_Expected);

    Dl_info where{};
    ASSERT_NE(dladdr(symbol, &where), 0);
    std::string const file = where.dli_fname;
    EXPECT_EQ(file.substr(file.find_last_of('/') + 1), "libBaseUtilities.so");
    dlclose(library);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LibraryVersion,
    testing::Values(SComponentRow{"GetVersionMajor", &GetVersionMajor, EXPECTED_VERSION_MAJOR},
                    SComponentRow{"GetVersionMinor", &GetVersionMinor, EXPECTED_VERSION_MINOR},
                    SComponentRow{"GetVersionPatch", &GetVersionPatch, EXPECTED_VERSION_PATCH},
                    SComponentRow{"GetVersionTweak", &GetVersionTweak, EXPECTED_VERSION_TWEAK}),
    [](auto const& row) { return std::string(row.param.m_Name); });
