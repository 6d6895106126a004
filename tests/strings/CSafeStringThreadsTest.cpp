#include <BaseUtilities/CSafeString.h>

#include "SafeStringInspection.h"
#include "Threads.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

// One string, read by several threads at once: ThreadSanitizer reports any reader that writes.
namespace
{
struct ReadRow
{
    char const* name;
    std::function<bool(CSafeString const&)> reads; // whether it read what was there
};

std::string const shared = "a text that no string keeps in itself";

ReadRow const readRows[] = {
    {"Get", [](CSafeString const& text) { return text.get() == shared; }},
    {"Data", [](CSafeString const& text) { return text.data() == shared; }},
    {"Size", [](CSafeString const& text) { return text.size() == shared.size(); }},
    {"Empty", [](CSafeString const& text) { return !text.empty(); }},
    {"Index", [](CSafeString const& text) { return text[2] == 't'; }},
    {"Front", [](CSafeString const& text) { return text.front() == 'a'; }},
    {"Back", [](CSafeString const& text) { return text.back() == 'f'; }},
    {"View", [](CSafeString const& text) { return basic_sv_wrapper<char>(text) == shared; }},
    {"Compare", [](CSafeString const& text) { return text.compare(shared) == 0; }},
    {"EqualToText", [](CSafeString const& text) { return text == shared.c_str(); }},
    {"EqualToView", [](CSafeString const& text) { return text == basic_sv_wrapper<char>(shared); }},
    {"EqualToItself", [](CSafeString const& text) { return text == text; }},
    {"Less", [](CSafeString const& text) { return !std::less<CSafeString>()(text, text); }},
    {"Substr", [](CSafeString const& text) { return text.substr(2, 4) == "text"; }},
    {"ToPath", [](CSafeString const& text) { return text.to_path() == shared; }},
    {"Copy", [](CSafeString const& text) { return Bytes(CSafeString(text)) == shared; }},
    {"Assign",
     [](CSafeString const& text) {
         CSafeString own("own");
         own = text;
         return Bytes(own) == shared;
     }},
    {"Append",
     [](CSafeString const& text) {
         CSafeString own;
         own += text;
         return Bytes(own) == shared;
     }},
    {"Concatenate", [](CSafeString const& text) { return Bytes(text + text) == shared + shared; }},
};

void PrintTo(ReadRow const& row, std::ostream* stream)
{
    *stream << row.name;
}

class CSafeStringThreads : public testing::TestWithParam<ReadRow>
{
};

INSTANTIATE_TEST_SUITE_P(All, CSafeStringThreads, testing::ValuesIn(readRows),
                         [](auto const& row) { return std::string(row.param.name); });
} // namespace

TEST_P(CSafeStringThreads, ReadOneStringAtOnce)
{
    CSafeString const text(shared);
    CBarrier start(4);
    unsigned wrong[4] = {};
    RunOnThreads(4, [&](unsigned index) {
        start.Wait();
        for (int round = 0; round < 100; ++round)
            wrong[index] += GetParam().reads(text) ? 0u : 1u;
    });
    for (unsigned const count : wrong)
        EXPECT_EQ(count, 0u);
}
