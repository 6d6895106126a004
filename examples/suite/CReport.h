#pragma once

#include "ISuiteObserver.h"

#include <vector>

/// The written record of a run, as plain text.
class CReport
{
public:
    void Begin(CSuitePlan const& plan);
    void Add(CCase const& finished, CCaseOutcome const& outcome);
    void End(CSuiteSummary const& summary);

    CSafeString Text() const;
    /// Replaces `file`. Throws TQRunTimeException with TEST_STATUS_NO_REPORT.
    void Save(CSafeString const& file) const;

private:
    std::vector<CSafeString> m_Lines;
};
