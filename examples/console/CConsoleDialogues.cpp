#include "CConsoleDialogues.h"

#include "CConsoleReport.h"
#include "PathChecks.h"
#include "TextLayout.h"
#include "TypedAnswers.h"

#include <SuiteTexts.h>
#include <UIChoices.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace fs = std::filesystem;

namespace
{
std::string ToText(sv_wrapper const& text)
{
    return text ? std::string(text.data(), text.size()) : std::string();
}

CQuestion Question(std::uint32_t timeout, sv_wrapper const& text, sv_wrapper const& accept,
                   sv_wrapper const& reject, gui::EAbortPromptState abort,
                   sv_wrapper const& abortText)
{
    CQuestion question;
    question.m_Text = ToText(text);
    question.m_Accept = ToText(accept);
    question.m_Reject = ToText(reject);
    if (abort == gui::EAbortPromptState::Shown)
        question.m_Abort = ToText(abortText);
    question.m_Timeout = timeout;
    return question;
}

CQuestion PathQuestion(sv_wrapper const& title)
{
    CQuestion question;
    question.m_Text = ToText(title);
    question.m_Accept = "Take it";
    question.m_Reject = "Cancel";
    return question;
}

// Every item on a line of its own, behind the number that chooses it.
void AddItems(CQuestion& question, std::vector<CSafeString> const& items)
{
    std::size_t const digits = std::to_string(items.size()).size();
    for (std::size_t index = 0; index < items.size(); ++index) {
        std::string const number = std::to_string(index + 1);
        question.m_Details.push_back(std::string(digits + 1 - number.size(), ' ') + number + "  "
                                     + Printable(items[index].get()));
    }
}

fs::path StartFolder(sv_wrapper const& folder)
{
    return folder ? fs::absolute(ToText(folder)) : fs::current_path();
}

void Emphasise(CQuestion& question, EUIEmphasis emphasis)
{
    question.m_Mark = emphasis == EUIEmphasis::Information ? 'i' : '!';
    if (emphasis == EUIEmphasis::Warning)
        question.m_Colour = EColour::Yellow;
    else if (emphasis == EUIEmphasis::Error)
        question.m_Colour = EColour::Red;
}
} // namespace

CConsoleDialogues::CConsoleDialogues(CPrompter& prompter, CConsoleReport& report)
    : m_Prompter(prompter),
      m_Report(report)
{
}

void CConsoleDialogues::ConnectTo(CQtSignaler& signaler)
{
    Connect(signaler, &CQtSignaler::AbortTestSuite, &CConsoleDialogues::AbortTestSuite);
    Connect(signaler, &CQtSignaler::BooleanChoice, &CConsoleDialogues::BooleanChoice);
    Connect(signaler, &CQtSignaler::GetInteger, &CConsoleDialogues::GetInteger);
    Connect(signaler, &CQtSignaler::SelectItem, &CConsoleDialogues::SelectItem);
    Connect(signaler, &CQtSignaler::SelectMultipleItems, &CConsoleDialogues::SelectMultipleItems);
    Connect(signaler, &CQtSignaler::ShowInfo, &CConsoleDialogues::ShowInfo);
    Connect(signaler, &CQtSignaler::PickSingleFile, &CConsoleDialogues::PickSingleFile);
    Connect(signaler, &CQtSignaler::PickDirectory, &CConsoleDialogues::PickDirectory);
    Connect(signaler, &CQtSignaler::PickMultipleFiles, &CConsoleDialogues::PickMultipleFiles);
    Connect(signaler, &CQtSignaler::CloseUserInput, &CConsoleDialogues::CloseUserInput);
    Connect(signaler, &CQtSignaler::UpdateResults, &CConsoleDialogues::UpdateResults);
    Connect(signaler, &CQtSignaler::RefreshDone, &CConsoleDialogues::UpdateResults);
}

template <class Result, class Signal, class... Parameters>
void CConsoleDialogues::Connect(CQtSignaler& signaler, Signal signal,
                                Result (CConsoleDialogues::*slot)(Parameters...))
{
    connect(
        &signaler, signal, this,
        [this, slot](auto const&... arguments) -> Result {
            try {
                return (this->*slot)(arguments...);
            } catch (...) { // unanswered means rejected
                return Result();
            }
        },
        Qt::DirectConnection);
}

bool CConsoleDialogues::AbortTestSuite(bool suggested)
{
    CQuestion question;
    question.m_Text = AbortQuestion(suggested);
    question.m_Accept = abortAccepted;
    question.m_Reject = abortRejected;
    return m_Prompter.AskForKey(question) == EReply::Accepted;
}

void CConsoleDialogues::BooleanChoice(EUIMode /*mode*/, std::uint32_t timeout,
                                      sv_wrapper const& text, bool* answer,
                                      sv_wrapper const& trueText, sv_wrapper const& falseText,
                                      gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = false;
    *answer = m_Prompter.AskForKey(Question(timeout, text, trueText, falseText, abort, abortText))
              == EReply::Accepted;
}

void CConsoleDialogues::GetInteger(EUIMode /*mode*/, std::uint32_t timeout, sv_wrapper const& text,
                                   sv_wrapper const& additionalText, std::uintptr_t* answer,
                                   ENumericBase base, bool setInitialValue, std::uintptr_t max,
                                   std::uintptr_t min, sv_wrapper const& acceptText,
                                   sv_wrapper const& rejectText, gui::EAbortPromptState abort,
                                   sv_wrapper const& abortText)
{
    int const radix = static_cast<int>(base);
    std::string line = setInitialValue ? NumberText(*answer, radix) : "";
    std::string range = "A number from " + NumberText(min, radix) + " to " + NumberText(max, radix);
    if (base != ENumericBase::Decimal)
        range += base == ENumericBase::Octal ? ", octal" : ", hexadecimal";
    CQuestion question = Question(timeout, text, acceptText, rejectText, abort, abortText);
    if (!additionalText.empty())
        question.m_Details.push_back(ToText(additionalText));
    question.m_Details.push_back(range + (line.empty() ? "." : "; nothing means " + line + "."));

    auto const check = [&](std::string const& typed) -> std::string {
        std::optional<std::uintptr_t> const number = TypedNumber(typed, radix);
        return number && *number >= min && *number <= max ? "" : range + ", please.";
    };
    if (m_Prompter.AskForLine(question, line, check) == EReply::Accepted)
        *answer = *TypedNumber(line, radix);
}

void CConsoleDialogues::SelectItem(EUIMode /*mode*/, std::uint32_t timeout, sv_wrapper const& text,
                                   std::vector<CSafeString> const& items, std::int32_t* answer,
                                   sv_wrapper const& acceptText, sv_wrapper const& rejectText,
                                   gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    *answer = -1;
    CQuestion question = Question(timeout, text, acceptText, rejectText, abort, abortText);
    AddItems(question, items);
    question.m_Details.emplace_back("The number of one; nothing means the first.");

    auto const check = [&](std::string const& typed) -> std::string {
        std::optional<std::uintptr_t> const number = TypedNumber(typed, 10);
        return number && *number >= 1 && *number <= items.size()
                   ? ""
                   : "A number from 1 to " + std::to_string(items.size()) + ", please.";
    };
    std::string line = "1";
    if (m_Prompter.AskForLine(question, line, check) == EReply::Accepted)
        *answer = static_cast<std::int32_t>(*TypedNumber(line, 10)) - 1;
}

void CConsoleDialogues::SelectMultipleItems(
    EUIMode /*mode*/, std::uint32_t timeout, sv_wrapper const& text,
    std::vector<CSafeString> const& items, std::vector<std::int32_t>** answer,
    sv_wrapper const& acceptText, sv_wrapper const& rejectText, gui::EAbortPromptState abort,
    sv_wrapper const& abortText)
{
    *answer = nullptr;
    CQuestion question = Question(timeout, text, acceptText, rejectText, abort, abortText);
    AddItems(question, items);
    question.m_Details.emplace_back("Their numbers, such as 1 3-5, or none; nothing means all.");

    auto const check = [&](std::string const& typed) -> std::string {
        return TypedItems(typed, items.size())
                   ? ""
                   : "Numbers from 1 to " + std::to_string(items.size()) + ", please.";
    };
    std::string line = "all";
    if (m_Prompter.AskForLine(question, line, check) == EReply::Accepted)
        *answer = std::make_unique<std::vector<std::int32_t>>(*TypedItems(line, items.size()))
                      .release(); // the suite's to free
}

void CConsoleDialogues::ShowInfo(EUIMode mode, std::uint32_t timeout, sv_wrapper const& text,
                                 bool canClose, sv_wrapper const& closeText, EUIEmphasis emphasis,
                                 gui::EAbortPromptState abort, sv_wrapper const& abortText)
{
    CQuestion question = Question(timeout, text, canClose ? closeText : sv_wrapper(), sv_wrapper(),
                                  abort, abortText);
    Emphasise(question, emphasis);
    if (mode == EUIMode::Modeless)
        m_Prompter.Tell(question);
    else
        m_Prompter.AskForKey(question);
}

std::optional<CSafeString> CConsoleDialogues::PickSingleFile(sv_wrapper const& title,
                                                             sv_wrapper const& folder,
                                                             sv_wrapper const& name,
                                                             sv_wrapper const& filter)
{
    CQuestion question = PathQuestion(title);
    question.m_Accept = "Save";
    if (!filter.empty())
        question.m_Details.push_back(ToText(filter));
    // A file that exists is replaced when the operator says so a second time.
    fs::path named;
    auto const check = [&named](fs::path const& path) -> std::string {
        if (std::string problem = WhyNoFileToWrite(path); !problem.empty() || path == named)
            return problem;
        named = path;
        return fs::exists(path) ? path.native() + " exists; Enter again replaces it." : "";
    };
    std::optional<fs::path> const file =
        AskForPath(question, StartFolder(folder), ToText(name), check);
    return file ? std::make_optional<CSafeString>(file->native()) : std::nullopt;
}

std::optional<CSafeString> CConsoleDialogues::PickDirectory(sv_wrapper const& title,
                                                            sv_wrapper const& folder,
                                                            sv_wrapper const& name)
{
    fs::path const start = StartFolder(folder);
    std::optional<fs::path> const picked =
        AskForPath(PathQuestion(title), start, (start / ToText(name)).native(), WhyNoFolder);
    return picked ? std::make_optional<CSafeString>(picked->native()) : std::nullopt;
}

// One question for each file, until the operator adds no more.
custom_unique_ptr<std::optional<std::vector<CSafeString>>>
CConsoleDialogues::PickMultipleFiles(sv_wrapper const& title, sv_wrapper const& folder,
                                     sv_wrapper const& name, sv_wrapper const& filter)
{
    CQuestion question = PathQuestion(title);
    if (!filter.empty())
        question.m_Details.push_back(ToText(filter));
    fs::path const start = StartFolder(folder);
    std::optional<std::vector<CSafeString>> files;
    std::optional<fs::path> file = AskForPath(question, start, ToText(name), WhyNoFileToRead);
    if (file)
        files.emplace();
    CQuestion another = PathQuestion("Another file?");
    another.m_Reject = "No more";
    for (; file; file = AskForPath(another, start, "", WhyNoFileToRead))
        files->emplace_back(file->native());
    return make_custom_unique<std::optional<std::vector<CSafeString>>>(std::move(files));
}

std::optional<fs::path> CConsoleDialogues::AskForPath(CQuestion question, fs::path const& folder,
                                                      std::string const& name,
                                                      PathCheck const& check)
{
    std::string line = name.empty() ? "" : TypedPath(name, folder).native();
    std::string const hint = "A path, or a name in " + folder.native();
    question.m_Details.push_back(line.empty() ? hint + "."
                                              : hint + "; nothing means " + line + ".");
    auto const checkLine = [&](std::string const& typed) -> std::string {
        return typed.empty() ? hint + ", please." : check(TypedPath(typed, folder));
    };
    if (m_Prompter.AskForLine(question, line, checkLine) != EReply::Accepted)
        return std::nullopt;
    return TypedPath(line, folder);
}

void CConsoleDialogues::CloseUserInput(bool all)
{
    m_Prompter.Close(all);
}

void CConsoleDialogues::UpdateResults()
{
    m_Report.Tick();
}
