#include <BaseUtilities/TQAppExitException.h>

// Relaxed atomic access keeps the plain flag free of data races, and orders nothing.

bool TQAppExitException::m_ExceptionThrown = false;

TQAppExitException::TQAppExitException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : m_Message(message.empty() ? "TQAppExitException request." : message),
      m_Status(status)
{
    ExceptionThrown(true);
}

TQAppExitException::~TQAppExitException() = default;

char const* TQAppExitException::what() const
{
    return m_Message.get();
}

bool TQAppExitException::ExceptionThrown()
{
    return __atomic_load_n(&m_ExceptionThrown, __ATOMIC_RELAXED);
}

void TQAppExitException::ExceptionThrown(bool thrown)
{
    __atomic_store_n(&m_ExceptionThrown, thrown, __ATOMIC_RELAXED);
}
