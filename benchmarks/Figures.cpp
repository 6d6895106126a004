// The figures that are the same in every run.
//
// Usage: baseutilities-figures check|allocations [--filter=REGEX] [--json=FILE]
//        valgrind --tool=callgrind ... baseutilities-figures instructions [--filter=REGEX]
//
// check: whether library, floor and peers give the same result.
// allocations: blocks per operation, against those that the promised steps take.
// instructions: one dump of callgrind for each contender, named "operation|contender|count".

#include "Allocations.h"
#include "Arguments.h"
#include "Operations.h"

#include <QCoreApplication>

#include <valgrind/callgrind.h>

#include <chrono>
#include <cstdio>
#include <fstream>

namespace
{
constexpr std::size_t Iterations = 128;

bool Check(COperation const& operation)
{
    bool same = true;
    std::string const expected = operation.m_Contenders.front().m_Result();
    for (std::size_t index = 1; index < operation.m_Contenders.size(); ++index) {
        CContender const& contender = operation.m_Contenders[index];
        std::string const result = contender.m_Result();
        if (result == expected)
            continue;
        same = false;
        std::printf("%s: %s gives \"%.80s\", the library \"%.80s\"\n", operation.m_Name.c_str(),
                    contender.m_Name.c_str(), result.c_str(), expected.c_str());
    }
    return same;
}

unsigned long CountAllocations(CContender const& contender)
{
    contender.m_Repeat(2); // what is kept for later calls is there
    unsigned long const before = AllocationsSoFar();
    contender.m_Repeat(Iterations);
    return (AllocationsSoFar() - before + Iterations - 1) / Iterations; // not one more
}

bool CountAllocations(COperation const& operation, std::ostream& json, bool first)
{
    unsigned long const library = CountAllocations(operation.m_Contenders[0]);
    unsigned long const floor = CountAllocations(operation.m_Contenders[1]);
    unsigned long const required = operation.m_Allocations == COperation::AsFloor
                                       ? floor
                                       : static_cast<unsigned long>(operation.m_Allocations);
    json << (first ? "\n" : ",\n") << R"(  {"operation": ")" << operation.m_Name
         << R"(", "library": )" << library << R"(, "floor": )" << floor << R"(, "required": )"
         << required << "}";
    if (library == required && floor == required)
        return true;
    std::printf("%s: library %lu, floor %lu, required %lu\n", operation.m_Name.c_str(), library,
                floor, required);
    return false;
}

// Callgrind takes its time: an operation of a millisecond there is done a few times only.
std::size_t IterationsFor(CContender const& contender)
{
    using Clock = std::chrono::steady_clock;
    contender.m_Repeat(2); // what is kept for later calls is there
    auto const start = Clock::now();
    contender.m_Repeat(1);
    return Clock::now() - start > std::chrono::milliseconds(1) ? 2 : Iterations;
}

void CountInstructions(COperation const& operation)
{
    for (std::size_t index = 0; index < 2; ++index) {
        CContender const& contender = operation.m_Contenders[index];
        std::size_t const iterations = IterationsFor(contender);
        std::string const name =
            operation.m_Name + "|" + contender.m_Name + "|" + std::to_string(iterations);
        CALLGRIND_ZERO_STATS;
        contender.m_Repeat(iterations);
        CALLGRIND_DUMP_STATS_AT(name.c_str());
    }
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    CArguments const arguments(argc, argv);
    std::string const mode = argc > 1 ? argv[1] : "";
    std::ofstream json(arguments.Value("json"));
    bool good = true;
    bool first = true;
    json << "[";
    CCatalogue const catalogue;
    for (COperation const& operation : catalogue.Operations()) {
        bool const kernel = operation.m_InKernel && mode == "instructions";
        if (operation.m_Weight == EWeight::Heavy || kernel || !arguments.Selects(operation.m_Name))
            continue;
        if (mode == "check") {
            good = Check(operation) && good;
        } else if (mode == "allocations") {
            good = CountAllocations(operation, json, first) && good;
        } else if (mode == "instructions") {
            CountInstructions(operation);
        } else {
            static_cast<void>(std::fputs("check, allocations or instructions?\n", stderr));
            return 64;
        }
        first = false;
    }
    json << "\n]\n";
    return good ? 0 : 1;
}
