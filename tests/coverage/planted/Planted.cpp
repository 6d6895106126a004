// Gaps of every kind, and what only looks like one: the report on this program is known.

#include <type_traits>

namespace
{
int volatile sink = 0;

// Each instantiation has one outcome, and both together have both.
template <class T>
void CoveredByTwoInstantiations(T value)
{
    if (value > 0)
        sink = 1;
    else
        sink = 2;
}

// A constant in each instantiation, so that neither has an outcome to cover.
template <class T>
void ConstantCondition()
{
    if constexpr (std::is_signed_v<T>)
        sink = 3;
    else
        sink = 4;
}

// A constant, whose other outcome nobody can see.
void EndlessLoop()
{
    while (true) {
        if (sink != -1)
            return;
    }
}

void NeverFalse(int value)
{
    if (value > 0)
        sink = 5;
}

void NeverRun()
{
    sink = 6;
}

// Both have been true and both false, but never the second alone.
void SecondNeverDecides(bool first, bool second)
{
    if (first && second)
        sink = 7;
}

void Excluded(int value)
{
    if (value > 0)
        sink = 8; // Uncovered: the value is never positive.
}

void ExcludedForNothing()
{
    sink = 9; // Uncovered:
}
} // namespace

int main(int argc, char**)
{
    CoveredByTwoInstantiations(1);
    CoveredByTwoInstantiations(-1L);
    ConstantCondition<int>();
    ConstantCondition<unsigned int>();
    EndlessLoop();
    NeverFalse(1);
    if (argc > 9)
        NeverRun();
    SecondNeverDecides(true, true);
    SecondNeverDecides(false, true);
    Excluded(-argc);
    ExcludedForNothing();
}
