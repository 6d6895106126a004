#include <BaseUtilities/TQException.h>

#include <BaseUtilities/CSafeString.h>

namespace
{
basic_sv_wrapper<char> OrDefault(basic_sv_wrapper<char> const& message,
                                 basic_sv_wrapper<char> const& defaultText)
{
    return message.empty() ? defaultText : message;
}
} // namespace

// The text of DoMakeWhatString without its holder, which threads that throw at once would share.
TQException::TQException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : std::runtime_error(CSafeString(OrDefault(message, "TQException Thrown")).get()),
      m_Status(status)
{
}

TQException::~TQException() = default;

char const* TQException::DoMakeWhatString(basic_sv_wrapper<char> const& message)
{
    static CSafeString holder(nullptr);
    holder = CSafeString(OrDefault(message, "Torqel Exception thrown."));
    return holder.get();
}

TQAppException::TQAppException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : TQException(OrDefault(message, "TQAppException Exception Thrown"), status)
{
}

TQAppException::~TQAppException() = default;

TQDOMDocException::TQDOMDocException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : TQException(OrDefault(message, "TQDOMDocException Thrown"), status)
{
}

TQDOMDocException::~TQDOMDocException() = default;

TQParseTreeException::TQParseTreeException(basic_sv_wrapper<char> const& message,
                                           TEST_STATUS status)
    : TQException(OrDefault(message, "TQParseTreeException Thrown"), status)
{
}

TQParseTreeException::~TQParseTreeException() = default;

TQRunTimeException::TQRunTimeException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : TQException(OrDefault(message, "TQRunTimeException Thrown"), status)
{
}

TQRunTimeException::~TQRunTimeException() = default;

CTestSuiteException::CTestSuiteException(basic_sv_wrapper<char> const& message, TEST_STATUS status)
    : TQDOMDocException(OrDefault(message, "CTestSuiteException Thrown"), status)
{
}

CTestSuiteException::~CTestSuiteException() = default;
