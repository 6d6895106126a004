// A module that throws, loaded and closed a thousand times in the middle of a process.

#include <BaseUtilities/TQException.h>

#include "Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <ostream>
#include <string>

#include <dlfcn.h>
#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MEMORY_IS_THE_PROGRAMS_OWN 0
#else
#define MEMORY_IS_THE_PROGRAMS_OWN 1
#endif

namespace
{
constexpr unsigned Cycles = 1000;
constexpr unsigned WarmUp = 100; // cycles until every buffer and cache has been made
constexpr unsigned Threads = 4;

struct ModuleRow
{
    char const* name;
    char const* path;
    /// g++ makes the message buffers one for the process, so that the system keeps the module.
    bool staysWhenClosed;
};

ModuleRow const modules[] = {
    {"BuiltAsTheTests", THROWING_MODULE, STAYS_WHEN_CLOSED},
#ifdef THROWING_CLANG_MODULE
    {"BuiltByClang", THROWING_CLANG_MODULE, false},
#endif
};

using Throw = void(unsigned thread, unsigned cycle);

/// A module, loaded as long as this lives.
class CLoaded
{
public:
    explicit CLoaded(char const* path) : m_Handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}
    CLoaded(CLoaded const&) = delete;
    CLoaded& operator=(CLoaded const&) = delete;
    ~CLoaded()
    {
        if (m_Handle != nullptr)
            dlclose(m_Handle);
    }

    Throw* Entry() const
    {
        void* const entry = m_Handle == nullptr ? nullptr : dlsym(m_Handle, "ThrowFromModule");
        return reinterpret_cast<Throw*>(entry);
    }

private:
    void* const m_Handle;
};

bool IsMapped(char const* path)
{
    void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    return handle != nullptr && dlclose(handle) == 0;
}

/// Whether the module's exception arrives with its own type, text and status.
bool ArrivesWhole(Throw* entry, unsigned thread, unsigned cycle)
{
    if (entry == nullptr)
        return false;
    try {
        entry(thread, cycle);
    } catch (CTestSuiteException const& caught) {
        return caught.GetStatus() == cycle
               && caught.what()
                      == "module: thread " + std::to_string(thread) + " in cycle "
                             + std::to_string(cycle);
    }
    return false;
}

struct Memory
{
    long allocated = 0; // bytes
    long resident = 0;  // pages
};

Memory MemoryNow()
{
    Memory now;
    auto const heap = mallinfo2();
    now.allocated = static_cast<long>(heap.uordblks + heap.hblkhd);
    // Not what is mapped: a thread that finds malloc busy reserves 64 MiB for more of it.
    long mapped = 0;
    std::ifstream("/proc/self/statm") >> mapped >> now.resident;
    return now;
}

/// The smallest block lost in each cycle would be 32 bytes, the smallest mapping in use a page.
void ExpectNoGrowth(Memory const& before, Memory const& after)
{
    testing::Test::RecordProperty("bytes", std::to_string(after.allocated - before.allocated));
    testing::Test::RecordProperty("pages", std::to_string(after.resident - before.resident));
    if (MEMORY_IS_THE_PROGRAMS_OWN == 0)
        return; // a sanitizer keeps what was released for a while
    constexpr long Measured = Cycles - WarmUp;
    EXPECT_LT(after.allocated - before.allocated, Measured * 16);
    EXPECT_LT(after.resident - before.resident, Measured / 2);
}

class ModuleCycles : public testing::TestWithParam<ModuleRow>
{
};

INSTANTIATE_TEST_SUITE_P(, ModuleCycles, testing::ValuesIn(modules),
                         [](auto const& row) { return std::string(row.param.name); });
} // namespace

// The threads outlive every cycle and keep the module's buffers, and with them the module, which
// the system therefore does not take away under them.
TEST_P(ModuleCycles, OnLivingThreadsThrowWholeMessagesAndGrowNoMemory)
{
    std::atomic<unsigned> whole{0};
    Throw* entry = nullptr;
    Memory before, after;
    CBarrier barrier(Threads + 1);
    std::thread loader([&] {
        for (unsigned cycle = 0; cycle < Cycles; ++cycle) {
            if (cycle == WarmUp)
                before = MemoryNow();
            CLoaded const module(GetParam().path);
            entry = module.Entry();
            barrier.Wait();
            barrier.Wait();
        }
        after = MemoryNow();
        barrier.Wait(); // only now may the threads end
    });
    RunOnThreads(Threads, [&](unsigned index) {
        for (unsigned cycle = 0; cycle < Cycles; ++cycle) {
            barrier.Wait();
            whole += ArrivesWhole(entry, index, cycle) ? 1u : 0u;
            barrier.Wait();
        }
        barrier.Wait();
    });
    loader.join();
    EXPECT_EQ(whole, Threads * Cycles);
    ExpectNoGrowth(before, after);
}

TEST_P(ModuleCycles, OnThreadsThatEndThrowWholeMessagesAndGrowNoMemory)
{
    std::atomic<unsigned> whole{0};
    unsigned stayed = 0;
    Memory before;
    for (unsigned cycle = 0; cycle < Cycles; ++cycle) {
        if (cycle == WarmUp)
            before = MemoryNow();
        {
            CLoaded const module(GetParam().path);
            RunOnThreads(Threads, [&](unsigned index) {
                whole += ArrivesWhole(module.Entry(), index, cycle) ? 1u : 0u;
            });
        }
        stayed += IsMapped(GetParam().path) ? 1u : 0u;
    }
    EXPECT_EQ(whole, Threads * Cycles);
    EXPECT_EQ(stayed, GetParam().staysWhenClosed ? Cycles : 0u);
    ExpectNoGrowth(before, MemoryNow());
}
