#include "COperator.h"

#include "UIChoices.h"

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/UIHelperBase.h>

#include <algorithm>
#include <memory>
#include <numeric>

namespace
{
// In seconds; 0 means no limit, to this application's front ends.
constexpr std::uint32_t timeToPlan = 120;
constexpr std::uint32_t timeToDecide = 60;

constexpr auto abortOffered = gui::EAbortPromptState::Shown;
constexpr char const* abortText = "Abort the suite";

CQtSignaler* Signaler(bool asked)
{
    return asked ? UIHelperBase::m_UISignaler : nullptr;
}

// Shows the rest of the application that the suite waits for an answer.
class CWaiting
{
public:
    CWaiting() { UIHelperBase::UserInputState(EUserInputState::Waiting); }
    CWaiting(CWaiting const&) = delete;
    CWaiting& operator=(CWaiting const&) = delete;
    ~CWaiting() { UIHelperBase::UserInputState(EUserInputState::Idle); }
};
} // namespace

std::vector<std::size_t> COperator::ChooseFolders(std::vector<CSafeString> const& folders) const
{
    std::vector<std::size_t> chosen(folders.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    CQtSignaler* const signaler = Signaler(m_Asked);
    if (signaler == nullptr || folders.size() < 2)
        return chosen;

    std::vector<std::int32_t>* answer = nullptr;
    {
        CWaiting const waiting;
        emit signaler->SelectMultipleItems(EUIMode::Modal, timeToPlan, "Which folders?", folders,
                                           &answer, "Check these", "Check all", abortOffered,
                                           abortText);
    }
    std::unique_ptr<std::vector<std::int32_t>> const indices(answer);
    if (indices == nullptr)
        return chosen;
    chosen.clear();
    for (std::int32_t const index : *indices)
        if (index >= 0 && static_cast<std::size_t>(index) < folders.size())
            chosen.push_back(static_cast<std::size_t>(index));
    return chosen;
}

std::size_t COperator::ChooseLimit(std::size_t count) const
{
    CQtSignaler* const signaler = Signaler(m_Asked);
    if (signaler == nullptr || count < 2)
        return count;
    std::uintptr_t limit = count;
    {
        CWaiting const waiting;
        emit signaler->GetInteger(EUIMode::Modal, timeToPlan, "How many files at most?",
                                  "They are taken in the order of their names.", &limit,
                                  ENumericBase::Decimal, true, count, 1, "Start", "Check all",
                                  abortOffered, abortText);
    }
    return std::clamp<std::uintptr_t>(limit, 1, count);
}

bool COperator::ContinuesAfter(CSafeString const& failure) const
{
    CQtSignaler* const signaler = Signaler(m_Asked);
    if (signaler == nullptr)
        return true;
    bool goesOn = true;
    CWaiting const waiting;
    emit signaler->BooleanChoice(EUIMode::Modal, timeToDecide, "Continue? " + failure, &goesOn,
                                 "Continue", "Stop here", abortOffered, abortText);
    return goesOn;
}

std::optional<CSafeString> COperator::ChooseReportFile(CSafeString const& folder,
                                                       CSafeString const& name) const
{
    CQtSignaler* const signaler = Signaler(m_Asked);
    if (signaler == nullptr)
        return std::nullopt;
    CWaiting const waiting;
    return emit signaler->PickSingleFile("Save the report", folder, name, "Texts (*.txt)");
}

void COperator::TellProblem(CSafeString const& problem) const
{
    if (CQtSignaler* const signaler = Signaler(m_Asked))
        emit signaler->ShowInfo(EUIMode::Modal, timeToDecide, problem, true, "Close",
                                EUIEmphasis::Error, gui::EAbortPromptState::Hidden, "");
}

void COperator::UpdateResults() const
{
    if (CQtSignaler* const signaler = Signaler(m_Asked))
        emit signaler->UpdateResults();
}
