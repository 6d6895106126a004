// Gives a target the inputs of a folder, one after the other: the kept corpus as a test, with any
// compiler and any sanitizer.

#include "Fuzz.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "Usage: %s FOLDER\n", arguments[0]);
        return 64;
    }
    // A difference ends the process as a crash, for libFuzzer; here it is a failure like another.
    std::signal(SIGABRT, [](int) { std::_Exit(1); });
    std::vector<std::filesystem::path> files;
    for (std::filesystem::path const& file : std::filesystem::directory_iterator(arguments[1]))
        files.push_back(file);
    std::sort(files.begin(), files.end());
    for (std::filesystem::path const& file : files) {
        std::ifstream stream(file, std::ios::binary);
        std::vector<char> const bytes(std::istreambuf_iterator<char>(stream), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs, and no difference.\n", files.size());
    return files.empty() ? 1 : 0;
}
