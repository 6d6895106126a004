// Loads the module from its own folder, catches what the module throws, and proves that both use
// the one library that stands beside them.

#include "../common/UseLibrary.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

namespace
{
std::set<std::string> LoadedLibraries()
{
    std::set<std::string> result;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("libBaseUtilities.so") != std::string::npos)
            result.insert(line.substr(line.find('/')));
    return result;
}

int RunModule(std::filesystem::path const& folder)
{
    void* const module = dlopen((folder / "suite.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        std::cerr << dlerror() << '\n';
        return 20;
    }
    auto const run = reinterpret_cast<int (*)()>(dlsym(module, "RunSuite"));
    try {
        return run();
    } catch (TQDOMDocException const& error) {
        return std::strcmp(error.what(), "The suite failed.") == 0 ? 0 : 21;
    }
}
} // namespace

int main()
{
    auto const folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    if (int const failedStep = UseLibrary(); failedStep != 0)
        return failedStep;
    if (int const failure = RunModule(folder); failure != 0)
        return failure;
    return LoadedLibraries() == std::set<std::string>{folder / "libBaseUtilities.so"} ? 0 : 30;
}
