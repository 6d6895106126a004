#pragma once

#include <cstddef>
#include <string>
#include <utility>

/// A line that an operator types, with a cursor in it. Takes any byte that is no
/// control character, so text in UTF-8 as in older encodings; the cursor moves
/// by whole characters of UTF-8.
class CLineEditor
{
public:
    /// `suggestion` is what the Up key puts into the line, to be edited there.
    explicit CLineEditor(std::string suggestion) : m_Suggestion(std::move(suggestion)) {}

    /// A key of CKeyboard's. Those that edit nothing are passed over.
    void Apply(int key);

    std::string const& Text() const { return m_Text; }
    std::string BeforeCursor() const { return m_Text.substr(0, m_Cursor); }
    std::string AfterCursor() const { return m_Text.substr(m_Cursor); }

private:
    void Insert(int key);
    void Replace(std::string text);
    void EraseAfterCursor();
    std::size_t Previous() const;
    std::size_t Next() const;

    std::string m_Suggestion;
    std::string m_Text;
    std::size_t m_Cursor = 0; // in bytes
};
