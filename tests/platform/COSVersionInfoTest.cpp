#include <BaseUtilities/COSVersionInfo.h>

// Looked at before anything else is included: what the header itself brings in.
#if defined(QT_VERSION) || defined(QGLOBAL_H) || defined(QT_BEGIN_NAMESPACE)
#define HEADER_SHOWS_QT 1
#else
#define HEADER_SHOWS_QT 0
#endif

#include "Allocations.h"

#include <QOperatingSystemVersion>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace
{
template <class T, class = void>
constexpr bool IsComplete = false;
template <class T>
constexpr bool IsComplete<T, std::void_t<decltype(sizeof(T))>> = true;
} // namespace

static_assert(!std::is_polymorphic_v<COSVersionInfo>);
static_assert(!std::is_copy_constructible_v<COSVersionInfo>);
static_assert(std::is_nothrow_move_constructible_v<COSVersionInfo>);

TEST(COSVersionInfo, HeaderShowsNoQt)
{
    EXPECT_EQ(HEADER_SHOWS_QT, 0);
}

TEST(COSVersionInfo, HeaderOnlyDeclaresTheImplementation)
{
    EXPECT_FALSE(IsComplete<COSVersionInfoImpl>);
}

TEST(COSVersionInfo, GivesTheComponentsThatQtTellsUnknownOnesIncluded)
{
    QOperatingSystemVersion const system = QOperatingSystemVersion::current();
    COSVersionInfo info;
    EXPECT_EQ(info.Major(), system.majorVersion());
    EXPECT_EQ(info.Minor(), system.minorVersion());
    EXPECT_EQ(info.Patch(), system.microVersion());
}

TEST(COSVersionInfo, TwoObjectsGiveTheSameAnswers)
{
    COSVersionInfo first;
    COSVersionInfo second;
    EXPECT_EQ(first.Major(), second.Major());
    EXPECT_EQ(first.Minor(), second.Minor());
    EXPECT_EQ(first.Patch(), second.Patch());
}

TEST(COSVersionInfo, MovedFromObjectGivesTheSameAnswers)
{
    COSVersionInfo source;
    COSVersionInfo target(std::move(source));
    EXPECT_EQ(source.Major(), target.Major()); // NOLINT(bugprone-use-after-move): promised
    EXPECT_EQ(source.Minor(), target.Minor());
    EXPECT_EQ(source.Patch(), target.Patch());
    source = std::move(target);
    EXPECT_EQ(target.Major(), source.Major()); // NOLINT(bugprone-use-after-move): promised
}

TEST(COSVersionInfo, OwnsOneObjectAndReleasesItOnce)
{
    CAllocationCounter const during;
    {
        COSVersionInfo info;
        EXPECT_EQ(during.Live(), 1);
        COSVersionInfo const moved(std::move(info));
        EXPECT_EQ(during.Live(), 1);
    }
    EXPECT_EQ(during.Live(), 0);
}

TEST(COSVersionInfo, PassesOnEveryFailedAllocation)
{
    CAllocationCounter const during;
    EXPECT_GE(FailEachAllocation([] { COSVersionInfo(); }, [] {}), 1);
    EXPECT_EQ(during.Live(), 0);
}
