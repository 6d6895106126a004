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
    int m_Expected; // written out, for the build system knows only what it was told
};

class LibraryVersion : public testing::TestWithParam<SComponentRow>
{
};
} // namespace

TEST_P(LibraryVersion, IsThatOfTheRelease)
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

INSTANTIATE_TEST_SUITE_P(Rows, LibraryVersion,
                         testing::Values(SComponentRow{"GetVersionMajor", &GetVersionMajor, 5},
                                         SComponentRow{"GetVersionMinor", &GetVersionMinor, 0},
                                         SComponentRow{"GetVersionPatch", &GetVersionPatch, 2},
                                         SComponentRow{"GetVersionTweak", &GetVersionTweak, 0}),
                         [](auto const& row) { return std::string(row.param.m_Name); });
