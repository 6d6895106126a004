#include "CPrompter.h"

#include "CConsoleReport.h"
#include "CKeyboard.h"
#include "CLineEditor.h"
#include "CPromptRow.h"
#include "TextLayout.h"

#include <BaseUtilities/TQUserAbort.h>

#include <algorithm>
#include <chrono>
#include <ios>
#include <optional>
#include <utility>

namespace
{
using Clock = std::chrono::steady_clock;

// How late a change that comes by no key is noticed.
constexpr std::chrono::milliseconds lookInterval(50);
constexpr int ctrlC = 3;
constexpr int ctrlD = 4;
constexpr int ctrlX = 24;
constexpr int ctrlZ = 26;
constexpr int ctrlBackslash = 28;

// The screen without the progress bar, for as long as this object lives.
class CScreen
{
public:
    explicit CScreen(CConsoleReport& report) : m_Report(report), m_BlankAbove(report.Hold()) {}
    CScreen(CScreen const&) = delete;
    CScreen& operator=(CScreen const&) = delete;
    ~CScreen()
    {
        try {
            m_Report.Release();
        } catch (std::ios_base::failure const&) { // met again by the report's next line
        }
    }

    bool BlankAbove() const { return m_BlankAbove; }

private:
    CConsoleReport& m_Report;
    bool const m_BlankAbove;
};

std::string WaysOut(CQuestion const& question, std::string const& accept, std::string const& reject)
{
    std::string ways;
    auto const add = [&ways](std::string const& key, std::string const& label) {
        if (!label.empty())
            ways += (ways.empty() ? "[" : "   [") + key + "] " + label;
    };
    add(accept, question.m_Accept);
    add(reject, question.m_Reject);
    add("Ctrl-X", question.m_Abort);
    return ways;
}
} // namespace

// One question's turn at the screen and the keys.
class CPrompter::CTurn
{
public:
    CTurn(CPrompter& prompter, CQuestion const& question);

    /// Shows the question; false where there is nobody to answer, or no sense in asking.
    bool Begin(std::string const& ways);
    /// Gives the keys to `onKey` until it replies or the question ends otherwise.
    EReply Run(CLineEditor const& line, std::function<std::optional<EReply>(int)> const& onKey);
    void Write(EColour colour, std::string const& text);
    /// Has the row tell what came of the question.
    EReply End(EReply reply, std::string const& answer);
    void EndUnanswered();

private:
    std::optional<EReply> Ended();
    std::optional<EReply> OnKey(int key);
    std::string TimeLeft() const;
    std::string Outcome(EReply reply, std::string const& answer) const;

    CPrompter& m_Prompter;
    CQuestion const& m_Question;
    unsigned long const m_Number;
    std::unique_lock<std::mutex> const m_Turn;
    std::optional<CScreen> m_Screen;
    CPromptRow m_Row;
    Clock::time_point const m_Start = Clock::now();
};

CPrompter::CTurn::CTurn(CPrompter& prompter, CQuestion const& question)
    : m_Prompter(prompter),
      m_Question(question),
      m_Number(prompter.Issue()),
      m_Turn(prompter.m_Keyboard.Turn()),
      m_Row(prompter.m_Stream, prompter.m_Terminal)
{
    // What was typed before the question was meant for the suite.
    while (std::optional<int> const key = prompter.m_Keyboard.Poll())
        prompter.m_Steer(*key);
    prompter.Begin(m_Number);
}

bool CPrompter::CTurn::Begin(std::string const& ways)
{
    if (Ended())
        return false;
    m_Screen.emplace(m_Prompter.m_Report);
    if (!m_Screen->BlankAbove())
        m_Prompter.m_Stream << '\n';
    std::vector<std::string> const lines =
        Wrap(Printable(m_Question.m_Text, true), m_Prompter.m_Terminal.LineWidth() - 2);
    for (std::string const& line : lines)
        m_Prompter.m_Stream << (&line == lines.data() ? m_Question.m_Mark : ' ') << ' '
                            << m_Prompter.m_Terminal.Painted(m_Question.m_Colour, line) << '\n';
    for (std::string const& detail : m_Question.m_Details)
        Write(EColour::None, detail);
    if (m_Prompter.CanAsk() && !ways.empty())
        Write(EColour::Dim, ways);
    return m_Prompter.CanAsk();
}

EReply CPrompter::CTurn::Run(CLineEditor const& line,
                             std::function<std::optional<EReply>(int)> const& onKey)
{
    for (;;) {
        if (std::optional<EReply> const reply = Ended())
            return *reply;
        std::optional<int> key = m_Prompter.m_Keyboard.Poll();
        if (!key) {
            m_Row.Show(line, TimeLeft());
            if (!m_Prompter.m_Stream)
                throw std::ios_base::failure("Standard output takes no more");
            key = m_Prompter.m_Keyboard.Wait(lookInterval);
        }
        if (!key)
            continue;
        if (std::optional<EReply> const reply = OnKey(*key))
            return *reply;
        if (std::optional<EReply> const reply = onKey(*key))
            return *reply;
    }
}

std::optional<EReply> CPrompter::CTurn::Ended()
{
    if (m_Prompter.IsClosed(m_Number) || TQUserAbort::UserAbortRequested())
        return EReply::Closed;
    if (m_Question.m_Timeout > 0
        && Clock::now() - m_Start >= std::chrono::seconds(m_Question.m_Timeout))
        return EReply::TimedOut;
    return std::nullopt;
}

// The keys that mean the same in every question.
std::optional<EReply> CPrompter::CTurn::OnKey(int key)
{
    bool const closable = !m_Question.m_Accept.empty() || !m_Question.m_Reject.empty();
    switch (key) {
    case ctrlC:
    case ctrlZ:
    case ctrlBackslash:
        m_Prompter.m_Steer(key);
        m_Row.Forget();
        return std::nullopt;
    case ctrlX:
        if (m_Question.m_Abort.empty())
            return std::nullopt;
        m_Prompter.m_Steer('a');
        return EReply::AbortSuite;
    case CKeyboard::EndOfInput:
        return EReply::Rejected;
    case CKeyboard::Escape:
    case ctrlD:
        return closable ? std::make_optional(EReply::Rejected) : std::nullopt;
    default:
        return std::nullopt;
    }
}

void CPrompter::CTurn::Write(EColour colour, std::string const& text)
{
    constexpr std::size_t indent = 2;
    m_Row.Clear();
    for (std::string const& line :
         Wrap(Printable(text, true), m_Prompter.m_Terminal.LineWidth() - indent))
        m_Prompter.m_Stream << "  " << m_Prompter.m_Terminal.Painted(colour, line) << '\n';
}

EReply CPrompter::CTurn::End(EReply reply, std::string const& answer)
{
    if (m_Screen) {
        m_Row.Clear();
        std::string const arrow = m_Prompter.CanAsk() ? "  > " : "  Nobody can answer here: ";
        m_Prompter.m_Stream << arrow << Printable(Outcome(reply, answer)) << "\n\n" << std::flush;
    }
    return reply;
}

void CPrompter::CTurn::EndUnanswered()
{
    if (m_Screen)
        m_Prompter.m_Stream << '\n' << std::flush;
}

// Standing still where a line cannot be drawn again.
std::string CPrompter::CTurn::TimeLeft() const
{
    if (m_Question.m_Timeout == 0)
        return "";
    auto const passed =
        std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_Start).count();
    auto const left =
        static_cast<long long>(m_Question.m_Timeout) - (m_Prompter.m_Terminal.m_Live ? passed : 0);
    return std::to_string(left > 0 ? left : 0) + " s left";
}

std::string CPrompter::CTurn::Outcome(EReply reply, std::string const& answer) const
{
    std::string const& otherwise =
        m_Question.m_Reject.empty() ? m_Question.m_Accept : m_Question.m_Reject;
    switch (reply) {
    case EReply::Accepted:
        return answer;
    case EReply::TimedOut:
        return "No answer in " + std::to_string(m_Question.m_Timeout)
               + " s: " + (otherwise.empty() ? "going on" : otherwise);
    case EReply::AbortSuite:
        return m_Question.m_Abort;
    case EReply::Closed:
        return "Closed";
    case EReply::Rejected:
        break;
    }
    return otherwise.empty() ? "Going on" : otherwise;
}

CPrompter::CPrompter(std::ostream& stream, CTerminal terminal, CConsoleReport& report,
                     CKeyboard& keyboard, std::function<void(int)> steer)
    : m_Stream(stream),
      m_Terminal(terminal),
      m_Report(report),
      m_Keyboard(keyboard),
      m_Steer(std::move(steer))
{
}

EReply CPrompter::AskForKey(CQuestion const& question)
{
    CTurn turn(*this, question);
    bool const choice = !question.m_Reject.empty();
    if (!turn.Begin(WaysOut(question, choice ? "y" : "Enter", "n")))
        return turn.End(EReply::Rejected, "");
    EReply const reply = turn.Run(CLineEditor(""), [&](int key) -> std::optional<EReply> {
        bool const yes = key == CKeyboard::Enter || key == '\r' || key == 'y' || key == 'Y';
        if (yes && !question.m_Accept.empty())
            return EReply::Accepted;
        if ((key == 'n' || key == 'N') && choice)
            return EReply::Rejected;
        return std::nullopt;
    });
    return turn.End(reply, question.m_Accept);
}

EReply CPrompter::AskForLine(CQuestion const& question, std::string& line, Check const& check)
{
    CTurn turn(*this, question);
    if (!turn.Begin(WaysOut(question, "Enter", "Esc")))
        return turn.End(EReply::Rejected, "");
    CLineEditor editor(line);
    EReply const reply = turn.Run(editor, [&](int key) -> std::optional<EReply> {
        if (key != CKeyboard::Enter && key != '\r') {
            editor.Apply(key);
            return std::nullopt;
        }
        std::string const answer = editor.Text().empty() ? line : editor.Text();
        std::string const problem = check(answer);
        if (problem.empty()) {
            line = answer;
            return EReply::Accepted;
        }
        turn.Write(EColour::Yellow, problem);
        return std::nullopt;
    });
    return turn.End(reply, line);
}

void CPrompter::Tell(CQuestion const& question)
{
    CTurn turn(*this, question);
    turn.Begin("");
    turn.EndUnanswered();
}

void CPrompter::Close(bool all)
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    m_ClosedThrough = std::max(m_ClosedThrough, all ? m_Issued : m_Shown);
}

bool CPrompter::CanAsk() const
{
    return m_Keyboard.Live() && m_Terminal.m_Watched;
}

unsigned long CPrompter::Issue()
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    return ++m_Issued;
}

void CPrompter::Begin(unsigned long number)
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    m_Shown = number;
}

bool CPrompter::IsClosed(unsigned long number)
{
    std::lock_guard<std::mutex> const lock(m_Lock);
    return number <= m_ClosedThrough;
}
