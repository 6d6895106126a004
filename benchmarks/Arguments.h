#pragma once

#include <algorithm>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

/// The command line of the benchmark programs: --name or --name=value.
class CArguments
{
public:
    CArguments(int argc, char** argv)
        : m_Arguments(argv + 1, argv + argc),
          m_Filter(Value("filter"))
    {
    }

    bool Has(std::string const& name) const
    {
        return std::any_of(m_Arguments.begin(), m_Arguments.end(),
                           [&](std::string const& argument) { return argument == "--" + name; });
    }

    std::string Value(std::string const& name) const
    {
        std::string const start = "--" + name + "=";
        for (std::string const& argument : m_Arguments) {
            if (argument.compare(0, start.size(), start) == 0)
                return argument.substr(start.size());
        }
        return "";
    }

    /// Whether --filter, a regular expression, lets an operation through.
    bool Selects(std::string const& operation) const
    {
        return std::regex_search(operation, m_Filter);
    }

private:
    std::vector<std::string> m_Arguments;
    std::regex m_Filter;
};
