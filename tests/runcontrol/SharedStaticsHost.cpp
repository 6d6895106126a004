// Loads modules into a process and tells whether they share the run control's static members.
//
// Usage: SharedStaticsHost local|global [LIBRARY] MODULE...
//
// Built twice: linked with the library, as applications are, and without it. "global" and "local"
// are the scopes in which the modules are loaded; the library itself, where it is named, is loaded
// globally before. Prints "one" or "several"; ends with 2 when something cannot be loaded.

#include "SharedStatics.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <dlfcn.h>

namespace
{
void* Found(void* result)
{
    if (result == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::exit(2);
    }
    return result;
}

std::vector<ModulesView> Load(int scope, std::vector<std::string> const& paths)
{
    std::vector<ModulesView> views;
    for (std::string const& path : paths) {
        bool const isLibrary = path.find("libBaseUtilities.so") != std::string::npos;
        void* const module =
            Found(dlopen(path.c_str(), RTLD_NOW | (isLibrary ? RTLD_GLOBAL : scope)));
        if (isLibrary)
            continue;
        using Fill = void (*)(ModulesView&);
        reinterpret_cast<Fill>(Found(dlsym(module, "View")))(views.emplace_back());
    }
    return views;
}
} // namespace

int main(int count, char** arguments)
{
    if (count < 3)
        return 2;
    int const scope = std::string(arguments[1]) == "global" ? RTLD_GLOBAL : RTLD_LOCAL;
    std::vector<ModulesView> const views = Load(scope, {arguments + 2, arguments + count});
#ifdef HOST_USES_THE_LIBRARY
    SharedStatics const expected = StaticsSeenHere();
#else
    SharedStatics const expected = views.at(0).statics();
#endif
    bool one = true;
    for (ModulesView const& view : views)
        one = one && view.statics() == expected && view.agreesWithTheLibrary();
    std::puts(one ? "one" : "several");
    return 0;
}
