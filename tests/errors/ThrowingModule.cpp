// A module of an application that throws on other people's threads. It is compiled by each compiler
// that there is, and has message buffers for a list of argument types that nobody else uses.

#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/TQException.h>

#include <string>

extern "C" __attribute__((visibility("default"))) void ThrowFromModule(unsigned thread,
                                                                       unsigned cycle)
{
    DoThrow<CTestSuiteException>(TEST_STATUS(cycle), "%s: thread %hu in cycle %u",
                                 std::string("module"), static_cast<unsigned short>(thread), cycle);
}
