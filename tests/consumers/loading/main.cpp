// Knows the library by its file name alone: the version is asked under plain names.

#include <cstdio>
#include <dlfcn.h>
#include <initializer_list>

int main()
{
    void* const library = dlopen("libBaseUtilities.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    int const expected[] = {5, 0, 2, 0};
    int position = 0;
    for (char const* name :
         {"GetVersionMajor", "GetVersionMinor", "GetVersionPatch", "GetVersionTweak"}) {
        auto const function = reinterpret_cast<int (*)()>(dlsym(library, name));
        if (function == nullptr || function() != expected[position++])
            return 2;
    }
    return dlclose(library);
}
