// Loads two modules and lets every party throw every type at every handler of every party.
//
// Usage: executable MODULE MODULE local|global      prints how many cells it checked

#include "Matrix.h"

#include <array>
#include <dlfcn.h>
#include <iostream>
#include <string>
#include <vector>

namespace
{
struct Party
{
    char const* m_Name;
    ThrowFunction m_Throw;
    CatchFunction m_Catch;
};

/// What the library itself throws, with the message and status of the others put in.
void LibraryThrow(int type)
{
    if (type == 7) {
        TQUserAbort::UserAbortReset();
        TQUserAbort::Send();
    }
    char const *const one = "1", *const two = "2";
    DoThrow<TQRunTimeException, char const*, char const*>(Status, "thrown %s of %s", one, two);
}

template <std::size_t Type, std::size_t... Handler>
constexpr std::array<bool, sizeof...(Handler)> Row(std::index_sequence<Handler...>)
{
    return {std::is_base_of_v<std::tuple_element_t<Handler, Handlers>,
                              std::tuple_element_t<Type, Thrown>>...};
}

template <std::size_t... Type>
constexpr auto Table(std::index_sequence<Type...>)
{
    return std::array{Row<Type>(std::make_index_sequence<std::size_t(HandlerCount)>())...};
}

/// Which handler must catch which thrown type: its own and those of its bases.
constexpr auto Expected = Table(std::make_index_sequence<std::size_t(ThrownCount)>());

Party Load(char const* path, int flags)
{
    void* const module = dlopen(path, RTLD_NOW | flags);
    if (module == nullptr)
        throw std::runtime_error(dlerror());
    return {path, reinterpret_cast<ThrowFunction>(dlsym(module, "ModuleThrow")),
            reinterpret_cast<CatchFunction>(dlsym(module, "ModuleCatch"))};
}

class CMatrix
{
public:
    void Check(Party const& thrower, Party const& catcher, int type)
    {
        for (int handler = 0; handler < HandlerCount; ++handler) {
            ++m_Checked;
            bool const expected = Expected[std::size_t(type)][std::size_t(handler)];
            int const caught = catcher.m_Catch(thrower.m_Throw, type, handler);
            if (caught == int(expected))
                continue;
            ++m_Failed;
            std::cerr << thrower.m_Name << " threw type " << type << ", handler " << handler
                      << " of " << catcher.m_Name << ": " << caught << '\n';
        }
    }

    int m_Checked = 0;
    int m_Failed = 0;
};
} // namespace

int main(int, char** argv)
{
    int const flags = std::string(argv[3]) == "global" ? RTLD_GLOBAL : RTLD_LOCAL;
    std::vector<Party> const parties = {
        {"executable", &Throw, &Catch}, Load(argv[1], flags), Load(argv[2], flags)};
    Party const library = {"library", &LibraryThrow, nullptr};

    CMatrix matrix;
    for (auto const& catcher : parties) {
        for (auto const& thrower : parties)
            for (int type = 0; type < ThrownCount; ++type)
                matrix.Check(thrower, catcher, type);
        for (int const type : {4, 7}) // TQRunTimeException, TQUserAbort
            matrix.Check(library, catcher, type);
    }
    std::cout << matrix.m_Checked << '\n';
    return matrix.m_Failed == 0 ? 0 : 1;
}
