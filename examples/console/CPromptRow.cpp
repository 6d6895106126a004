#include "CPromptRow.h"

#include "CLineEditor.h"
#include "TextLayout.h"

#include <algorithm>

namespace
{
constexpr std::string_view prompt = "  > ";
} // namespace

void CPromptRow::Show(CLineEditor const& line, std::string const& note)
{
    // One column stays free: a terminal wraps once the last one is written.
    std::size_t const width = std::max<std::size_t>(CTerminal::Width(), prompt.size() + 3) - 1;
    std::size_t const room = width - prompt.size();
    bool const hasNote = !note.empty() && note.size() + 2 < room / 2;
    std::size_t const noted = hasNote ? note.size() + 2 : 0;

    std::string const mark = m_Terminal.m_Utf8 ? "…" : "...";
    std::size_t const space = room - noted;
    std::string const before = ElideStart(Printable(line.BeforeCursor()), space - 1, mark);
    std::size_t const left = space - DisplayWidth(before);
    std::string const after = CutEnd(Printable(line.AfterCursor()), left);

    std::string const upToCursor = std::string(prompt) + before;
    std::string row = upToCursor + after;
    if (noted > 0)
        row += std::string(left - DisplayWidth(after) + 2, ' ') + note;
    Draw(row, upToCursor);
}

void CPromptRow::Draw(std::string const& row, std::string const& upToCursor)
{
    std::string const shown = row + '\r' + upToCursor;
    if (shown == m_Shown)
        return;
    std::size_t const width = DisplayWidth(row);
    m_Stream << '\r' << row << std::string(m_Width > width ? m_Width - width : 0, ' ') << '\r'
             << upToCursor << std::flush;
    m_Shown = shown;
    m_Width = width;
}

void CPromptRow::Clear()
{
    if (m_Width > 0)
        m_Stream << '\r' << std::string(std::min(m_Width, CTerminal::Width() - 1), ' ') << '\r';
    m_Width = 0;
    m_Shown.clear();
}
