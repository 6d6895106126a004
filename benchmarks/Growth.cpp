// How the costs grow: with the number of items, the size of the file and the number of threads.
//
// Usage: baseutilities-growth [--quick] [--json=FILE]

#include "Arguments.h"
#include "FloorServices.h"
#include "Samples.h"
#include "TestFolders.h"

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TqCopyFile.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace
{
using Clock = std::chrono::steady_clock;

template <class Body>
double Nanoseconds(Body body)
{
    auto const start = Clock::now();
    body();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

// The median of three.
template <class Body>
double Median(Body body)
{
    double times[] = {Nanoseconds(body), Nanoseconds(body), Nanoseconds(body)};
    std::sort(std::begin(times), std::end(times));
    return times[1];
}

class CReport
{
public:
    explicit CReport(std::string const& file) : m_Json(file) { m_Json << "["; }
    ~CReport() { m_Json << "\n]\n"; }
    void Add(std::string const& what, std::string const& size, double value, char const* unit)
    {
        std::printf("%-40s %12s  %10.2f %s\n", what.c_str(), size.c_str(), value, unit);
        static_cast<void>(std::fflush(stdout));
        m_Json << (m_First ? "\n" : ",\n") << R"(  {"what": ")" << what << R"(", "size": ")" << size
               << R"(", "value": )" << value << R"(, "unit": ")" << unit << "\"}";
        m_First = false;
    }

private:
    std::ofstream m_Json;
    bool m_First = true;
};

void GrowItems(CReport& report, std::size_t count)
{
    std::string const size = std::to_string(count);
    auto const items = static_cast<double>(count);
    {
        auto const words = MakeWords<CSafeString>(count);
        report.Add("do_join, an item", size,
                   Median([&] { CSafeString::do_join(words, ","); }) / items, "ns");
    }
    report.Add("append, an item", size, Median([&] {
                                            CSafeString text;
                                            for (std::size_t index = 0; index < count; ++index)
                                                text += "ten bytes,";
                                        }) / items,
               "ns");
    std::string const fields = MakeText(10 * count, "123456789,");
    report.Add("StringSplit, a field", size, Median([&] { StringSplit(fields, ","); }) / items,
               "ns");
    report.Add("ToUpper, a byte", size, Median([&] { ToUpper(fields); }) / (10 * items), "ns");
}

// Of this process, the kernel's work for it included.
double ProcessorNanoseconds()
{
    timespec time{};
    static_cast<void>(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time));
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

// In time of the processor: that of the disk is not the library's. In turn, either first as often
// as the other, and the least of each: the host of a virtual machine takes free memory back, and to
// get it again costs several times as much as the copy.
void GrowFiles(CReport& report, CFolder const& folder, std::uintmax_t size)
{
    std::string const from = folder.File("source.bin");
    std::string const to = folder.File("destination.bin");
    std::ofstream(from).close();
    fs::resize_file(from, size); // sparse: all the work is in the copy
    double const mebibytes = static_cast<double>(size) / 1024 / 1024;
    auto const timed = [&](auto copy) {
        double const before = ProcessorNanoseconds();
        copy();
        double const time = ProcessorNanoseconds() - before;
        if (fs::file_size(to) != size)
            std::abort();
        return time / 1000 / mebibytes;
    };
    std::vector<double> library;
    std::vector<double> floor;
    Floor::CopyFile(from, to);
    auto const timeLibrary = [&] {
        library.push_back(timed([&] { TqCopyFile(from, to, ECopyFailType::Throw); }));
    };
    auto const timeFloor = [&] { floor.push_back(timed([&] { Floor::CopyFile(from, to); })); };
    for (int pairs = mebibytes < 100 ? 8 : mebibytes < 2000 ? 4 : 2; pairs != 0; --pairs) {
        timeLibrary();
        timeFloor();
        timeFloor();
        timeLibrary();
    }
    fs::remove(to);
    auto const add = [&](char const* what, std::vector<double> const& times) {
        report.Add(what, SizeName(size), *std::min_element(times.begin(), times.end()),
                   "us of processor");
    };
    add("TqCopyFile, a MiB", library);
    add("the floor's copy, a MiB", floor);
}

// Operations per microsecond of all threads together.
template <class Body>
double Rate(unsigned int threads, Body body)
{
    constexpr auto Duration = std::chrono::milliseconds(300);
    std::atomic<bool> stop{false};
    std::atomic<std::size_t> done{0};
    std::vector<std::thread> workers;
    workers.reserve(threads);
    for (unsigned int index = 0; index < threads; ++index)
        workers.emplace_back([&, index] {
            std::size_t count = 0;
            for (; !stop.load(std::memory_order_relaxed); ++count)
                body(index);
            done += count;
        });
    std::this_thread::sleep_for(Duration);
    stop = true;
    for (std::thread& worker : workers)
        worker.join();
    return static_cast<double>(done.load()) / std::chrono::microseconds(Duration).count();
}

void GrowThreads(CReport& report, unsigned int threads)
{
    std::string const count = std::to_string(threads) + (threads == 1 ? " thread" : " threads");
    report.Add("abort polls", count,
               Rate(threads, [](unsigned int) { TQUserAbort::UserAbortRequested(); }), "per us");
    report.Add("abort and pause polls in turn", count,
               Rate(threads,
                    [](unsigned int thread) {
                        thread % 2 == 0 ? TQUserAbort::UserAbortRequested()
                                        : TQUserAbort::IsPaused();
                    }),
               "per us");
    report.Add("DoThrow and catch", count,
               Rate(threads,
                    [](unsigned int) {
                        try {
                            DoThrow<TQRunTimeException>(TEST_STATUS_ERROR, "There is no file %s.",
                                                        "readme.txt");
                        } catch (TQRunTimeException const&) {
                        }
                    }),
               "per us");
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    CArguments const arguments(argc, argv);
    bool const quick = arguments.Has("quick");
    CReport report(arguments.Value("json"));

    for (std::size_t count = 1000; count <= (quick ? 100'000UL : 10'000'000UL); count *= 10)
        GrowItems(report, count);

    constexpr std::uintmax_t MiB = 1024UL * 1024;
    CFolder const folder(DiskFolder);
    std::uintmax_t const room = fs::space(DiskFolder).available / 2;
    for (std::uintmax_t const size : {4 * MiB, 64 * MiB, 1024 * MiB, 4096 * MiB}) {
        if (size <= room && size <= (quick ? 64 * MiB : size))
            GrowFiles(report, folder, size);
    }
    for (unsigned int const threads : {1U, 2U, 4U, 8U})
        GrowThreads(report, threads);
}
