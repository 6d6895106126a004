#include "SuiteTexts.h"

namespace
{
struct CWords
{
    char const* m_Name;
    char const* m_Mark;
};

CWords WordsFor(TEST_STATUS verdict)
{
    switch (static_cast<std::uint32_t>(verdict)) {
    case TEST_STATUS_PASSED:
        return {"Passed", "PASS"};
    case TEST_STATUS_SKIPPED:
        return {"Skipped", "SKIP"};
    case TEST_STATUS_ABORTED:
        return {"Aborted", "ABORT"};
    default: // a check that broke down counts as failed
        return {"Failed", "FAIL"};
    }
}
} // namespace

char const* GroupName(ECaseGroup group)
{
    return group == ECaseGroup::Files ? "Files, copied and compared"
                                      : "Copies that must be refused";
}

char const* VerdictName(TEST_STATUS verdict)
{
    return WordsFor(verdict).m_Name;
}

char const* VerdictMark(TEST_STATUS verdict)
{
    return WordsFor(verdict).m_Mark;
}

char const* AbortQuestion(bool suggested)
{
    return suggested ? "The suite suggests to end here. Abort it?" : "Abort the suite?";
}
