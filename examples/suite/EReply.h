#pragma once

/// What came of a question to the operator. All but Accepted mean "rejected" to
/// whoever asked.
enum class EReply {
    Accepted,
    Rejected,
    TimedOut,
    AbortSuite, ///< the operator wants the whole suite to end
    Closed      ///< by somebody else than the operator, or because the suite is to end
};
