// Times every operation: the library, the floor and the peers interleaved, five times each (three
// times in a quick run, and twice for the largest files). To be run several times: where the loader
// puts the libraries is luck that lasts as long as the process.
//
// Usage: baseutilities-times [--quick] [--filter=REGEX] [--json=FILE] [--benchmark_...]

#include "Arguments.h"
#include "Operations.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <vector>

#include <sched.h>
#include <unistd.h>

namespace
{
// Keeps the nanoseconds of each repetition instead of printing them.
class CCollector : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs) {
            if (run.run_type == Run::RT_Iteration)
                m_Times[run.run_name.function_name].push_back(
                    run.real_accumulated_time * 1e9 / static_cast<double>(run.iterations));
        }
    }
    std::vector<double> Sorted(std::string const& contender) const
    {
        std::vector<double> times = m_Times.at(contender);
        std::sort(times.begin(), times.end());
        return times;
    }

private:
    std::map<std::string, std::vector<double>> m_Times;
};

struct SSummary
{
    double m_Median;
    double m_Spread; // the distance of the quartiles, as a part of the median
};

SSummary Summarise(std::vector<double> const& sorted)
{
    double const median = sorted[sorted.size() / 2];
    return {median, (sorted[sorted.size() * 3 / 4] - sorted[sorted.size() / 4]) / median};
}

// The processors that this program may run on.
std::vector<std::size_t> const& Processors()
{
    static std::vector<std::size_t> const processors = [] {
        cpu_set_t set;
        CPU_ZERO(&set);
        sched_getaffinity(0, sizeof set, &set);
        std::vector<std::size_t> found;
        for (std::size_t processor = 0; processor < CPU_SETSIZE; ++processor) {
            if (CPU_ISSET(processor, &set))
                found.push_back(processor);
        }
        return found;
    }();
    return processors;
}

// Keeps the calling thread, and those that it starts from now on, to one processor: a thread that
// wakes another then always pays for the same switch.
void StayOn(std::size_t index)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(Processors()[index % Processors().size()], &set);
    sched_setaffinity(0, sizeof set, &set);
}

// So many repetitions between two looks at the clock that those looks do not count.
std::size_t BatchFor(CContender const& contender)
{
    using Clock = std::chrono::steady_clock;
    auto const repeat = contender.m_Repeat;
    repeat(1); // the first one may be special
    auto const start = Clock::now();
    repeat(1);
    auto const once = std::max<long>(1, (Clock::now() - start) / std::chrono::nanoseconds(1));
    return static_cast<std::size_t>(std::clamp<long>(10000 / once, 1, 1000));
}

// Another number below the limit each time, in each process and thread.
std::size_t Random(std::size_t limit)
{
    static std::mutex lock;
    static std::mt19937 numbers(std::random_device{}());
    std::lock_guard<std::mutex> const guard(lock);
    return numbers() % limit;
}

// Blocks of the sizes that short texts take, held so that what is measured gets others than before.
std::vector<std::unique_ptr<char[]>> HoldSomeBlocks()
{
    std::vector<std::unique_ptr<char[]>> blocks(Random(64));
    for (auto& block : blocks)
        block.reset(new char[Random(128)]);
    return blocks;
}

// Puts the vector registers in the state of a program that has not used their upper halves. What
// ran before may leave them in use, and then a copy may take 100 ns more, in whatever library.
void ForgetUpperHalves()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx"))
        asm volatile("vzeroupper" : : : "memory");
#endif
}

// One repetition, with data and a stack of its own: where they lie in memory is luck, which is to
// be averaged. A new thread's stack would begin at the same place of its page each time, and so
// meet, or miss, what the library or the floor keeps at that place of a page of theirs.
void Repeat(benchmark::State& state, COperation const& operation, CContender const& contender,
            std::size_t batch)
{
    StayOn(static_cast<std::size_t>(state.thread_index()));
    if (operation.m_OnDisk)
        sync();
    [[maybe_unused]] auto const held = HoldSomeBlocks();
    void* const elsewhere = __builtin_alloca(1 + Random(4096));
    asm volatile("" : : "r"(elsewhere) : "memory"); // keeps it
    auto const repeat = contender.m_Repeat;
    repeat(1);
    ForgetUpperHalves();
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch)))
        repeat(batch);
}

CCollector Time(COperation const& operation, bool quick)
{
    benchmark::ClearRegisteredBenchmarks();
    int const repetitions = quick ? 3 : 5;
    bool const heavy = operation.m_Weight == EWeight::Heavy;
    for (CContender const& contender : operation.m_Contenders) {
        double const thorough = operation.m_Threads > 1 ? 0.2 : 0.02;
        auto const body = [&, batch = BatchFor(contender)](benchmark::State& state) {
            Repeat(state, operation, contender, batch);
        };
        benchmark::RegisterBenchmark(contender.m_Name.c_str(), body)
            ->UseRealTime()
            ->Threads(operation.m_Threads)
            ->MinTime(quick ? 0.005 : thorough)
            ->Repetitions(heavy ? 2 : repetitions);
    }
    CCollector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    return collector;
}

void Print(COperation const& operation, CCollector const& times)
{
    double const floor = Summarise(times.Sorted("floor")).m_Median;
    std::printf("%-52s", operation.m_Name.c_str());
    for (CContender const& contender : operation.m_Contenders) {
        SSummary const summary = Summarise(times.Sorted(contender.m_Name));
        std::printf("  %s %.1f ns ±%.0f %% (%.2f)", contender.m_Name.c_str(), summary.m_Median,
                    summary.m_Spread * 50, summary.m_Median / floor);
    }
    std::printf("\n");
    static_cast<void>(std::fflush(stdout));
}

void Write(std::ostream& json, COperation const& operation, CCollector const& times, bool first)
{
    json << (first ? "\n" : ",\n") << R"(  {"area": ")" << operation.m_Area
         << R"(", "operation": ")" << operation.m_Name << R"(", "times": {)";
    bool firstContender = true;
    for (CContender const& contender : operation.m_Contenders) {
        std::vector<double> const sorted = times.Sorted(contender.m_Name);
        SSummary const summary = Summarise(sorted);
        json << (firstContender ? "" : ", ") << '"' << contender.m_Name << R"(": {"median": )"
             << summary.m_Median << R"(, "spread": )" << summary.m_Spread << R"(, "sorted": [)";
        for (std::size_t index = 0; index < sorted.size(); ++index)
            json << (index == 0 ? "" : ", ") << sorted[index];
        json << "]}";
        firstContender = false;
    }
    json << "}}";
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    CArguments const arguments(argc, argv);
    StayOn(0);
    std::vector<std::string> options{argv[0], "--benchmark_enable_random_interleaving=true"};
    for (int index = 1; index < argc; ++index) {
        if (std::string_view(argv[index]).substr(0, 12) == "--benchmark_")
            options.emplace_back(argv[index]);
    }
    std::vector<char*> pointers;
    for (std::string& option : options)
        pointers.push_back(option.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());

    std::ofstream json(arguments.Value("json"));
    json << "[";
    bool first = true;
    CCatalogue const catalogue;
    for (COperation const& operation : catalogue.Operations()) {
        bool const tooHeavy = operation.m_Weight == EWeight::Heavy && arguments.Has("quick");
        if (tooHeavy || !arguments.Selects(operation.m_Name))
            continue;
        CCollector const times = Time(operation, arguments.Has("quick"));
        Print(operation, times);
        Write(json, operation, times, first);
        first = false;
    }
    json << "\n]\n";
}
