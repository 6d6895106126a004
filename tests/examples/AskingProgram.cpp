// Makes one request of the console's dialogues and writes what came back.
//
// Usage: AskingProgram REQUEST [TIMEOUT]

#include <CConsoleDialogues.h>
#include <CConsoleReport.h>
#include <CKeyboard.h>
#include <UIChoices.h>

#include <BaseUtilities/TQUserAbort.h>

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <thread>

namespace
{
constexpr auto shown = gui::EAbortPromptState::Shown;
constexpr auto hidden = gui::EAbortPromptState::Hidden;
constexpr char const* abortText = "Abort all";

void Write(std::string const& answer)
{
    std::cout << "Answer: " << answer << '.' << std::endl;
}

std::string Text(std::optional<CSafeString> const& path)
{
    return path ? path->get() : "nothing";
}

struct CRequest
{
    CQtSignaler& m_Signaler;
    std::uint32_t m_Timeout;
};

void AskYesOrNo(CRequest const& request, gui::EAbortPromptState abort)
{
    bool answer = true;
    emit request.m_Signaler.BooleanChoice(EUIMode::Modal, request.m_Timeout, "Is it?", &answer,
                                          "It is", "It is not", abort, abortText);
    Write(answer ? "yes" : "no");
}

void AwaitKey()
{
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, -1) <= 0) {
    }
}

void AskNumber(CRequest const& request, ENumericBase base, bool setInitialValue)
{
    std::uintptr_t answer = 20;
    emit request.m_Signaler.GetInteger(EUIMode::Modal, request.m_Timeout, "How many?", "Of them.",
                                       &answer, base, setInitialValue, 31, 8, "Take", "Leave",
                                       shown, abortText);
    Write(std::to_string(answer));
}

void AskItem(CRequest const& request)
{
    std::int32_t answer = 7;
    emit request.m_Signaler.SelectItem(EUIMode::Modal, request.m_Timeout, "Which?",
                                       {"one", "two\x1b[2J", "three"}, &answer, "Take", "Leave",
                                       shown, abortText);
    Write(std::to_string(answer));
}

void AskItems(CRequest const& request)
{
    std::vector<std::int32_t>* answer = nullptr;
    emit request.m_Signaler.SelectMultipleItems(EUIMode::Modal, request.m_Timeout, "Which ones?",
                                                {"one", "two", "three"}, &answer, "Take", "Leave",
                                                shown, abortText);
    std::unique_ptr<std::vector<std::int32_t>> const chosen(answer);
    std::string text = chosen ? "chosen" : "nothing";
    if (chosen)
        for (std::int32_t const index : *chosen)
            text += ' ' + std::to_string(index);
    Write(text);
}

void Inform(CRequest const& request, EUIMode mode, bool canClose, EUIEmphasis emphasis)
{
    emit request.m_Signaler.ShowInfo(mode, request.m_Timeout, "So it is.", canClose, "Close",
                                     emphasis, hidden, "");
    Write("read");
}

void PickFiles(CRequest const& request)
{
    auto const files = emit request.m_Signaler.PickMultipleFiles("Which files?", "", "", "All (*)");
    std::string text = *files ? "picked" : "nothing";
    if (*files)
        for (CSafeString const& file : **files)
            text += std::string(" ") + file.get();
    Write(text);
}

// Somebody else closes questions for as long as this object lives.
class CCloser
{
public:
    CCloser(CQtSignaler& signaler, bool all)
        : m_Thread([this, &signaler, all] {
              for (; !m_Done; std::this_thread::yield())
                  emit signaler.CloseUserInput(all);
          })
    {
    }
    CCloser(CCloser const&) = delete;
    CCloser& operator=(CCloser const&) = delete;
    ~CCloser()
    {
        m_Done = true;
        m_Thread.join();
    }

private:
    std::atomic<bool> m_Done = false;
    std::thread m_Thread;
};

void Refresh(CRequest const& request)
{
    emit request.m_Signaler.UpdateResults();
    emit request.m_Signaler.RefreshDone();
    Write("refreshed");
}

extern "C" void OnOwnSignal(int /*number*/)
{
    constexpr char text[] = "Handled.";
    static_cast<void>(!write(STDOUT_FILENO, text, sizeof text - 1));
}

using Request = void (*)(CRequest const&);
std::map<std::string, Request> const requests = {
    {"abort",
     [](CRequest const& r) { Write(emit r.m_Signaler.AbortTestSuite(false) ? "abort" : "go on"); }},
    {"suggestion",
     [](CRequest const& r) { Write(emit r.m_Signaler.AbortTestSuite(true) ? "abort" : "go on"); }},
    {"choice", [](CRequest const& r) { AskYesOrNo(r, shown); }},
    {"typed ahead",
     [](CRequest const& r) {
         AwaitKey();
         AskYesOrNo(r, shown);
     }},
    {"choice without abort", [](CRequest const& r) { AskYesOrNo(r, hidden); }},
    {"number", [](CRequest const& r) { AskNumber(r, ENumericBase::Decimal, true); }},
    {"number without proposal",
     [](CRequest const& r) { AskNumber(r, ENumericBase::Decimal, false); }},
    {"hexadecimal", [](CRequest const& r) { AskNumber(r, ENumericBase::Hexadecimal, true); }},
    {"octal", [](CRequest const& r) { AskNumber(r, ENumericBase::Octal, true); }},
    {"item", AskItem},
    {"items", AskItems},
    {"information",
     [](CRequest const& r) { Inform(r, EUIMode::Modal, true, EUIEmphasis::Information); }},
    {"warning", [](CRequest const& r) { Inform(r, EUIMode::Modal, true, EUIEmphasis::Warning); }},
    {"error", [](CRequest const& r) { Inform(r, EUIMode::Modal, true, EUIEmphasis::Error); }},
    {"note",
     [](CRequest const& r) { Inform(r, EUIMode::Modeless, true, EUIEmphasis::Information); }},
    {"bar", [](CRequest const& r) { Inform(r, EUIMode::Modal, false, EUIEmphasis::Information); }},
    {"file",
     [](CRequest const& r) {
         Write(Text(emit r.m_Signaler.PickSingleFile("Save it", "", "proposed", "Texts (*.txt)")));
     }},
    {"folder",
     [](CRequest const& r) {
         Write(Text(emit r.m_Signaler.PickDirectory("Which folder?", "", "")));
     }},
    {"files", PickFiles},
    {"closed",
     [](CRequest const& r) {
         CCloser const closer(r.m_Signaler, false);
         AskYesOrNo(r, shown);
     }},
    {"all closed",
     [](CRequest const& r) {
         CCloser const closer(r.m_Signaler, true);
         AskYesOrNo(r, shown);
     }},
    {"refresh", Refresh},
    {"exception", [](CRequest const&) { throw 42; }},
    {"abnormal end", [](CRequest const&) { std::abort(); }},
};
} // namespace

int main(int argc, char* argv[])
{
    static_cast<void>(std::signal(SIGUSR2, OnOwnSignal)); // before the keyboard's own
    CTerminal const terminal = CTerminal::OfStandardOutput();
    CConsoleReport report(std::cout, terminal, false);
    CKeyboard keyboard;
    CPrompter prompter(std::cout, terminal, report, keyboard, [&](int key) {
        std::cout << "<" << key << ">" << std::flush;
        if (key == 3 || key == 'a')
            TQUserAbort::RequestUserAbort();
        else if (key == 26)
            keyboard.Suspend();
    });
    CConsoleDialogues dialogues(prompter, report);
    CQtSignaler signaler;
    dialogues.ConnectTo(signaler);
    TQUserAbort::EnableUserAbort(true);
    std::cout << "Ready.\n" << std::flush;
    requests.at(argv[1])(
        {signaler, argc > 2 ? static_cast<std::uint32_t>(std::stoul(argv[2])) : 0});
    return TQUserAbort::UserAbortRequested() ? 2 : 0;
}
