// Every public entry point, with each of its allocations made to fail in turn, each in a thread of
// its own, so that the buffers of a thread are released, and by operator new also made, during the
// attempt.

#include "Allocations.h"
#include "EntryPoints.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <QThread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <set>
#include <string>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace
{
// Plain data, for what a thread allocates is released in that thread.
struct SAttempt
{
    SEntryPoint const* entryPoint;
    EAllocator allocator;
    unsigned long number; // of the allocation that fails; 0: none

    bool happened = false;
    bool threw = false;
    char wrong[200] = ""; // what was neither
    bool isAsStated = false;
    long live = 0; // at the end of the thread, by operator new
    long liveBlocks = 0;
};

/// Made first in a thread, so that it ends last: after the buffers of the thread.
class CAtThreadEnd
{
public:
    ~CAtThreadEnd()
    {
        m_pAttempt->live = m_Objects.Live();
        m_pAttempt->liveBlocks = m_Blocks.Live();
    }
    /// Not at construction, which the system itself allocates for.
    void Begin(SAttempt& attempt)
    {
        m_pAttempt = &attempt;
        m_Objects = CAllocationCounter(EAllocator::New);
        m_Blocks = CAllocationCounter(EAllocator::Malloc);
    }

private:
    SAttempt* m_pAttempt = nullptr;
    CAllocationCounter m_Objects{EAllocator::New};
    CAllocationCounter m_Blocks{EAllocator::Malloc};
};

void RunFailing(SAttempt& attempt, SOperands& operands)
{
    CAllocationFailure const failure(attempt.number, attempt.allocator);
    try {
        attempt.entryPoint->run(operands);
    } catch (std::bad_alloc const&) {
        attempt.threw = true;
    } catch (std::exception const& error) {
        std::snprintf(attempt.wrong, sizeof attempt.wrong, "%s", error.what());
    }
    attempt.happened = failure.Happened();
}

void* RunAttempt(void* argument)
{
    SAttempt& attempt = *static_cast<SAttempt*>(argument);
    QThread::currentThread(); // Qt's own record of a thread outlives it
    // The system ends a process that has no memory to note what a thread is to destroy.
    if (attempt.allocator == EAllocator::Malloc
        && attempt.entryPoint->allocates == EAllocates::Always) {
        SOperands others;
        attempt.entryPoint->run(others);
    }
    thread_local CAtThreadEnd end;
    end.Begin(attempt);

    SOperands operands;
    std::string const before = operands.Describe();
    RunFailing(attempt, operands);
    if (!attempt.threw)
        return nullptr;
    auto const isAsStated = attempt.entryPoint->isAsStated;
    attempt.isAsStated =
        isAsStated == nullptr ? operands.Describe() == before : isAsStated(operands);
    return nullptr;
}

SAttempt InThreadOfItsOwn(SEntryPoint const& entryPoint, EAllocator allocator, unsigned long number)
{
    SAttempt attempt{&entryPoint, allocator, number};
    pthread_t thread;
    if (int const error = pthread_create(&thread, nullptr, RunAttempt, &attempt))
        throw std::system_error(error, std::generic_category(), "pthread_create");
    pthread_join(thread, nullptr);
    return attempt;
}

long OpenDescriptors()
{
    fs::directory_iterator const all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

std::string NameOf(std::string const& entryPoint)
{
    static std::pair<char const*, char const*> const signs[] = {
        {"~", "DestroysA_"}, {"+=", "_PlusAssign_"}, {"==", "_Equals_"}, {"=", "_Assign_"},
        {"[]", "_At_"},      {"+", "_Plus_"},        {"&&", "_Rvalue_"}, {"*", "_Pointer_"},
        {"()", "_Nothing_"}, {"&", "_Reference_"},
    };
    std::string name = entryPoint;
    for (auto const& [sign, word] : signs)
        for (std::size_t at = name.find(sign); at != std::string::npos; at = name.find(sign))
            name.replace(at, std::string(sign).size(), word);
    for (char& character : name)
        if (std::isalnum(static_cast<unsigned char>(character)) == 0)
            character = '_';
    auto const isSecondOfTwo = [](char left, char right) { return left == '_' && right == '_'; };
    name.erase(std::unique(name.begin(), name.end(), isSecondOfTwo), name.end());
    return name;
}

class EntryPoint : public testing::TestWithParam<SEntryPoint>
{
protected:
    EntryPoint()
    {
        int const empty = open("/dev/null", O_RDONLY | O_CLOEXEC);
        dup2(empty, STDIN_FILENO);
        close(empty);
        fs::create_directory(m_Folder.Path() / "Documents");
    }
    ~EntryPoint() override
    {
        dup2(m_StandardInput, STDIN_FILENO);
        close(m_StandardInput);
    }

    bool MayMakeDo(EAllocator allocator) const
    {
        EMakesDo const makesDo = GetParam().makesDo;
        return makesDo == EMakesDo::Always
               || (makesDo == EMakesDo::AtMalloc && allocator == EAllocator::Malloc);
    }

    void Check(SAttempt const& attempt) const
    {
        EXPECT_STREQ(attempt.wrong, "");
        if (attempt.happened && !attempt.threw) {
            EXPECT_TRUE(MayMakeDo(attempt.allocator)) << "nothing was thrown";
        }
        if (attempt.threw) {
            EXPECT_TRUE(attempt.happened);
            EXPECT_TRUE(attempt.isAsStated) << "something else was left than stated";
        }
        if (GetParam().allocates != EAllocates::OnFirstCall) {
            EXPECT_EQ(attempt.live, 0) << "leaked by operator new";
            EXPECT_EQ(attempt.liveBlocks, 0) << "leaked by malloc";
        }
    }

    /// How many failures there were.
    unsigned long FailEach(EAllocator allocator) const
    {
        if (GetParam().allocates != EAllocates::OnFirstCall)
            InThreadOfItsOwn(GetParam(), allocator, 0); // what is made once for the process
        long const descriptors = OpenDescriptors();
        fs::path const currentFolder = fs::current_path();
        for (unsigned long number = 1;; ++number) {
            SCOPED_TRACE(number);
            SAttempt const attempt = InThreadOfItsOwn(GetParam(), allocator, number);
            Check(attempt);
            EXPECT_EQ(OpenDescriptors(), descriptors);
            EXPECT_EQ(fs::current_path(), currentFolder);
            if (!attempt.happened)
                return number - 1;
            if (number == 1000) {
                ADD_FAILURE() << "no end of allocations";
                return number;
            }
        }
    }

private:
    int m_StandardInput = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
    CTemporaryFolder m_Folder;
    CScopedEnvironment m_Home{"HOME", m_Folder.Path().native()};
    CScopedEnvironment m_Config{"XDG_CONFIG_HOME", std::nullopt};
    CScopedEnvironment m_Zone{"TZ", "UTC0"};
};
} // namespace

TEST_P(EntryPoint, ThrowsBadAllocForEachFailedAllocationAndKeepsWhatItStates)
{
    unsigned long const failures = FailEach(EAllocator::New);
    if (GetParam().allocates == EAllocates::Never) {
        EXPECT_EQ(failures, 0u);
    }
}

TEST_P(EntryPoint, ThrowsBadAllocForEachFailedMallocAndKeepsWhatItStates)
{
    if (!CanFailMalloc())
        GTEST_SKIP() << "the sanitizer owns malloc";
    unsigned long const failures = FailEach(EAllocator::Malloc);
    if (GetParam().allocates == EAllocates::Always) {
        EXPECT_GT(failures, 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Public, EntryPoint, testing::ValuesIn(EntryPoints()),
                         [](auto const& row) { return NameOf(row.param.name); });

// So a new function cannot be forgotten here.
TEST(EntryPoints, AreAllExportedFunctions)
{
    std::ifstream names(EXPORTED_NAMES);
    std::set<std::string> exported;
    for (std::string name; std::getline(names, name);) {
        bool const isFunction =
            name.find('(') != std::string::npos || name.rfind("GetVersion", 0) == 0;
        bool const isData =
            name.find(")::") != std::string::npos || name.rfind("guard variable", 0) == 0;
        if (isFunction && !isData)
            exported.insert(Abbreviated(name));
    }
    std::set<std::string> tested;
    for (SEntryPoint const& entryPoint : EntryPoints())
        if (*entryPoint.name != '[')
            tested.insert(entryPoint.name);
    EXPECT_GT(exported.size(), 190u);
    EXPECT_THAT(tested, testing::ContainerEq(exported));
}

namespace
{
// Defects, which the attempts must see.
SEntryPoint const swallowing = {"swallowing",
                                [](SOperands&) {
                                    try {
                                        CSafeString const text(LongText);
                                    } catch (std::bad_alloc const&) {
                                    }
                                },
                                EAllocates::Always};
SEntryPoint const changing = {"changing",
                              [](SOperands& with) {
                                  with.text.clear();
                                  CSafeString const text(LongText);
                              },
                              EAllocates::Always};
char* leaked = nullptr;
SEntryPoint const leaking = {"leaking",
                             [](SOperands&) {
                                 leaked = new char[10];
                                 CSafeString const text(LongText);
                             },
                             EAllocates::Always};
} // namespace

TEST(Attempt, SeesAFailureThatIsSwallowed)
{
    SAttempt const attempt = InThreadOfItsOwn(swallowing, EAllocator::New, 1);
    EXPECT_TRUE(attempt.happened);
    EXPECT_FALSE(attempt.threw);
}

TEST(Attempt, SeesAChangeOfWhatMustBeKept)
{
    SAttempt const attempt = InThreadOfItsOwn(changing, EAllocator::New, 1);
    EXPECT_TRUE(attempt.threw);
    EXPECT_FALSE(attempt.isAsStated);
}

TEST(Attempt, SeesALeak)
{
    SAttempt const attempt = InThreadOfItsOwn(leaking, EAllocator::New, 2);
    delete[] leaked;
    EXPECT_TRUE(attempt.threw);
    EXPECT_TRUE(attempt.isAsStated);
    EXPECT_EQ(attempt.live, 1);
    EXPECT_EQ(attempt.liveBlocks, CanFailMalloc() ? 1 : 0);
}
