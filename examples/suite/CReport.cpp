#include "CReport.h"

#include "RunRecord.h"
#include "SuiteTexts.h"

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/StringUtilities.h>

#include <cerrno>
#include <fstream>
#include <system_error>

void CReport::Begin(CSuitePlan const& plan)
{
    CRunRecord const& run = plan.m_Run;
    m_Lines.push_back("File fidelity of " + plan.m_Folder);
    m_Lines.push_back("Run " + run.m_Identifier + ", begun " + run.m_Started);
    m_Lines.push_back("BaseUtilities " + run.m_LibraryVersion + " on " + run.m_SystemVersion);
    m_Lines.emplace_back("");
}

void CReport::Add(CCase const& finished, CCaseOutcome const& outcome)
{
    m_Lines.push_back(CFormattedString("%-5s %s", VerdictMark(outcome.m_Verdict), finished.m_Name));
    if (!outcome.m_Detail.empty())
        m_Lines.push_back("      " + outcome.m_Detail);
}

void CReport::End(CSuiteSummary const& summary)
{
    m_Lines.emplace_back("");
    m_Lines.push_back(CountsText(summary));
    if (!summary.m_Problem.empty())
        m_Lines.push_back(summary.m_Problem);
    m_Lines.push_back(
        CFormattedString("%s, ended %s", VerdictMark(summary.m_Verdict), summary.m_Finished));
}

CSafeString CReport::Text() const
{
    return StringJoin(m_Lines, "\n") + '\n';
}

void CReport::Save(CSafeString const& file) const
{
    CSafeString const text = Text();
    errno = 0;
    std::ofstream stream(file.to_path(), std::ios::binary | std::ios::trunc);
    stream.write(text.get(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream)
        DoThrow<TQRunTimeException>(TEST_STATUS_NO_REPORT,
                                    "Unable to save the report to '%s' (%s).", file,
                                    std::generic_category().message(errno));
}
