// The module: uses the library itself and lets one of its exceptions reach the application.

#include "../common/UseLibrary.h"

extern "C" __attribute__((visibility("default"))) int RunSuite()
{
    if (int const failedStep = UseLibrary(); failedStep != 0)
        return failedStep;
    DoThrow<CTestSuiteException>(TEST_STATUS_ERROR, "The suite %s.", "failed");
}
