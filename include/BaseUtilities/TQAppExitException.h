#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/TEST_STATUS.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstddef>

/// A request that the application exit, thrown through code that handles
/// failures. An empty message becomes "TQAppExitException request.". The
/// constructors throw std::bad_alloc, and std::logic_error for a null view with
/// a length; the flag is then as it was.
///
/// Deliberate: derives from nothing, so that handlers for std::exception let
/// the request pass.
///
/// Threads: constructed, thrown and caught on any number at once.
class BASEUTILITIES_EXPORT TQAppExitException
{
public:
    /// Deliberate: every construction, also of an object that is never thrown,
    /// sets ExceptionThrown(). Copying does not.
    explicit TQAppExitException(
        basic_sv_wrapper<char> const& message = "TQAppExitException request.",
        TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQAppExitException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQAppExitException(basic_sv_wrapper<char>(), status)
    {
    }
    TQAppExitException(TQAppExitException const&) = default;
    TQAppExitException& operator=(TQAppExitException const&) = default;
    virtual ~TQAppExitException();

    /// The message, up to its first NUL; valid as long as this object.
    char const* what() const;
    TEST_STATUS GetStatus() const noexcept { return m_Status; }

    /// Whether an exit request was made in this process. False at load; only
    /// the application clears it. A plain flag that orders nothing between threads.
    static bool ExceptionThrown();
    static void ExceptionThrown(bool thrown);

    static bool m_ExceptionThrown;

private:
    CSafeString m_Message;
    TEST_STATUS m_Status;
};
