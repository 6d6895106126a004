#include <CRequestBridge.h>

#include "CScriptedOperator.h"
#include "TemporaryFolder.h"

#include <UIChoices.h>

#include <gmock/gmock.h>

#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>
#include <QThread>

#include <memory>
#include <optional>
#include <stdexcept>

using testing::ElementsAre;
using testing::Optional;

namespace
{
constexpr auto modal = EUIMode::Modal;
constexpr auto abortShown = gui::EAbortPromptState::Shown;
constexpr auto abortHidden = gui::EAbortPromptState::Hidden;

CScriptedOperator::Act Click(char const* button)
{
    return [button](QDialog& dialog) { ClickButton(dialog, button); };
}

// Types a name into a picker and takes it.
CScriptedOperator::Act Name(QString const& name)
{
    return [name](QDialog& dialog) {
        auto* const edit = dialog.findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(edit, nullptr);
        edit->selectAll();
        QTest::keyClicks(edit, name);
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

std::optional<std::vector<std::int32_t>> Taken(std::vector<std::int32_t>* answer)
{
    std::unique_ptr<std::vector<std::int32_t>> const owned(answer);
    return owned == nullptr ? std::nullopt : std::optional(*owned);
}

std::string Text(std::optional<CSafeString> const& path)
{
    return path ? path->get() : "nothing";
}

// Every kind of request, with answers that tell whether it was rejected.

bool ChoiceIsRejected(CQtSignaler& signaler)
{
    bool answer = true;
    emit signaler.BooleanChoice(modal, 9, "Go on?", &answer, "Yes", "No", abortHidden, "");
    return !answer;
}

bool NumberIsRejected(CQtSignaler& signaler)
{
    std::uintptr_t answer = 5;
    emit signaler.GetInteger(modal, 9, "How many?", "", &answer, ENumericBase::Decimal, false, 9, 1,
                             "Yes", "No", abortHidden, "");
    return answer == 5;
}

bool ItemIsRejected(CQtSignaler& signaler)
{
    std::int32_t answer = 0;
    emit signaler.SelectItem(modal, 9, "Which?", {"a", "b"}, &answer, "Yes", "No", abortHidden, "");
    return answer == -1;
}

bool ItemsAreRejected(CQtSignaler& signaler)
{
    std::vector<std::int32_t>* answer = nullptr;
    emit signaler.SelectMultipleItems(modal, 9, "Which?", {"a", "b"}, &answer, "Yes", "No",
                                      abortHidden, "");
    return !Taken(answer);
}

bool InfoIsClosed(CQtSignaler& signaler)
{
    emit signaler.ShowInfo(modal, 9, "Read.", true, "Close", EUIEmphasis::Warning, abortHidden, "");
    return true;
}

bool AbortIsRejected(CQtSignaler& signaler)
{
    return !emit signaler.AbortTestSuite(true);
}

bool FileIsRejected(CQtSignaler& signaler)
{
    return !emit signaler.PickSingleFile("Save", "/", "name", "All (*)");
}

bool FolderIsRejected(CQtSignaler& signaler)
{
    return !emit signaler.PickDirectory("Folder", "/", "");
}

bool FilesAreRejected(CQtSignaler& signaler)
{
    auto const files = emit signaler.PickMultipleFiles("Files", "/", "", "All (*)");
    return !files || !files->has_value();
}

struct CRequest
{
    char const* m_Name;
    bool (*m_IsRejected)(CQtSignaler&);
    bool m_TimesOut;
};

constexpr CRequest requests[] = {{"Choice", ChoiceIsRejected, true},
                                 {"Number", NumberIsRejected, true},
                                 {"Item", ItemIsRejected, true},
                                 {"Items", ItemsAreRejected, true},
                                 {"Info", InfoIsClosed, true},
                                 {"AbortPrompt", AbortIsRejected, false},
                                 {"FilePicker", FileIsRejected, false},
                                 {"FolderPicker", FolderIsRejected, false},
                                 {"FilesPicker", FilesAreRejected, false}};

// Where a request comes from.
enum class EEmitter { OtherThread, InterfaceThread };

class CBridge
{
public:
    CBridge() { m_Bridge.ConnectTo(m_Signaler); }

    /// Emits from where the row says and returns when the answer is there.
    template <class Work>
    void Ask(EEmitter emitter, Work const& work)
    {
        if (emitter == EEmitter::InterfaceThread)
            work();
        else
            RunBesideEvents(work);
    }

    QMainWindow m_Window;
    int m_Aborts = 0;
    CRequestBridge m_Bridge{m_Window, [this] { ++m_Aborts; }};
    CQtSignaler m_Signaler;
    CScriptedOperator m_Operator;
};

struct CDismissal
{
    char const* m_Name;
    CRequest m_Request;
    EEmitter m_Emitter;
    void (*m_Dismiss)(QDialog& dialog, CQtSignaler& signaler);
};

void ByEscape(QDialog& dialog, CQtSignaler&)
{
    PressKey(dialog, Qt::Key_Escape);
}

void ByManager(QDialog& dialog, CQtSignaler&)
{
    CloseByManager(dialog);
}

void ByTime(QDialog& dialog, CQtSignaler&)
{
    LetTimePass(dialog);
}

void BySignal(QDialog&, CQtSignaler& signaler)
{
    emit signaler.CloseUserInput();
}

std::vector<CDismissal> Dismissals()
{
    std::vector<CDismissal> rows;
    for (CRequest const& request : requests)
        for (EEmitter const emitter : {EEmitter::OtherThread, EEmitter::InterfaceThread}) {
            rows.push_back({"ByEscape", request, emitter, ByEscape});
            rows.push_back({"ByManager", request, emitter, ByManager});
            rows.push_back({"BySignal", request, emitter, BySignal});
            if (request.m_TimesOut)
                rows.push_back({"ByTime", request, emitter, ByTime});
        }
    return rows;
}

std::string RowName(testing::TestParamInfo<CDismissal> const& info)
{
    bool const direct = info.param.m_Emitter == EEmitter::InterfaceThread;
    return std::string(info.param.m_Request.m_Name) + info.param.m_Name
           + (direct ? "OnTheInterfaceThread" : "");
}

class CDismissedTest : public testing::TestWithParam<CDismissal>
{
};

class CRequestBridgeTest : public testing::TestWithParam<EEmitter>
{
protected:
    template <class Work>
    void Ask(Work const& work)
    {
        m_Is.Ask(GetParam(), work);
    }
    CQtSignaler& Signaler() { return m_Is.m_Signaler; }
    CScriptedOperator& Operator() { return m_Is.m_Operator; }

    CBridge m_Is;
    CTemporaryFolder const m_Folder;
};

std::string EmitterName(testing::TestParamInfo<EEmitter> const& info)
{
    return info.param == EEmitter::OtherThread ? "FromAnotherThread" : "FromTheInterfaceThread";
}
} // namespace

TEST_P(CDismissedTest, IsAnsweredRejected)
{
    CBridge is;
    is.m_Operator.Then([&](QDialog& dialog) { GetParam().m_Dismiss(dialog, is.m_Signaler); });
    is.Ask(GetParam().m_Emitter,
           [&] { EXPECT_TRUE(GetParam().m_Request.m_IsRejected(is.m_Signaler)); });
    EXPECT_FALSE(is.m_Bridge.IsAsking());
    EXPECT_EQ(is.m_Aborts, 0);
}

INSTANTIATE_TEST_SUITE_P(Request, CDismissedTest, testing::ValuesIn(Dismissals()), RowName);

TEST_P(CRequestBridgeTest, AnswersAChoiceThroughThePointer)
{
    for (bool const expected : {true, false}) {
        Operator().Then(Click(expected ? "Go on" : "Stop"));
        bool answer = !expected;
        Ask([&] {
            emit Signaler().BooleanChoice(modal, 0, "Go on?", &answer, "Go on", "Stop", abortHidden,
                                          "");
        });
        EXPECT_EQ(answer, expected);
    }
}

TEST_P(CRequestBridgeTest, AnswersANumberThroughThePointer)
{
    Operator().Then([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), "2A");
        TypeText(dialog, "ff");
        PressKey(dialog, Qt::Key_Return);
    });
    std::uintptr_t answer = 42;
    Ask([&] {
        emit Signaler().GetInteger(modal, 0, "How many?", "", &answer, ENumericBase::Hexadecimal,
                                   true, 0x100, 1, "Yes", "No", abortHidden, "");
    });
    EXPECT_EQ(answer, 255u);
}

TEST_P(CRequestBridgeTest, ShowsNoInitialNumberUnlessAskedTo)
{
    Operator().Then([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), "");
        PressKey(dialog, Qt::Key_Escape);
    });
    Ask([&] { EXPECT_TRUE(NumberIsRejected(Signaler())); });
}

TEST_P(CRequestBridgeTest, AnswersAnItemByItsIndex)
{
    Operator().Then([](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Down);
        PressKey(dialog, Qt::Key_Return);
    });
    std::int32_t answer = -7;
    Ask([&] {
        emit Signaler().SelectItem(modal, 0, "Which?", {"a", "b", "c"}, &answer, "Yes", "No",
                                   abortHidden, "");
    });
    EXPECT_EQ(answer, 1);
}

TEST_P(CRequestBridgeTest, AnswersSeveralItemsWithAVectorOfTheirIndices)
{
    Operator().Then([](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Space);
        ClickButton(dialog, "Yes");
    });
    std::vector<std::int32_t>* answer = nullptr;
    Ask([&] {
        emit Signaler().SelectMultipleItems(modal, 0, "Which?", {"a", "b", "c"}, &answer, "Yes",
                                            "No", abortHidden, "");
    });
    EXPECT_THAT(Taken(answer), Optional(ElementsAre(1, 2)));
}

TEST_P(CRequestBridgeTest, ReturnsFromAnInformationWhenItIsClosed)
{
    Operator().Then(Click("Close"));
    Ask([&] { EXPECT_TRUE(InfoIsClosed(Signaler())); });
    EXPECT_EQ(Operator().Seen(), 1);
}

TEST_P(CRequestBridgeTest, ClosesAnInformationThatTheOperatorMayNotClose)
{
    Operator().Then([this](QDialog& dialog) {
        PressKey(dialog, Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        emit Signaler().CloseUserInput(false);
        EXPECT_FALSE(dialog.isVisible());
    });
    Ask([&] {
        emit Signaler().ShowInfo(modal, 0, "Wait.", false, "Close", EUIEmphasis::Information,
                                 abortHidden, "");
    });
}

TEST_P(CRequestBridgeTest, ReturnsTheAnswerToTheAbortPrompt)
{
    for (bool const expected : {true, false}) {
        Operator().Then(Click(expected ? "Abort" : "Go on"));
        Ask([&] { EXPECT_EQ(emit Signaler().AbortTestSuite(expected), expected); });
    }
}

TEST_P(CRequestBridgeTest, AbortsTheSuiteFromADialogueAndRejectsItsRequest)
{
    Operator().Then(Click("Enough"));
    bool answer = true;
    Ask([&] {
        emit Signaler().BooleanChoice(modal, 0, "Go on?", &answer, "Go on", "Stop", abortShown,
                                      "Enough");
    });
    EXPECT_FALSE(answer);
    EXPECT_EQ(m_Is.m_Aborts, 1);
}

TEST_P(CRequestBridgeTest, ReturnsTheFileToBeSaved)
{
    Operator().Then(Name("report.txt"));
    std::optional<CSafeString> file;
    Ask([&] {
        file = emit Signaler().PickSingleFile("Save", m_Folder.Path().native(), "name.txt",
                                              "Texts (*.txt)");
    });
    EXPECT_EQ(Text(file), m_Folder / "report.txt");
}

TEST_P(CRequestBridgeTest, AsksBeforeAFileIsReplaced)
{
    WriteFile(m_Folder / "old.txt", "old");
    Operator()
        .Then(Name("old.txt"))
        .Then(Click("Choose another"))
        .Then(Name("old.txt"))
        .Then(Click("Replace"));
    std::optional<CSafeString> file;
    Ask([&] {
        file = emit Signaler().PickSingleFile("Save", m_Folder.Path().native(), "", "All (*)");
    });
    EXPECT_EQ(Text(file), m_Folder / "old.txt");
}

TEST_P(CRequestBridgeTest, ClosingTheQuestionWhetherToReplaceClosesThePicker)
{
    WriteFile(m_Folder / "old.txt", "old");
    Operator().Then(Name("old.txt")).Then([this](QDialog&) {
        emit Signaler().CloseUserInput(true);
    });
    Ask([&] {
        EXPECT_FALSE(
            emit Signaler().PickSingleFile("Save", m_Folder.Path().native(), "", "All (*)"));
    });
}

TEST_P(CRequestBridgeTest, ClosesWhatAPickerAsksByItself)
{
    Operator().Then(Name("missing.txt")).Then([this](QDialog& box) {
        EXPECT_EQ(qobject_cast<QFileDialog*>(&box), nullptr);
        EXPECT_EQ(QGuiApplication::modalWindow(), nullptr) << "no window could be closed";
        emit Signaler().CloseUserInput(true);
    });
    Ask([&] {
        auto const files =
            emit Signaler().PickMultipleFiles("Files", m_Folder.Path().native(), "", "All (*)");
        EXPECT_FALSE(files->has_value());
    });
}

TEST_P(CRequestBridgeTest, ReturnsTheFolder)
{
    std::filesystem::create_directory(m_Folder.Path() / "sub");
    Operator().Then(Name("sub"));
    std::optional<CSafeString> folder;
    Ask([&] { folder = emit Signaler().PickDirectory("Folder", m_Folder.Path().native(), ""); });
    EXPECT_EQ(Text(folder), m_Folder / "sub");
}

TEST_P(CRequestBridgeTest, ReturnsSeveralFiles)
{
    WriteFile(m_Folder / "a.txt", "a");
    WriteFile(m_Folder / "b.txt", "b");
    Operator().Then(Name("\"a.txt\" \"b.txt\""));
    custom_unique_ptr<std::optional<std::vector<CSafeString>>> files;
    Ask([&] {
        files = emit Signaler().PickMultipleFiles("Files", m_Folder.Path().native(), "", "All (*)");
    });
    ASSERT_NE(files, nullptr);
    ASSERT_TRUE(files->has_value());
    ASSERT_EQ((*files)->size(), 2u);
    EXPECT_EQ(Text((*files)->front()), m_Folder / "a.txt");
    EXPECT_EQ(Text((*files)->back()), m_Folder / "b.txt");
}

TEST_P(CRequestBridgeTest, AnswersRejectedWhenASlotThrows)
{
    QMainWindow window;
    CRequestBridge throwing(window, [] { throw std::runtime_error("thrown"); });
    CQtSignaler signaler;
    throwing.ConnectTo(signaler);
    Operator().Then(Click("Enough"));
    bool answer = true;
    Ask([&] {
        emit signaler.BooleanChoice(modal, 0, "Go on?", &answer, "Go on", "Stop", abortShown,
                                    "Enough");
    });
    EXPECT_FALSE(answer);
}

TEST_P(CRequestBridgeTest, AnswersRejectedAtOnceAfterItsClosing)
{
    m_Is.m_Bridge.Close();
    Ask([&] {
        for (CRequest const& request : requests)
            EXPECT_TRUE(request.m_IsRejected(Signaler())) << request.m_Name;
    });
    EXPECT_EQ(Operator().Seen(), 0);
}

TEST_P(CRequestBridgeTest, ClosesTheNewestDialogueOrAllOfThem)
{
    for (bool const all : {false, true}) {
        SCOPED_TRACE(all ? "all" : "the newest");
        Operator().Then([&](QDialog& dialog) {
            EXPECT_TRUE(ChoiceIsRejected(Signaler())) << "the newer one";
            EXPECT_NE(dialog.isVisible(), all);
            dialog.reject();
        });
        Operator().Then([&](QDialog&) { emit Signaler().CloseUserInput(all); });
        Ask([&] { EXPECT_TRUE(ItemIsRejected(Signaler())); });
    }
}

TEST_P(CRequestBridgeTest, TellsOfNewResultsAndOfARefresh)
{
    int updates = 0;
    QThread const* thread = nullptr;
    m_Is.m_Bridge.OnUpdateResults([&] {
        ++updates;
        thread = QThread::currentThread();
    });
    Ask([&] {
        emit Signaler().UpdateResults();
        emit Signaler().RefreshDone();
    });
    EXPECT_EQ(updates, 2);
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST(CRequestBridge, AnswersTheNewestRequestFirst)
{
    CBridge is;
    QDialog* older = nullptr;
    std::vector<std::string> answered;
    is.m_Operator.Then([&](QDialog& dialog) {
        older = &dialog;
        EXPECT_FALSE(ItemIsRejected(is.m_Signaler));
        answered.emplace_back("newer");
    });
    is.m_Operator.Then([&](QDialog& newer) {
        ClickButton(*older, "Yes");
        ClickButton(newer, "Yes");
    });
    EXPECT_FALSE(ChoiceIsRejected(is.m_Signaler));
    answered.emplace_back("older");
    EXPECT_THAT(answered, ElementsAre("newer", "older"));
}

// Two threads at once: the later question stands above the earlier one.
TEST(CRequestBridge, AnswersTwoThreadsAtOnce)
{
    CBridge is;
    std::vector<QDialog*> open;
    is.m_Operator.Always([&](QDialog& dialog) {
        open.push_back(&dialog);
        if (open.size() == 2)
            for (QDialog* const each : open)
                ClickButton(*each, "Yes");
    });
    RunBesideEvents([&] {
        std::thread other([&] { EXPECT_FALSE(ChoiceIsRejected(is.m_Signaler)); });
        EXPECT_FALSE(ChoiceIsRejected(is.m_Signaler));
        other.join();
    });
}

TEST(CRequestBridge, ClosesADialogueForAThirdThread)
{
    CBridge is;
    std::thread third;
    is.m_Operator.Then(
        [&](QDialog&) { third = std::thread([&] { emit is.m_Signaler.CloseUserInput(true); }); });
    RunBesideEvents([&] { EXPECT_TRUE(ChoiceIsRejected(is.m_Signaler)); });
    third.join();
}

TEST(CRequestBridge, LeavesTheWindowWithinReachWhileAQuestionIsOpen)
{
    CBridge is;
    is.m_Window.show();
    is.m_Operator.Then([&](QDialog& dialog) {
        EXPECT_FALSE(dialog.isModal());
        EXPECT_EQ(dialog.parentWidget(), &is.m_Window);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(is.m_Bridge.IsAsking());
        dialog.reject();
    });
    EXPECT_TRUE(ChoiceIsRejected(is.m_Signaler));
}

TEST(CRequestBridge, GivesAModelessQuestionAWindowOfItsOwn)
{
    CBridge is;
    is.m_Operator.Then([&](QDialog& dialog) {
        EXPECT_EQ(dialog.parentWidget(), nullptr);
        ClickButton(dialog, "Yes");
    });
    bool answer = false;
    emit is.m_Signaler.BooleanChoice(EUIMode::Modeless, 0, "Go on?", &answer, "Yes", "No",
                                     abortHidden, "");
    EXPECT_TRUE(answer);
}

INSTANTIATE_TEST_SUITE_P(Request, CRequestBridgeTest,
                         testing::Values(EEmitter::OtherThread, EEmitter::InterfaceThread),
                         EmitterName);
