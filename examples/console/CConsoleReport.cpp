#include "CConsoleReport.h"

#include "TextLayout.h"

#include <RunRecord.h>
#include <SuiteTexts.h>
#include <VerdictFormat.h>

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/StringUtilities.h>

#include <algorithm>
#include <ios>

namespace
{
constexpr std::chrono::milliseconds barPeriod(50);
constexpr std::size_t narrowest = 32; // that has room for sizes
constexpr std::size_t detailIndent = 8;
constexpr std::size_t failuresListed = 20;

std::string DurationText(std::chrono::nanoseconds duration)
{
    double const seconds = std::chrono::duration<double>(duration).count();
    return CFormattedString(seconds < 10 ? "%.2f s" : "%.0f s", seconds).get();
}

std::string Blanks(std::size_t count)
{
    std::string blanks;
    blanks.append(count, ' ');
    return blanks;
}
} // namespace

CConsoleReport::CConsoleReport(std::ostream& stream, CTerminal terminal, bool quiet)
    : m_Stream(stream),
      m_Terminal(terminal),
      m_Quiet(quiet)
{
}

void CConsoleReport::FilesFound(unsigned long count)
{
    Lock const lock(m_Lock);
    m_Activity = "Looking for files: " + std::to_string(count);
    ShowBarIfDue();
}

void CConsoleReport::SuiteStarted(CSuitePlan const& plan)
{
    Lock const lock(m_Lock);
    SetWorkFolder(plan.m_WorkFolder.get());
    m_CaseCount = plan.m_CaseCount;
    ClearBar();
    WriteText(EColour::Bold, "File fidelity of " + Printable(plan.m_Folder.get()));
    WriteText(EColour::Dim, Printable(("Run " + plan.m_Run.m_Identifier).get()));
    WriteText(EColour::Dim, Printable(("Begun " + plan.m_Run.m_Started).get()));
    WriteText(EColour::Dim, Printable(("BaseUtilities " + plan.m_Run.m_LibraryVersion + " on "
                                       + plan.m_Run.m_SystemVersion)
                                          .get()));
    WriteText(EColour::Dim, "Working in " + Printable(plan.m_WorkFolder.get()));
    Flush();
}

void CConsoleReport::CaseStarted(CCase const& started)
{
    Lock const lock(m_Lock);
    m_Activity = Printable(started.m_Name.get());
    ShowBarIfDue();
}

void CConsoleReport::CaseFinished(CCase const& finished, CCaseOutcome const& outcome)
{
    Lock const lock(m_Lock);
    ++m_Done;
    bool const passed = outcome.m_Verdict == TEST_STATUS_PASSED;
    if (!passed && outcome.m_Verdict != TEST_STATUS_SKIPPED) {
        ++m_Failed;
        if (m_Failures.size() < failuresListed)
            m_Failures.push_back(Printable(finished.m_Name.get()));
    }
    if (m_Quiet && passed)
        return;
    ClearBar();
    WriteGroupHead(finished.m_Group);
    WriteCase(finished, outcome);
    ShowBar();
}

void CConsoleReport::SuitePaused()
{
    Lock const lock(m_Lock);
    m_Paused = true;
    if (m_Terminal.m_Live)
        ShowBar();
    else
        WriteLine("Paused.");
    Flush();
}

void CConsoleReport::SuiteResumed()
{
    Lock const lock(m_Lock);
    m_Paused = false;
    if (m_Terminal.m_Live)
        ShowBar();
    else
        WriteLine("Resumed.");
    Flush();
}

void CConsoleReport::SuiteFinished(CSuiteSummary const& summary)
{
    Lock const lock(m_Lock);
    SetWorkFolder("");
    m_Finished = true;
    ClearBar();
    WriteFailures();
    WriteLine("");
    WriteCounts(summary);
    if (!summary.m_Problem.empty())
        WriteText(EColour::Red, Printable(summary.m_Problem.get()));
    WriteLine(m_Terminal.Painted(VerdictFormat(summary.m_Verdict),
                                 ToUpper(VerdictName(summary.m_Verdict)).get()));
    Flush();
}

void CConsoleReport::Tick()
{
    Lock const lock(m_Lock);
    if (m_Held || m_Finished)
        return;
    if (m_AbortRequested && !m_AbortNotice)
        WriteAbortNotice();
    ShowBarIfDue();
}

void CConsoleReport::ShowKeys()
{
    Lock const lock(m_Lock);
    if (m_Finished)
        return;
    ClearBar();
    WriteText(EColour::Dim, "Keys: p pauses, r resumes, a or q aborts after the case at hand, "
                            "h shows this; Ctrl-C aborts, and at once the second time.");
    ShowBar();
}

bool CConsoleReport::Hold()
{
    Lock const lock(m_Lock);
    m_Held = true;
    ClearBar();
    Flush();
    return m_BlankAbove;
}

void CConsoleReport::Release()
{
    Lock const lock(m_Lock);
    m_Held = false;
    m_BlankAbove = true;
    ShowBar();
}

std::string CConsoleReport::WorkFolder() const
{
    Lock const lock(m_WorkFolderLock);
    return m_WorkFolder;
}

void CConsoleReport::SetWorkFolder(std::string const& folder)
{
    Lock const lock(m_WorkFolderLock);
    m_WorkFolder = folder;
}

void CConsoleReport::WriteAbortNotice()
{
    m_AbortNotice = true;
    ClearBar();
    WriteLine(m_Terminal.Painted(EColour::Yellow,
                                 "Ending after the case at hand. Ctrl-C again ends at once."));
    ShowBar();
}

void CConsoleReport::WriteGroupHead(ECaseGroup group)
{
    bool& written = group == ECaseGroup::Files ? m_FilesHead : m_RefusalsHead;
    if (written)
        return;
    written = true;
    WriteLine("");
    WriteText(EColour::Bold, GroupName(group));
}

void CConsoleReport::WriteCase(CCase const& finished, CCaseOutcome const& outcome)
{
    std::string name = Printable(finished.m_Name.get());
    bool const passedFile =
        finished.m_Group == ECaseGroup::Files && outcome.m_Verdict == TEST_STATUS_PASSED;
    if (passedFile && !outcome.m_Detail.empty())
        name += " (" + Printable(outcome.m_Detail.get()) + ")";

    std::size_t const width = m_Terminal.LineWidth();
    bool const sized = passedFile && width >= narrowest;
    std::string const size = sized ? ByteText(outcome.m_Bytes) : std::string();
    std::size_t const taken = detailIndent + (sized ? size.size() + 2 : 0);
    std::size_t const room = width > taken ? width - taken : 1;
    if (m_Terminal.m_Live)
        name = ElideStart(name, room, m_Terminal.m_Utf8 ? "…" : "...");
    std::size_t const used = DisplayWidth(name);

    std::string line = "  " + VerdictText(outcome.m_Verdict) + "  " + name;
    if (sized)
        line +=
            Blanks((used < room ? room - used : 0) + 2) + m_Terminal.Painted(EColour::Dim, size);
    WriteLine(line);
    if (!passedFile)
        WriteText(EColour::Dim, Printable(outcome.m_Detail.get(), true), detailIndent);
}

void CConsoleReport::WriteCounts(CSuiteSummary const& summary)
{
    WriteText(EColour::None, CountsText(summary).get());
    WriteText(EColour::None, "Compared " + ByteText(summary.m_Bytes) + " in "
                                 + DurationText(summary.m_Duration) + ".");
    WriteText(EColour::None, "Ended " + Printable(summary.m_Finished.get()) + ".");
}

void CConsoleReport::WriteFailures()
{
    if (m_Failures.empty())
        return;
    WriteLine("");
    WriteLine(m_Terminal.Painted(EColour::Bold, "What failed"));
    for (std::string const& name : m_Failures)
        WriteLine("  " + name);
    if (m_Failed > m_Failures.size())
        WriteLine("  and " + std::to_string(m_Failed - m_Failures.size()) + " more");
}

void CConsoleReport::WriteLine(std::string const& line)
{
    if (!line.empty() || !m_BlankAbove)
        m_Stream << line << '\n';
    m_BlankAbove = false;
}

// Exact to the letter where nobody watches; otherwise kept within the window.
void CConsoleReport::WriteText(EColour colour, std::string const& text, std::size_t indent)
{
    std::size_t const width = m_Terminal.LineWidth();
    bool const wrapped = m_Terminal.m_Live && width > 2 * indent;
    for (std::string const& line : Wrap(text, wrapped ? width - indent : std::string::npos))
        WriteLine(Blanks(indent) + m_Terminal.Painted(colour, line));
}

void CConsoleReport::ShowBarIfDue()
{
    if (m_BarWidth == 0 || Clock::now() - m_BarShown >= barPeriod)
        ShowBar();
}

// Only with carriage returns and blanks, which every terminal understands.
void CConsoleReport::ShowBar()
{
    if (!m_Terminal.m_Live) {
        Flush();
        return;
    }
    // One column stays free: a terminal wraps once the last one is written.
    std::string const text = BarText(CTerminal::Width() - 1);
    std::size_t const width = DisplayWidth(text);
    std::size_t const stale = m_BarWidth > width ? m_BarWidth - width : 0;
    m_Stream << '\r' << text << Blanks(stale) << '\r';
    m_BarWidth = width;
    m_BarShown = Clock::now();
    Flush();
}

void CConsoleReport::ClearBar()
{
    if (m_BarWidth > 0)
        m_Stream << '\r' << Blanks(std::min(m_BarWidth, CTerminal::Width() - 1)) << '\r';
    m_BarWidth = 0;
}

void CConsoleReport::Flush()
{
    m_Stream.flush();
    if (!m_Stream)
        throw std::ios_base::failure("Standard output takes no more");
}

std::string CConsoleReport::BarText(std::size_t width) const
{
    std::string const mark = m_Terminal.m_Utf8 ? "…" : "...";
    std::string const activity = m_Paused ? "Paused" : m_Activity;
    if (m_CaseCount == 0)
        return ElideStart(activity, width, mark);

    std::string const count = std::to_string(m_Done) + "/" + std::to_string(m_CaseCount);
    if (width < count.size() + 8)
        return ElideStart(count, width, "");
    std::size_t const cells = std::min<std::size_t>(30, (width - count.size()) / 2);
    std::string const front = Bar(cells) + " " + count;
    std::size_t const used = cells + 1 + count.size();
    return width < used + 6 ? front : front + "  " + ElideStart(activity, width - used - 2, mark);
}

std::string CConsoleReport::Bar(std::size_t cells) const
{
    std::size_t const full = cells * m_Done / m_CaseCount;
    std::string bar;
    for (std::size_t cell = 0; cell < cells; ++cell) {
        if (m_Terminal.m_Utf8)
            bar += cell < full ? "█" : "░";
        else
            bar += cell < full ? "#" : "-";
    }
    return bar;
}

std::string CConsoleReport::VerdictText(TEST_STATUS verdict) const
{
    return m_Terminal.Painted(VerdictFormat(verdict), VerdictMark(verdict));
}
