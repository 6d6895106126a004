// Planted for script/lint, which trusts g++'s analyser only once it has found this.
//
// Must be reported: [-Wanalyzer-double-free]

#include <cstdlib>

void ReleaseTwice(void* block, bool again)
{
    std::free(block);
    if (again)
        std::free(block);
}
