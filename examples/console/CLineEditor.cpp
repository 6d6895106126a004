#include "CLineEditor.h"

#include "CKeyboard.h"

namespace
{
constexpr int ctrlA = 1;
constexpr int ctrlE = 5;
constexpr int ctrlH = 8;
constexpr int ctrlU = 21;
constexpr int backspace = 127;

bool ContinuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}
} // namespace

void CLineEditor::Apply(int key)
{
    switch (key) {
    case CKeyboard::Left:
        m_Cursor = Previous();
        break;
    case CKeyboard::Right:
        m_Cursor = Next();
        break;
    case CKeyboard::Home:
    case ctrlA:
        m_Cursor = 0;
        break;
    case CKeyboard::End:
    case ctrlE:
        m_Cursor = m_Text.size();
        break;
    case ctrlH:
    case backspace:
        if (m_Cursor == 0)
            break;
        m_Cursor = Previous();
        EraseAfterCursor();
        break;
    case CKeyboard::Delete:
        EraseAfterCursor();
        break;
    case CKeyboard::Up:
        Replace(m_Suggestion);
        break;
    case CKeyboard::Down:
    case ctrlU:
        Replace("");
        break;
    default:
        Insert(key);
    }
}

void CLineEditor::Insert(int key)
{
    if (key < ' ' || key > 0xFF)
        return;
    m_Text.insert(m_Cursor, 1, static_cast<char>(key));
    ++m_Cursor;
}

void CLineEditor::Replace(std::string text)
{
    m_Text = std::move(text);
    m_Cursor = m_Text.size();
}

void CLineEditor::EraseAfterCursor()
{
    m_Text.erase(m_Cursor, Next() - m_Cursor);
}

std::size_t CLineEditor::Previous() const
{
    std::size_t at = m_Cursor;
    if (at > 0)
        --at;
    while (at > 0 && ContinuesCharacter(m_Text[at]))
        --at;
    return at;
}

std::size_t CLineEditor::Next() const
{
    std::size_t at = m_Cursor;
    if (at < m_Text.size())
        ++at;
    while (at < m_Text.size() && ContinuesCharacter(m_Text[at]))
        ++at;
    return at;
}
