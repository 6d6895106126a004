#pragma once

#include "CopyOperation.h"
#include "ISuiteObserver.h"

#include <filesystem>
#include <string>
#include <vector>

/// A copy that cannot be made, and how that must be reported.
struct CRefusal
{
    CSafeString m_Name;
    std::filesystem::path m_Source;
    std::filesystem::path m_Destination;
    /// The exact message.
    CSafeString m_Message;
    /// Why it cannot be provoked here; empty where it can.
    std::string m_SkipReason;
};

/// Puts into `folder`, an existing one, what the refusals need, and lists them.
/// Throws std::filesystem::filesystem_error.
std::vector<CRefusal> PrepareRefusals(std::filesystem::path const& folder);

/// Passed when the copy is refused with that message and, where the caller asks
/// for a quiet report, with an empty result. The detail is the message thrown.
CCaseOutcome CheckRefusal(CRefusal const& refusal, CopyOperation const& copy);
