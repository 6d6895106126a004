#pragma once

#include <BaseUtilities/CSafeString.h>

#include <optional>
#include <vector>

/// The suite's questions to its operator, put through the signaler that the
/// front end registered. Without one, or when nobody is to be asked, every
/// question has the answer that lets the suite run through.
///
/// The vector that a receiver of SelectMultipleItems hands back is made with new
/// and freed here.
///
/// Threads: the suite's. Each question waits for its answer.
class COperator
{
public:
    explicit COperator(bool asked) : m_Asked(asked) {}

    /// The indices of those of `folders` to be checked; all of them unless chosen otherwise.
    std::vector<std::size_t> ChooseFolders(std::vector<CSafeString> const& folders) const;
    /// How many of `count` files to check, at least 1; all when the question is rejected.
    std::size_t ChooseLimit(std::size_t count) const;
    /// Whether to go on although a case has failed; so it does when nobody is asked.
    bool ContinuesAfter(CSafeString const& failure) const;
    /// Where to save the report; empty for nowhere.
    std::optional<CSafeString> ChooseReportFile(CSafeString const& folder,
                                                CSafeString const& name) const;
    void TellProblem(CSafeString const& problem) const;
    /// Tells views of the results that there are more.
    void UpdateResults() const;

private:
    bool m_Asked;
};
