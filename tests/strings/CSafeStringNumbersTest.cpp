#include <BaseUtilities/CSafeString.h>

#include "Allocations.h"
#include "SafeStringInspection.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <dlfcn.h>

// A program that carries its sanitizer's runtime in itself has vsnprintf intercepted there already.
#if defined(__clang__) && defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
#define CAN_FAIL_VSNPRINTF 0
#endif
#endif
#ifndef CAN_FAIL_VSNPRINTF
#define CAN_FAIL_VSNPRINTF 1
#endif

namespace
{
thread_local bool vsnprintfFails = false;

/// Lets the calling thread's vsnprintf, that of the library included, fail while it lives.
class CFailingVsnprintf
{
public:
    CFailingVsnprintf() { vsnprintfFails = true; }
    CFailingVsnprintf(CFailingVsnprintf const&) = delete;
    CFailingVsnprintf& operator=(CFailingVsnprintf const&) = delete;
    ~CFailingVsnprintf() { vsnprintfFails = false; }
};
} // namespace

#if CAN_FAIL_VSNPRINTF
// The second is what the first becomes where the compiler checks the buffer's size.
extern "C" {
int vsnprintf(char* buffer, std::size_t size, char const* format, std::va_list arguments) noexcept
{
    using Function = int(char*, std::size_t, char const*, std::va_list);
    static auto* const next = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "vsnprintf"));
    return vsnprintfFails ? -1 : next(buffer, size, format, arguments);
}

int __vsnprintf_chk(char* buffer, std::size_t size, int flag, std::size_t capacity,
                    char const* format, std::va_list arguments) noexcept
{
    using Function = int(char*, std::size_t, int, std::size_t, char const*, std::va_list);
    static auto* const next = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "__vsnprintf_chk"));
    return vsnprintfFails ? -1 : next(buffer, size, flag, capacity, format, arguments);
}
}
#endif

namespace
{
// The text of the C library, by the oracle's own buffer.
template <class Floating>
std::string Printed(Floating value)
{
    char const* const format = std::is_same_v<Floating, long double> ? "%Lf" : "%f";
    std::string text(static_cast<std::size_t>(std::snprintf(nullptr, 0, format, value)), '\0');
    std::snprintf(text.data(), text.size() + 1, format, value);
    return text;
}

template <class Number>
class ToStringOfInteger : public testing::Test
{
};

template <class Number>
class ToStringOfFloating : public testing::Test
{
};

struct SNumberTypeNames
{
    template <class Number>
    static std::string GetName(int)
    {
        std::string const sign = std::is_signed_v<Number> ? "" : "unsigned_";
        if (std::is_floating_point_v<Number>)
            return std::is_same_v<Number, float>
                       ? "float"
                       : (std::is_same_v<Number, double> ? "double" : "long_double");
        if (std::is_same_v<
                std::make_signed_t<std::conditional_t<std::is_integral_v<Number>, Number, int>>,
                int>)
            return sign + "int";
        return sign
               + (std::is_same_v<Number, long> || std::is_same_v<Number, unsigned long>
                      ? "long"
                      : "long_long");
    }
};

using Integers =
    testing::Types<int, long, long long, unsigned int, unsigned long, unsigned long long>;
using Floatings = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(ToStringOfInteger, Integers, SNumberTypeNames);
TYPED_TEST_SUITE(ToStringOfFloating, Floatings, SNumberTypeNames);

// A numeric locale of the test's own for as long as the object lives, whatever the machine has
// installed: compiled into a folder and found there by way of LOCPATH.
class CNumericLocale
{
public:
    explicit CNumericLocale(std::string const& decimalPoint)
        : m_FormerLocale(std::setlocale(LC_NUMERIC, nullptr))
    {
        if (char const* const former = std::getenv("LOCPATH"); former != nullptr)
            m_FormerPath = former;
        m_HadPath = std::getenv("LOCPATH") != nullptr;
        WriteFile(m_Folder / "source", "LC_NUMERIC\ndecimal_point \"" + decimalPoint
                                           + "\"\nthousands_sep \"<U002E>\"\ngrouping 3;3\n"
                                             "END LC_NUMERIC\n");
        std::string const command = "localedef -c -i '" + (m_Folder / "source") + "' -f UTF-8 '"
                                    + (m_Folder / "compiled") + "' >'" + (m_Folder / "log")
                                    + "' 2>&1";
        m_Compiled = std::system(command.c_str());
        setenv("LOCPATH", m_Folder.Path().c_str(), 1);
        m_Set = std::setlocale(LC_NUMERIC, "compiled") != nullptr;
    }
    CNumericLocale(CNumericLocale const&) = delete;
    CNumericLocale& operator=(CNumericLocale const&) = delete;
    ~CNumericLocale()
    {
        std::setlocale(LC_NUMERIC, m_FormerLocale.c_str());
        if (m_HadPath)
            setenv("LOCPATH", m_FormerPath.c_str(), 1);
        else
            unsetenv("LOCPATH");
    }

    bool IsSet() const { return m_Set; }
    int Compiled() const { return m_Compiled; }

private:
    CTemporaryFolder m_Folder;
    std::string m_FormerLocale;
    std::string m_FormerPath;
    bool m_HadPath = false;
    int m_Compiled = 0;
    bool m_Set = false;
};
} // namespace

TYPED_TEST(ToStringOfInteger, IsThatOfTheStandardLibraryAroundEveryPowerOfTen)
{
    using Limits = std::numeric_limits<TypeParam>;
    std::vector<TypeParam> values{0,
                                  1,
                                  Limits::min(),
                                  Limits::max(),
                                  static_cast<TypeParam>(Limits::min() + 1),
                                  static_cast<TypeParam>(Limits::max() - 1)};
    TypeParam power = 1;
    for (int digits = 1; digits <= Limits::digits10; ++digits) {
        power = static_cast<TypeParam>(power * 10);
        for (TypeParam const value :
             {static_cast<TypeParam>(power - 1), power, static_cast<TypeParam>(power + 1)}) {
            values.push_back(value);
            values.push_back(static_cast<TypeParam>(0 - value)); // negative, or far up
        }
    }
    for (TypeParam const value : values)
        EXPECT_EQ(Bytes(CSafeString::to_string(value)), std::to_string(value));
}

TYPED_TEST(ToStringOfInteger, IsThatOfTheStandardLibraryForEveryPairOfDigits)
{
    for (int value = 0; value < 20000; ++value) {
        auto const number = static_cast<TypeParam>(value);
        ASSERT_EQ(Bytes(CSafeString::to_string(number)), std::to_string(number));
        auto const negative = static_cast<TypeParam>(0 - number);
        ASSERT_EQ(Bytes(CSafeString::to_string(negative)), std::to_string(negative));
    }
}

TYPED_TEST(ToStringOfInteger, AllocatesItsTextOnceBesideTheTemporary)
{
    CAllocationCounter const during;
    CSafeString const text = CSafeString::to_string(static_cast<TypeParam>(12345));
    EXPECT_EQ(during.Count(), 1u); // a temporary of the exact size stays off the heap
    EXPECT_EQ(during.Live(), 1);
}

TEST(ToString, WritesTheExtremesOfTheWidestTypes)
{
    EXPECT_EQ(Bytes(CSafeString::to_string(0)), "0");
    EXPECT_EQ(Bytes(CSafeString::to_string(-1)), "-1");
    EXPECT_EQ(Bytes(CSafeString::to_string(std::numeric_limits<int>::min())), "-2147483648");
    EXPECT_EQ(Bytes(CSafeString::to_string(std::numeric_limits<long long>::min())),
              "-9223372036854775808");
    EXPECT_EQ(Bytes(CSafeString::to_string(std::numeric_limits<unsigned long long>::max())),
              "18446744073709551615");
}

TEST(ToString, LongIntegersCostTheTemporaryAndTheCopy)
{
    CAllocationCounter const during;
    CSafeString const text = CSafeString::to_string(std::numeric_limits<long long>::min());
    EXPECT_EQ(during.Count(), 3u);
    EXPECT_EQ(during.Live(), 2);
    EXPECT_EQ(StorageOf(text)->capacity(), 20u);
}

TYPED_TEST(ToStringOfFloating, IsThatOfTheCLibrary)
{
    using Limits = std::numeric_limits<TypeParam>;
    std::vector<TypeParam> values{
        TypeParam{0},          TypeParam{1},          TypeParam(0.1L),       TypeParam(0.5L),
        TypeParam(0.0000005L), TypeParam(0.0000015L), TypeParam(1.9999995L), TypeParam(123456.789L),
        TypeParam(1e20L),      Limits::min(),         Limits::denorm_min(),  Limits::epsilon(),
        Limits::max(),         Limits::infinity(),    Limits::quiet_NaN()};
    for (int exponent = -10; exponent < Limits::max_exponent; exponent += 97)
        values.push_back(std::ldexp(TypeParam(1.2345L), exponent));
    for (TypeParam const value : values) {
        EXPECT_EQ(Bytes(CSafeString::to_string(value)), Printed(value));
        EXPECT_EQ(Bytes(CSafeString::to_string(-value)), Printed(-value));
    }
}

TYPED_TEST(ToStringOfFloating, HasSixDecimalsAndNoExponent)
{
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(1.5L))), "1.500000");
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(-1.5L))), "-1.500000");
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(0.0000001L))), "0.000000");
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(1048576))), "1048576.000000");
}

TYPED_TEST(ToStringOfFloating, NegativeZeroHasItsSign)
{
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(-0.0L))), "-0.000000");
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(0.0L))), "0.000000");
}

TYPED_TEST(ToStringOfFloating, InfinitiesAndNansAreThoseOfTheCLibrary)
{
    using Limits = std::numeric_limits<TypeParam>;
    EXPECT_EQ(Bytes(CSafeString::to_string(Limits::infinity())), "inf");
    EXPECT_EQ(Bytes(CSafeString::to_string(-Limits::infinity())), "-inf");
    EXPECT_EQ(Bytes(CSafeString::to_string(std::copysign(Limits::quiet_NaN(), TypeParam{1}))),
              "nan");
    EXPECT_EQ(Bytes(CSafeString::to_string(std::copysign(Limits::quiet_NaN(), TypeParam{-1}))),
              "-nan");
}

TYPED_TEST(ToStringOfFloating, FormatsWithoutAHeapBlock)
{
    static_cast<void>(CSafeString::to_string(TypeParam(1.5L)));
    CAllocationCounter const during;
    CSafeString const text = CSafeString::to_string(TypeParam(1.5L));
    EXPECT_EQ(during.Count(), 1u);
}

TYPED_TEST(ToStringOfFloating, UsesTheDecimalPointOfTheNumericLocale)
{
    std::vector<std::pair<char const*, std::string>> const points{{"<U002C>", ","},
                                                                  {"<U066B>", "\xd9\xab"}};
    for (auto const& [symbol, bytes] : points) {
        SCOPED_TRACE(symbol);
        CNumericLocale const locale(symbol);
        if (!locale.IsSet())
            GTEST_SKIP() << "localedef cannot make a locale here, result " << locale.Compiled();
        EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(-1234.5L))), "-1234" + bytes + "500000");
        EXPECT_EQ(Bytes(CSafeString::to_string(std::numeric_limits<TypeParam>::max())),
                  Printed(std::numeric_limits<TypeParam>::max()));
        EXPECT_EQ(Bytes(CSafeString::to_string(-1234567)), "-1234567");
    }
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(1.5L))), "1.500000");
}

TYPED_TEST(ToStringOfFloating, FailureOfTheCLibraryIsALengthError)
{
    if (CAN_FAIL_VSNPRINTF == 0)
        GTEST_SKIP() << "the sanitizer owns vsnprintf";
    std::string what;
    {
        CFailingVsnprintf const failure;
        try {
            static_cast<void>(CSafeString::to_string(TypeParam(1.5L)));
        } catch (std::length_error const& error) {
            what = error.what();
        }
    }
    EXPECT_EQ(what, "basic_string::_M_create");
    EXPECT_EQ(Bytes(CSafeString::to_string(TypeParam(1.5L))), "1.500000");
}

TEST(ToString, LargestValuesArePrintedInFull)
{
    EXPECT_EQ(CSafeString::to_string(std::numeric_limits<float>::max()).size(), 46u);
    EXPECT_EQ(CSafeString::to_string(std::numeric_limits<double>::max()).size(), 316u);
    EXPECT_EQ(CSafeString::to_string(-std::numeric_limits<double>::max()).size(), 317u);
    EXPECT_EQ(CSafeString::to_string(std::numeric_limits<long double>::max()).size(), 4940u);
    EXPECT_EQ(Bytes(CSafeString::to_string(1e20)), "100000000000000000000.000000");
}

TEST(ToString, LargestValuesCostTheTemporaryAndTheCopyBesideWhatTheCLibraryTakes)
{
    double const largest = std::numeric_limits<double>::max();
    static_cast<void>(CSafeString::to_string(largest));
    CAllocationCounter const during;
    CSafeString const text = CSafeString::to_string(largest);
    EXPECT_EQ(during.Count(), 3u);
    EXPECT_EQ(during.Live(), 2);
}
