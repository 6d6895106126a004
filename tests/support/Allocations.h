#pragma once

#include <new>

/// Which allocations a CAllocationCounter counts and a CAllocationFailure fails.
enum class EAllocator {
    New,   ///< operator new, which throws std::bad_alloc
    Malloc ///< malloc, calloc and realloc, which return null, also where operator new or Qt calls
};

/// False under the sanitizers, which own malloc themselves: then it is neither
/// counted nor made to fail.
bool CanFailMalloc();

/// Counts the calling thread's heap allocations, those inside the library
/// included, from its construction on.
class CAllocationCounter
{
public:
    explicit CAllocationCounter(EAllocator allocator = EAllocator::New);
    /// Allocations since construction.
    unsigned long Count() const;
    /// Allocations less releases since construction: 0 when nothing is kept or leaked.
    long Live() const;

private:
    EAllocator m_Allocator;
    unsigned long m_Allocated;
    unsigned long m_Released;
};

/// Makes one of the calling thread's allocations fail while it lives: number
/// `number` from now, 1 being the next. How many failed in a test becomes its
/// property "allocationFaults" in GoogleTest's report.
class CAllocationFailure
{
public:
    explicit CAllocationFailure(unsigned long number, EAllocator allocator = EAllocator::New);
    CAllocationFailure(CAllocationFailure const&) = delete;
    CAllocationFailure& operator=(CAllocationFailure const&) = delete;
    ~CAllocationFailure();
    /// Whether that allocation was reached, and so failed.
    bool Happened() const;
};

/// Calls `operation` with its first allocation failing, then its second and so
/// on, until it runs without meeting the failure. `afterFailure` is called after
/// each std::bad_alloc. Returns how many failures were injected; every one of
/// them must surface as std::bad_alloc, or the count is -1.
template <class Operation, class AfterFailure>
int FailEachAllocation(Operation operation, AfterFailure afterFailure,
                       EAllocator allocator = EAllocator::New)
{
    for (unsigned long number = 1;; ++number) {
        bool threw = false;
        bool happened = false;
        {
            CAllocationFailure const failure(number, allocator);
            try {
                operation();
            } catch (std::bad_alloc const&) {
                threw = true;
            }
            happened = failure.Happened();
        }
        if (!happened)
            return static_cast<int>(number) - 1;
        if (!threw)
            return -1;
        afterFailure();
    }
}
