#include <BaseUtilities/MakeTimeString.h>

#include "Allocations.h"
#include "ScopedEnvironment.h"
#include "ScopedLocale.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <locale>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;
using std::chrono::system_clock;

static_assert(std::is_same_v<system_clock::duration, nanoseconds>);

namespace
{
system_clock::time_point At(long long secondsSinceEpoch)
{
    return system_clock::time_point(seconds(secondsSinceEpoch));
}

std::string Text(char const* format, system_clock::time_point when)
{
    CSafeString const text = MakeTimeString(format, when);
    return std::string(text.data(), text.size());
}

std::string OutputOf(std::string const& command)
{
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("popen: " + command);
    std::string output;
    char block[4096];
    while (std::size_t const count = std::fread(block, 1, sizeof block, pipe))
        output.append(block, count);
    if (pclose(pipe) != 0)
        throw std::runtime_error(command);
    return output;
}

/// What the system's `date` says, for each of the times on a line of its own.
std::vector<std::string> ByDate(std::string const& format, std::vector<long long> const& times)
{
    CTemporaryFolder const folder;
    std::string list;
    for (long long const time : times)
        list += '@' + std::to_string(time) + '\n';
    WriteFile(folder / "times", list);
    std::istringstream output(
        OutputOf("LC_ALL=C date -f '" + folder / "times" + "' '+" + format + "'"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);)
        lines.push_back(line);
    return lines;
}

/// Times on both sides of the epoch, of noted changes of clocks, and at random
/// over the years that the clock's nanoseconds reach.
std::vector<long long> Times()
{
    std::vector<long long> times{0,          1,          -1,          86399,
                                 86400,      -86400,     -86401,      951782400, // 29 February 2000
                                 1704067200, 1704067199, 1711846799,  1711846800, // spring 2024
                                 1729990799, 1729990800,                          // autumn 2024
                                 2147483647, 2147483648, -2147483648, -2147483649,
                                 4102444800, -2208988800};
    std::mt19937_64 engine(20240229);
    std::uniform_int_distribution<long long> any(-9000000000, 9000000000);
    for (int count = 0; count < 150; ++count)
        times.push_back(any(engine));
    return times;
}

struct SZoneRow
{
    char const* m_Name;
    char const* m_Zone;
};

class MakeTimeStringZones : public testing::TestWithParam<SZoneRow>
{
};
} // namespace

TEST_P(MakeTimeStringZones, TimeTextAgreesWithDate)
{
    CScopedEnvironment const zone("TZ", GetParam().m_Zone);
    std::vector<long long> const times = Times();
    for (std::string const format : {"%Y-%m-%d %H:%M:%S", "%a %A %b %B %d %e %j %U %W %u %w %y %C",
                                     "%I:%M %p %Z %z", "%c|%x|%X|%D|%F|%T|%R|%r|%h|%G-%V|%%"}) {
        std::vector<std::string> const expected = ByDate(format, times);
        ASSERT_EQ(expected.size(), times.size());
        for (std::size_t index = 0; index < times.size(); ++index)
            EXPECT_EQ(Text(format.c_str(), At(times[index])), expected[index])
                << times[index] << " as " << format;
    }
}

// The last three need no zone files.
INSTANTIATE_TEST_SUITE_P(
    Rows, MakeTimeStringZones,
    testing::Values(SZoneRow{"Utc", "UTC"}, SZoneRow{"Berlin", "Europe/Berlin"},
                    SZoneRow{"Kolkata", "Asia/Kolkata"}, SZoneRow{"Kathmandu", "Asia/Kathmandu"},
                    SZoneRow{"LosAngeles", "America/Los_Angeles"},
                    SZoneRow{"SaintJohns", "America/St_Johns"},
                    SZoneRow{"LordHowe", "Australia/Lord_Howe"},
                    SZoneRow{"HalfHourEast", "EAST-5:30"}, SZoneRow{"HalfHourWest", "WEST+3:30"},
                    SZoneRow{"SummerTime", "STD-1DST,M3.5.0,M10.5.0/3"}),
    [](auto const& row) { return std::string(row.param.m_Name); });

TEST(MakeTimeString, ShowsThePreviousYearJustAfterMidnightWestOfUtc)
{
    system_clock::time_point const newYear = At(1704067260); // 2024-01-01 00:01 UTC
    CScopedEnvironment zone("TZ", "UTC0");
    EXPECT_EQ(Text("%Y", newYear), "2024");
    zone.Set("WEST+3:30");
    EXPECT_EQ(Text("%Y", newYear), "2023");
    zone.Set("EAST-5:30");
    EXPECT_EQ(Text("%Y", newYear), "2024");
}

namespace
{
struct SFractionRow
{
    char const* m_Name;
    nanoseconds m_SinceEpoch;
    char const* m_Text;
};

class MakeTimeStringFractions : public testing::TestWithParam<SFractionRow>
{
};
} // namespace

// Deliberate in the library: toward zero, not down, before the epoch.
TEST_P(MakeTimeStringFractions, OfSecondsAreTruncatedTowardZero)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    system_clock::time_point const when{GetParam().m_SinceEpoch};
    EXPECT_EQ(Text("%F %T", when), GetParam().m_Text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MakeTimeStringFractions,
    testing::Values(
        SFractionRow{"Epoch", nanoseconds(0), "1970-01-01 00:00:00"},
        SFractionRow{"JustAfterTheEpoch", nanoseconds(1), "1970-01-01 00:00:00"},
        SFractionRow{"JustBeforeOneSecond", nanoseconds(999999999), "1970-01-01 00:00:00"},
        SFractionRow{"OneSecond", seconds(1), "1970-01-01 00:00:01"},
        SFractionRow{"JustBeforeTheEpoch", nanoseconds(-1), "1970-01-01 00:00:00"},
        SFractionRow{"HalfASecondBefore", milliseconds(-500), "1970-01-01 00:00:00"},
        SFractionRow{"NearlyASecondBefore", nanoseconds(-999999999), "1970-01-01 00:00:00"},
        SFractionRow{"OneSecondBefore", seconds(-1), "1969-12-31 23:59:59"},
        SFractionRow{"OneAndAHalfSecondsBefore", milliseconds(-1500), "1969-12-31 23:59:59"},
        SFractionRow{"FirstOfTheClock", nanoseconds::min(), "1677-09-21 00:12:44"},
        SFractionRow{"LastOfTheClock", nanoseconds::max(), "2262-04-11 23:47:16"}),
    [](auto const& row) { return std::string(row.param.m_Name); });

namespace
{
struct SPatternRow
{
    char const* m_Name;
    std::string m_Pattern;
    std::string m_Text;
};

class MakeTimeStringPatterns : public testing::TestWithParam<SPatternRow>
{
};
} // namespace

TEST_P(MakeTimeStringPatterns, Give)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    EXPECT_EQ(Text(GetParam().m_Pattern.c_str(), At(1709210096)), GetParam().m_Text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MakeTimeStringPatterns,
    testing::Values(SPatternRow{"EmptyPattern", "", ""},
                    SPatternRow{"TextWithoutConversions", "no time", "no time"},
                    SPatternRow{"PercentSign", "100%%", "100%"},
                    SPatternRow{"DateAndTime", "%Y-%m-%d %H:%M:%S", "2024-02-29 12:34:56"},
                    SPatternRow{"NamesOfTheClassicLocale", "%A, %d %B", "Thursday, 29 February"},
                    SPatternRow{"TextBeyondAscii", "\xC3\xA4%Y\xE2\x82\xAC",
                                "\xC3\xA4"
                                "2024\xE2\x82\xAC"},
                    SPatternRow{"LongPattern", std::string(5000, 'x') + "%d",
                                std::string(5000, 'x') + "29"}),
    [](auto const& row) { return std::string(row.param.m_Name); });

TEST(MakeTimeString, KeepsTheNulsThatTheLocaleWrites)
{
    class CNulTime : public std::time_put<char>
    {
        iter_type do_put(iter_type out, std::ios_base&, char, std::tm const*, char,
                         char) const override
        {
            *out++ = '\0';
            return out;
        }
    };
    CScopedGlobalLocale const global(std::locale(std::locale::classic(), new CNulTime));
    EXPECT_EQ(Text("a%Yb", At(0)), std::string("a\0b", 3));
}

namespace
{
/// Writes every conversion as the letter, the fill character and the year, and
/// fails or throws at a chosen one.
class CSpokenTime : public std::time_put<char>
{
public:
    explicit CSpokenTime(char failAt = '\0', char throwAt = '\0')
        : m_FailAt(failAt),
          m_ThrowAt(throwAt)
    {
    }

protected:
    iter_type do_put(iter_type out, std::ios_base&, char fill, std::tm const* time, char format,
                     char modifier) const override
    {
        if (format == m_ThrowAt)
            throw std::runtime_error("facet");
        if (format == m_FailAt)
            return iter_type(nullptr);
        std::string text = "<";
        if (modifier != '\0')
            text += modifier;
        text += format;
        text += fill;
        text += std::to_string(1900 + time->tm_year) + ">";
        for (char const character : text)
            *out++ = character;
        return out;
    }

private:
    char m_FailAt;
    char m_ThrowAt;
};

std::locale SpokenLocale(char failAt = '\0', char throwAt = '\0')
{
    return std::locale(std::locale::classic(), new CSpokenTime(failAt, throwAt));
}
} // namespace

TEST(MakeTimeString, SpeaksTheGlobalLocaleOfTheMomentOfTheCall)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    EXPECT_EQ(Text("%A", At(0)), "Thursday");
    {
        CScopedGlobalLocale const global(SpokenLocale());
        EXPECT_EQ(Text("on %A, %Ey", At(0)), "on <A 1970>, <Ey 1970>");
    }
    EXPECT_EQ(Text("%A", At(0)), "Thursday");
}

TEST(MakeTimeString, KeepsWhatWasWrittenBeforeTheLocaleFails)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    CScopedGlobalLocale const global(SpokenLocale('B'));
    EXPECT_EQ(Text("on %A, %B %d", At(0)), "on <A 1970>, ");
}

TEST(MakeTimeString, KeepsWhatWasWrittenBeforeTheLocaleThrows)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    CScopedGlobalLocale const global(SpokenLocale('\0', 'B'));
    EXPECT_EQ(Text("on %A, %B %d", At(0)), "on <A 1970>, ");
}

// Deliberate in the library: callers share one broken-down time with it.
TEST(MakeTimeString, LeavesItsTimeInTheSharedResultOfLocaltime)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    std::time_t const earlier = 0;
    std::tm const* const shared = std::localtime(&earlier);
    ASSERT_EQ(shared->tm_year, 70);
    Text("%Y", At(1709210096));
    EXPECT_EQ(shared->tm_year, 124);
}

// An allocation that fails while the stream is written ends the text there, as
// any failure of the facet does; all others are passed on.
TEST(MakeTimeString, LosesNothingButTheRestOfTheTextToAFailedAllocation)
{
    CScopedEnvironment const zone("TZ", "UTC0");
    std::string const pattern = std::string(2000, 'x') + "%Y";
    std::string const whole = Text(pattern.c_str(), At(0));
    CAllocationCounter const during;
    int passedOn = 0;
    bool happened = true;
    for (unsigned long number = 1; happened; ++number) {
        try {
            CAllocationFailure const failure(number);
            CSafeString const result = MakeTimeString(pattern.c_str(), At(0));
            happened = failure.Happened();
            EXPECT_EQ(whole.compare(0, result.size(), result.get()), 0);
            EXPECT_TRUE(happened || result.size() == whole.size());
        } catch (std::bad_alloc const&) {
            ++passedOn;
        }
    }
    EXPECT_GT(passedOn, 1); // the result's two blocks
    EXPECT_EQ(during.Live(), 0);
}

TEST(MakeCurrentTimeString, ShowsThisMoment)
{
    CScopedEnvironment const zone("TZ", "EAST-5:30");
    std::string const before = Text("%F %T", system_clock::now());
    std::string const text = MakeCurrentTimeString("%F %T").get();
    std::string const after = Text("%F %T", system_clock::now());
    EXPECT_LE(before, text);
    EXPECT_LE(text, after);
}

TEST(MakeCurrentTimeString, OfAnEmptyPatternIsEmpty)
{
    EXPECT_STREQ(MakeCurrentTimeString("").get(), "");
}
