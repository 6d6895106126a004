// The debuggee that loads a module, and the library with it, long after the standard library.

#include <dlfcn.h>
#include <iostream>

int main(int, char** argv)
{
    void* const module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    auto const showObjects =
        module == nullptr ? nullptr : reinterpret_cast<int (*)()>(dlsym(module, "ShowObjects"));
    if (showObjects == nullptr) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    return showObjects();
}
