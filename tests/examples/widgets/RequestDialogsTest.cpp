// What the dialogues do by themselves; that they answer requests is the bridge's test.

#include <RequestDialogs.h>

#include "CScriptedOperator.h"

#include <CMessageText.h>

#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include <cstdint>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
CRequestTexts const texts = {"Really?", "Yes", "No", "Abort"};

template <class Dialog>
void Show(Dialog& dialog)
{
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
}

QString Countdown(QDialog const& dialog)
{
    return dialog.findChild<QLabel*>("countdown")->text();
}

QAbstractButton& Accept(QDialog& dialog)
{
    return *FindButton(dialog, "Yes");
}

bool AcceptsNumber(CIntegerDialog& dialog, QString const& text)
{
    dialog.findChild<QLineEdit*>()->setText(text);
    return Accept(dialog).isEnabled();
}
} // namespace

TEST(CRequestDialog, ShowsItsTextAndAButtonForEachAnswer)
{
    CRequestDialog dialog(nullptr, texts, 0);
    Show(dialog);
    EXPECT_EQ(FindParts<CMessageText>(dialog).front()->toPlainText(), "Really?");
    for (char const* const text : {"Yes", "No", "Abort"})
        EXPECT_NE(FindButton(dialog, text), nullptr);
    EXPECT_EQ(dialog.Reply(), EReply::Rejected);
}

TEST(CRequestDialog, HasNoButtonWithoutAText)
{
    CRequestDialog dialog(nullptr, {"Really?", "Yes", "", ""}, 0);
    Show(dialog);
    int visible = 0;
    for (QAbstractButton const* const button : dialog.findChildren<QAbstractButton*>())
        visible += button->isVisible() ? 1 : 0;
    EXPECT_EQ(visible, 1);
}

TEST(CRequestDialog, ShowsAnAmpersandAsOne)
{
    CRequestDialog dialog(nullptr, {"Really?", "Save & close", "", ""}, 0);
    Show(dialog);
    EXPECT_EQ(dialog.findChild<QPushButton*>()->text(), "Save && close") << "as Qt writes it";
}

TEST(CRequestDialog, RepliesByItsButtons)
{
    struct CRow
    {
        char const* m_Button;
        EReply m_Reply;
    };
    for (CRow const& row : {CRow{"Yes", EReply::Accepted}, CRow{"No", EReply::Rejected},
                            CRow{"Abort", EReply::AbortSuite}}) {
        SCOPED_TRACE(row.m_Button);
        CRequestDialog dialog(nullptr, texts, 0);
        Show(dialog);
        ClickButton(dialog, row.m_Button);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.Reply(), row.m_Reply);
        EXPECT_EQ(dialog.result() == QDialog::Accepted, row.m_Reply == EReply::Accepted);
    }
}

TEST(CRequestDialog, AcceptsByEnterAndRejectsByEscape)
{
    CRequestDialog accepted(nullptr, texts, 0);
    Show(accepted);
    PressKey(accepted, Qt::Key_Return);
    EXPECT_EQ(accepted.Reply(), EReply::Accepted);

    CRequestDialog rejected(nullptr, texts, 0);
    Show(rejected);
    PressKey(rejected, Qt::Key_Escape);
    EXPECT_FALSE(rejected.isVisible());
    EXPECT_EQ(rejected.Reply(), EReply::Rejected);
}

TEST(CRequestDialog, ReachesEveryButtonByTheTabKey)
{
    CRequestDialog dialog(nullptr, texts, 0);
    Show(dialog);
    QStringList reached;
    for (int step = 0; step < 3; ++step) {
        auto const* const button = qobject_cast<QAbstractButton*>(dialog.focusWidget());
        ASSERT_NE(button, nullptr);
        reached << button->text().remove('&');
        PressKey(dialog, Qt::Key_Tab);
    }
    EXPECT_EQ(reached.front(), "Yes") << "where Enter and Space do the same";
    reached.sort();
    EXPECT_EQ(reached, QStringList({"Abort", "No", "Yes"}));
}

TEST(CRequestDialog, CountsTheSecondsDown)
{
    CRequestDialog dialog(nullptr, texts, 3);
    Show(dialog);
    auto& timer = *dialog.findChild<QTimer*>();
    auto const& bar = *dialog.findChild<QProgressBar*>();
    EXPECT_EQ(timer.interval(), 1000);
    EXPECT_EQ(Countdown(dialog), "Without an answer: \"No\" in 3 seconds.");
    EXPECT_EQ(bar.value(), bar.maximum());

    QStringList shown;
    QObject::connect(&timer, &QTimer::timeout, [&] { shown << Countdown(dialog); });
    LetTimePass(dialog);
    ASSERT_TRUE(WaitUntil([&] { return !dialog.isVisible(); }));
    EXPECT_EQ(shown, QStringList({"Without an answer: \"No\" in 2 seconds.",
                                  "Without an answer: \"No\" in 1 second.",
                                  "Without an answer: \"No\" in 0 seconds."}));
    EXPECT_EQ(dialog.Reply(), EReply::TimedOut);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(timer.isActive());
}

TEST(CRequestDialog, ShowsNoCountdownWithoutATimeOut)
{
    CRequestDialog dialog(nullptr, texts, 0);
    Show(dialog);
    EXPECT_FALSE(dialog.findChild<QTimer*>()->isActive());
    EXPECT_FALSE(dialog.findChild<QLabel*>("countdown")->isVisible());
    EXPECT_FALSE(dialog.findChild<QProgressBar*>()->isVisible());
}

TEST(CRequestDialog, ClosesByItselfWhereThereIsNothingToReject)
{
    CRequestDialog dialog(nullptr, {"Read.", "Close", "", ""}, 2);
    EXPECT_EQ(Countdown(dialog), "Closes by itself in 2 seconds.");
}

TEST(CRequestDialog, CarriesTheLongestTimeOut)
{
    CRequestDialog dialog(nullptr, texts, UINT32_MAX);
    Show(dialog);
    EXPECT_EQ(Countdown(dialog), "Without an answer: \"No\" in 4294967295 seconds.");
}

TEST(CRequestDialog, KeepsAVeryLongTextWithinTheScreen)
{
    QString const path = QString("/folder").repeated(600);
    CRequestDialog dialog(nullptr, {path + QString("\nline").repeated(200), "Yes", "No", ""}, 0);
    Show(dialog);
    EXPECT_LT(dialog.width(), 700);
    EXPECT_LT(dialog.height(), 500);
}

TEST(CIntegerDialog, AcceptsNumbersOfItsBaseWithinItsBoundsAlone)
{
    struct CRow
    {
        int m_Base;
        char const* m_Text;
        bool m_Accepted;
    };
    for (CRow const& row : {
             CRow{10, "", false},
             CRow{10, "9", false},
             CRow{10, "10", true},
             CRow{10, " 20 ", true},
             CRow{10, "64", true},
             CRow{10, "65", false},
             CRow{10, "-20", false},
             CRow{10, "2x", false},
             CRow{10, "1F", false},
             CRow{16, "1F", true},
             CRow{16, "40", true},
             CRow{16, "41", false},
             CRow{8, "12", true},
             CRow{8, "18", false},
             CRow{10, "99999999999999999999999", false},
         }) {
        SCOPED_TRACE(std::string(row.m_Text) + " in base " + std::to_string(row.m_Base));
        CIntegerDialog dialog(nullptr, texts, 0, "Hint.", {row.m_Base, 10, 64});
        Show(dialog);
        EXPECT_EQ(AcceptsNumber(dialog, row.m_Text), row.m_Accepted);
    }
}

TEST(CIntegerDialog, SaysItsBoundsInItsBase)
{
    struct CRow
    {
        int m_Base;
        char const* m_Text;
    };
    for (CRow const& row :
         {CRow{10, "Hint. From 10 to 255."}, CRow{16, "Hint. From A to FF, in hexadecimal digits."},
          CRow{8, "Hint. From 12 to 377, in octal digits."}}) {
        CIntegerDialog const dialog(nullptr, texts, 0, "Hint.", {row.m_Base, 10, 255});
        QStringList shown;
        for (QLabel const* const label : dialog.findChildren<QLabel*>())
            shown << label->text();
        EXPECT_TRUE(shown.contains(row.m_Text)) << shown.join('|').toStdString();
    }
}

TEST(CIntegerDialog, CarriesTheLargestNumber)
{
    CIntegerDialog dialog(nullptr, texts, 0, "", {16, 0, UINTPTR_MAX});
    dialog.SetValue(UINTPTR_MAX);
    EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(dialog.Value(), UINTPTR_MAX);
}

TEST(CIntegerDialog, EnterDoesNothingWhileTheNumberIsNone)
{
    CIntegerDialog dialog(nullptr, texts, 0, "", {10, 1, 9});
    Show(dialog);
    TypeText(dialog, "12");
    PressKey(dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    PressKey(dialog, Qt::Key_Backspace);
    PressKey(dialog, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.Value(), 1u);
}

TEST(CItemsDialog, ChoosesOneByKeysOrByADoubleClick)
{
    CItemsDialog keyed(nullptr, texts, 0, {"a", "b", "c"}, EChoice::One);
    Show(keyed);
    PressKey(keyed, Qt::Key_Down);
    PressKey(keyed, Qt::Key_Return);
    EXPECT_EQ(keyed.Reply(), EReply::Accepted);
    EXPECT_THAT(keyed.Chosen(), ElementsAre(1));

    CItemsDialog clicked(nullptr, texts, 0, {"a", "b", "c"}, EChoice::One);
    Show(clicked);
    auto& list = *clicked.findChild<QListWidget*>();
    QPoint const middle = list.visualItemRect(list.item(2)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(clicked.Reply(), EReply::Accepted);
    EXPECT_THAT(clicked.Chosen(), ElementsAre(2));
}

TEST(CItemsDialog, ChoosesSeveralByCheckingThem)
{
    CItemsDialog dialog(nullptr, texts, 0, {"a", "b", "c"}, EChoice::Several);
    Show(dialog);
    EXPECT_THAT(dialog.Chosen(), ElementsAre(0, 1, 2)) << "all, to begin with";
    PressKey(dialog, Qt::Key_Space);
    PressKey(dialog, Qt::Key_Down);
    PressKey(dialog, Qt::Key_Down);
    PressKey(dialog, Qt::Key_Space);
    EXPECT_THAT(dialog.Chosen(), ElementsAre(1));
    PressKey(dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.Reply(), EReply::Accepted);
}

TEST(CItemsDialog, AcceptsNoneOfSeveralButNotNoneForOne)
{
    CItemsDialog several(nullptr, texts, 0, {}, EChoice::Several);
    Show(several);
    EXPECT_TRUE(Accept(several).isEnabled());
    EXPECT_THAT(several.Chosen(), IsEmpty());

    CItemsDialog one(nullptr, texts, 0, {}, EChoice::One);
    Show(one);
    EXPECT_FALSE(Accept(one).isEnabled());
}

TEST(CInfoDialog, ThatMayNotBeClosedWaitsForItsTimeOut)
{
    CInfoDialog dialog(nullptr, {"Wait.", "Close", "", ""}, 5, ERequestIcon::Warning, false);
    Show(dialog);
    PressKey(dialog, Qt::Key_Escape);
    CloseByManager(dialog);
    PressKey(dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    LetTimePass(dialog);
    EXPECT_TRUE(WaitUntil([&] { return !dialog.isVisible(); }));
    EXPECT_EQ(dialog.Reply(), EReply::TimedOut);
}

TEST(CInfoDialog, ClosesByItsButton)
{
    CInfoDialog dialog(nullptr, {"Read.", "Close", "", ""}, 0, ERequestIcon::Error, true);
    Show(dialog);
    ClickButton(dialog, "Close");
    EXPECT_FALSE(dialog.isVisible());
}

TEST(CInfoDialog, ShowsItsEmphasisByItsIcon)
{
    auto const icon = [](ERequestIcon emphasis) {
        CInfoDialog const dialog(nullptr, texts, 0, emphasis, true);
        for (QLabel const* const label : dialog.findChildren<QLabel*>())
            if (!label->pixmap().isNull())
                return label->pixmap().toImage();
        return QImage();
    };
    QImage const information = icon(ERequestIcon::Information);
    QImage const warning = icon(ERequestIcon::Warning);
    QImage const error = icon(ERequestIcon::Error);
    EXPECT_FALSE(information.isNull());
    EXPECT_NE(information, warning);
    EXPECT_NE(warning, error);
    EXPECT_NE(error, information);
}
