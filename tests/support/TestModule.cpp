#include "TestModule.h"

#include <stdexcept>

#include <dlfcn.h>

namespace
{
void* Found(void* result)
{
    if (result == nullptr)
        throw std::runtime_error(dlerror());
    return result;
}
} // namespace

TestModule const& LoadTestModule()
{
    static void* const library = Found(dlopen(BASEUTILITIES_TEST_MODULE, RTLD_NOW | RTLD_LOCAL));
    return *static_cast<TestModule const*>(Found(dlsym(library, "theTestModule")));
}
