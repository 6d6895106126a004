// A module of the matrix; two of them are loaded beside each other.

#include "Matrix.h"

#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))

MODULE_EXPORT void ModuleThrow(int type)
{
    Throw(type);
}

MODULE_EXPORT int ModuleCatch(ThrowFunction throwIt, int type, int handler)
{
    return Catch(throwIt, type, handler);
}
