#pragma once

#include "ISuiteObserver.h"

#include <BaseUtilities/CSafeString.h>

/// What identifies a run: a random identifier, this moment and the versions.
CRunRecord MakeRunRecord();

/// This moment, as the reports write it.
CSafeString TimeStamp();

/// "25 cases: 24 pass, 1 fails, 0 skip."
CSafeString CountsText(CSuiteSummary const& summary);
