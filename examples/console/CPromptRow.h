#pragma once

#include "Terminal.h"

#include <ostream>
#include <string>
#include <string_view>

class CLineEditor;

/// The row below a question, where the operator's answer stands. Drawn with
/// carriage returns and blanks alone, which every terminal understands.
class CPromptRow
{
public:
    CPromptRow(std::ostream& stream, CTerminal terminal) : m_Stream(stream), m_Terminal(terminal) {}

    /// Shows the line with its cursor, and `note` at the right. Draws only what has changed.
    void Show(CLineEditor const& line, std::string const& note);
    /// Removes the row, so that lines can be written.
    void Clear();
    /// Has the next Show draw it all, for the screen may have changed.
    void Forget() { m_Shown.clear(); }

private:
    void Draw(std::string const& row, std::string const& upToCursor);

    std::ostream& m_Stream;
    CTerminal m_Terminal;
    std::string m_Shown;
    std::size_t m_Width = 0;
};
