#include <BaseUtilities/custom_unique_ptr.h>

#include "Allocations.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <csignal>

#include <stdexcept>
#include <string>

namespace
{
// Counts its destructions.
class CCounted
{
public:
    explicit CCounted(int& destroyed) : m_pDestroyed(&destroyed) {}
    CCounted(CCounted&& other) noexcept : m_pDestroyed(other.m_pDestroyed)
    {
        other.m_pDestroyed = nullptr;
    }
    CCounted(CCounted const&) = delete;
    CCounted& operator=(CCounted const&) = delete;
    ~CCounted()
    {
        if (m_pDestroyed != nullptr)
            ++*m_pDestroyed;
    }

private:
    int* m_pDestroyed;
};

// What the deleter of an owner holds, when that is a plain function.
template <class T>
void (*FunctionOf(custom_unique_ptr<T> const& owner))(T*)
{
    auto const* const target = owner.get_deleter().template target<void (*)(T*)>();
    return target == nullptr ? nullptr : *target;
}
} // namespace

TEST(custom_unique_ptr, IsAUniquePointerWithAStandardFunctionAsDeleter)
{
    static_assert(std::is_same_v<custom_unique_ptr<std::string, std::string>,
                                 std::unique_ptr<std::string, std::function<void(std::string*)>>>);
    static_assert(std::is_same_v<custom_unique_ptr<std::string>,
                                 custom_unique_ptr<std::string, std::string>>);
    SUCCEED();
}

TEST(custom_unique_ptr, MakeOwnsACopyOfTheCharacters)
{
    auto const narrow = make_custom_unique<std::string, std::string>(std::string("a\0b", 3));
    ASSERT_NE(narrow, nullptr);
    EXPECT_EQ(*narrow, std::string("a\0b", 3));
    auto const utf16 = make_custom_unique<std::u16string, std::u16string>(std::u16string(u"ab"));
    ASSERT_NE(utf16, nullptr);
    EXPECT_EQ(*utf16, u"ab");
}

TEST(custom_unique_ptr, DeleterHoldsThePlainFunctionCustomDelete)
{
    auto const narrow = make_custom_unique<std::string, std::string>(std::string("a"));
    EXPECT_EQ(FunctionOf(narrow), &CustomDelete<std::string>);
    auto const utf16 = make_custom_unique<std::u16string, std::u16string>(std::u16string(u"a"));
    EXPECT_EQ(FunctionOf(utf16), &CustomDelete<std::u16string>);
    int destroyed = 0;
    auto const counted = make_custom_unique<CCounted, CCounted>(CCounted(destroyed));
    EXPECT_EQ(FunctionOf(counted), &CustomDelete<CCounted>);
}

TEST(custom_unique_ptr, CustomDeleteOfTheStringsIsTheLibrarysOwn)
{
    for (void* const function : {reinterpret_cast<void*>(&CustomDelete<std::string>),
                                 reinterpret_cast<void*>(&CustomDelete<std::u16string>)}) {
        Dl_info module{};
        ASSERT_NE(dladdr(function, &module), 0);
        EXPECT_NE(std::string(module.dli_fname).find("libBaseUtilities.so"), std::string::npos);
    }
}

TEST(custom_unique_ptr, CustomDeleteOfNullDoesNothing)
{
    CAllocationCounter const during;
    CustomDelete<std::string>(nullptr);
    CustomDelete<std::u16string>(nullptr);
    CustomDelete<CCounted>(nullptr);
    EXPECT_EQ(during.Live(), 0);
}

TEST(custom_unique_ptr, CustomDeleteDestroysAndFrees)
{
    int destroyed = 0;
    CAllocationCounter const during;
    CustomDelete(new CCounted(destroyed));
    CustomDelete(new std::string(1000, 'x'));
    CustomDelete(new std::u16string(1000, u'x'));
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(during.Live(), 0);
}

TEST(custom_unique_ptr, DestructionReleasesExactlyOnce)
{
    int destroyed = 0;
    CAllocationCounter const during;
    {
        auto const owner = make_custom_unique<CCounted, CCounted>(CCounted(destroyed));
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(during.Live(), 0);
}

TEST(custom_unique_ptr, ResetReleasesExactlyOnceAndDestructionNoMore)
{
    int destroyed = 0;
    {
        auto owner = make_custom_unique<CCounted, CCounted>(CCounted(destroyed));
        owner.reset();
        EXPECT_EQ(destroyed, 1);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(custom_unique_ptr, MoveHandsTheObjectAndTheDeleterOn)
{
    int destroyed = 0;
    {
        auto first = make_custom_unique<CCounted, CCounted>(CCounted(destroyed));
        auto const second = std::move(first);
        EXPECT_EQ(first, nullptr); // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(destroyed, 0);
        EXPECT_EQ(FunctionOf(second), &CustomDelete<CCounted>);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(custom_unique_ptr, DefaultConstructedHoldsNullAndReleasesNothing)
{
    custom_unique_ptr<std::string> const owner;
    EXPECT_EQ(owner, nullptr);
    EXPECT_FALSE(static_cast<bool>(owner.get_deleter()));
}

TEST(custom_unique_ptr, FailedMakeLeaksNothing)
{
    CAllocationCounter const during;
    int const failures = FailEachAllocation(
        [] { make_custom_unique<std::string, std::string>(std::string(1000, 'x')); },
        [&] { EXPECT_EQ(during.Live(), 0); });
    EXPECT_GE(failures, 2); // the argument's text and the string itself
    EXPECT_EQ(during.Live(), 0);
}

TEST(custom_unique_ptrDeathTest, ReleaseThroughAnEmptyDeleterEndsTheProcess)
{
    EXPECT_EXIT(
        {
            custom_unique_ptr<std::string> owner(new std::string("a"),
                                                 std::function<void(std::string*)>());
        },
        testing::KilledBySignal(SIGABRT), "");
}
