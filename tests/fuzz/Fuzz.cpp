#include "Fuzz.h"

#include <cstdio>
#include <cstdlib>

namespace
{
std::string Shown(std::string_view text)
{
    std::string shown = "\"";
    for (char const character : text) {
        if (character >= ' ' && character <= '~' && character != '"' && character != '\\') {
            shown += character;
            continue;
        }
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(character));
        shown += escaped;
    }
    return shown + '"';
}

[[noreturn]] void EndWith(char const* what, std::string const& library, std::string const& oracle)
{
    std::fprintf(stderr, "DIFFERENCE in %s\n library: %s\n  oracle: %s\n", what, library.c_str(),
                 oracle.c_str());
    std::abort();
}
} // namespace

void ExpectSame(char const* what, std::string_view library, std::string_view oracle)
{
    if (library != oracle)
        EndWith(what, Shown(library), Shown(oracle));
}

void ExpectSame(char const* what, long long library, long long oracle)
{
    if (library != oracle)
        EndWith(what, std::to_string(library), std::to_string(oracle));
}

bool IsDefectPlanted()
{
    static bool const planted = std::getenv("BASEUTILITIES_FUZZ_DEFECT") != nullptr;
    return planted;
}
