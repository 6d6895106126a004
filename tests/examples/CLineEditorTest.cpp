#include <CKeyboard.h>
#include <CLineEditor.h>

#include <gtest/gtest.h>

namespace
{
void Type(CLineEditor& line, std::string const& text)
{
    for (char const byte : text)
        line.Apply(static_cast<unsigned char>(byte));
}

constexpr int backspace = 127;
constexpr int ctrlH = 8;
constexpr int ctrlU = 21;
} // namespace

TEST(CLineEditor, TakesWhatIsTypedWhereTheCursorStands)
{
    CLineEditor line("");
    Type(line, "ac");
    line.Apply(CKeyboard::Left);
    Type(line, "b");
    EXPECT_EQ(line.Text(), "abc");
    EXPECT_EQ(line.BeforeCursor(), "ab");
    EXPECT_EQ(line.AfterCursor(), "c");
}

TEST(CLineEditor, MovesAndErasesByWholeCharacters)
{
    CLineEditor line("");
    Type(line, "aé€😀");
    line.Apply(backspace);
    EXPECT_EQ(line.Text(), "aé€");
    line.Apply(CKeyboard::Left);
    line.Apply(CKeyboard::Left);
    EXPECT_EQ(line.BeforeCursor(), "a");
    line.Apply(CKeyboard::Delete);
    EXPECT_EQ(line.Text(), "a€");
    line.Apply(CKeyboard::Right);
    line.Apply(ctrlH);
    EXPECT_EQ(line.Text(), "a");
}

TEST(CLineEditor, StaysWithinItsEnds)
{
    CLineEditor line("");
    for (int const key :
         {int(CKeyboard::Left), int(CKeyboard::Right), int(CKeyboard::Delete), backspace, ctrlU})
        line.Apply(key);
    EXPECT_EQ(line.Text(), "");
    Type(line, "ab");
    line.Apply(CKeyboard::Right);
    line.Apply(CKeyboard::Delete);
    line.Apply(CKeyboard::Home);
    line.Apply(backspace);
    line.Apply(CKeyboard::Left);
    EXPECT_EQ(line.AfterCursor(), "ab");
}

TEST(CLineEditor, GoesToItsEndsByEitherKey)
{
    CLineEditor line("");
    Type(line, "ab");
    for (int const home : {int(CKeyboard::Home), 1}) {
        line.Apply(home);
        EXPECT_EQ(line.BeforeCursor(), "");
        line.Apply(home == 1 ? 5 : int(CKeyboard::End));
        EXPECT_EQ(line.AfterCursor(), "");
    }
}

TEST(CLineEditor, BringsTheSuggestionAndClears)
{
    CLineEditor line("proposed");
    Type(line, "x");
    line.Apply(CKeyboard::Up);
    EXPECT_EQ(line.BeforeCursor(), "proposed");
    line.Apply(ctrlU);
    EXPECT_EQ(line.Text(), "");
    line.Apply(CKeyboard::Up);
    line.Apply(CKeyboard::Down);
    EXPECT_EQ(line.Text(), "");
}

TEST(CLineEditor, PassesOverControlCharactersAndOtherKeys)
{
    CLineEditor line("");
    for (int const key : {0, 2, 9, 27, 31, 0x1FF, int(CKeyboard::EndOfInput)})
        line.Apply(key);
    EXPECT_EQ(line.Text(), "");
}
