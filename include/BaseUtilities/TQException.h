#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/TEST_STATUS.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstddef>
#include <stdexcept>

/// The root of the exceptions that carry a message and a TEST_STATUS.
///
/// `what()` is the message as given, up to its first NUL; an empty message,
/// whatever its pointer, is replaced by the class's own default text. The
/// message is copied. Any status is stored as it is. The constructors throw
/// std::bad_alloc, and std::logic_error for a null view with a length.
/// `({})` and `(nullptr)` mean an empty message.
///
/// Threads: constructed, thrown and caught on any number at once.
class BASEUTILITIES_EXPORT TQException : public std::runtime_error
{
public:
    explicit TQException(basic_sv_wrapper<char> const& message = "TQException Thrown",
                         TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQException(basic_sv_wrapper<char>(), status)
    {
    }
    TQException(TQException const&) = default;
    TQException& operator=(TQException const&) = default;
    ~TQException() override;

    TEST_STATUS GetStatus() const noexcept { return m_Status; }

    /// Keeps the text of `message` ("Torqel Exception thrown." for an empty
    /// one) in the process's one holder and returns it; valid until the next
    /// call. Throws as the constructors do, and then keeps the text before.
    ///
    /// Deliberate: one holder without a lock, so for one thread at a time. The
    /// constructors compose the same text without it.
    static char const* DoMakeWhatString(basic_sv_wrapper<char> const& message);

private:
    TEST_STATUS m_Status;
};

/// A failure of the application. Default text "TQAppException Exception Thrown".
class BASEUTILITIES_EXPORT TQAppException : public TQException
{
public:
    explicit TQAppException(
        basic_sv_wrapper<char> const& message = "TQAppException Exception Thrown",
        TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQAppException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQAppException(basic_sv_wrapper<char>(), status)
    {
    }
    TQAppException(TQAppException const&) = default;
    TQAppException& operator=(TQAppException const&) = default;
    ~TQAppException() override;
};

/// A failure in a document. Default text "TQDOMDocException Thrown".
class BASEUTILITIES_EXPORT TQDOMDocException : public TQException
{
public:
    explicit TQDOMDocException(basic_sv_wrapper<char> const& message = "TQDOMDocException Thrown",
                               TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQDOMDocException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQDOMDocException(basic_sv_wrapper<char>(), status)
    {
    }
    TQDOMDocException(TQDOMDocException const&) = default;
    TQDOMDocException& operator=(TQDOMDocException const&) = default;
    ~TQDOMDocException() override;
};

/// A failure in a parse tree. Default text "TQParseTreeException Thrown".
class BASEUTILITIES_EXPORT TQParseTreeException : public TQException
{
public:
    explicit TQParseTreeException(
        basic_sv_wrapper<char> const& message = "TQParseTreeException Thrown",
        TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQParseTreeException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQParseTreeException(basic_sv_wrapper<char>(), status)
    {
    }
    TQParseTreeException(TQParseTreeException const&) = default;
    TQParseTreeException& operator=(TQParseTreeException const&) = default;
    ~TQParseTreeException() override;
};

/// A failure at run time, and the one class of the family that the library
/// itself throws. Default text "TQRunTimeException Thrown".
class BASEUTILITIES_EXPORT TQRunTimeException : public TQException
{
public:
    explicit TQRunTimeException(basic_sv_wrapper<char> const& message = "TQRunTimeException Thrown",
                                TEST_STATUS status = TEST_STATUS_ERROR);
    explicit TQRunTimeException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : TQRunTimeException(basic_sv_wrapper<char>(), status)
    {
    }
    TQRunTimeException(TQRunTimeException const&) = default;
    TQRunTimeException& operator=(TQRunTimeException const&) = default;
    ~TQRunTimeException() override;
};

/// A failure in a test suite. Default text "CTestSuiteException Thrown".
/// Deliberate: derives from TQDOMDocException, so that a handler for document
/// failures also catches those of test suites.
class BASEUTILITIES_EXPORT CTestSuiteException : public TQDOMDocException
{
public:
    explicit CTestSuiteException(
        basic_sv_wrapper<char> const& message = "CTestSuiteException Thrown",
        TEST_STATUS status = TEST_STATUS_ERROR);
    explicit CTestSuiteException(std::nullptr_t, TEST_STATUS status = TEST_STATUS_ERROR)
        : CTestSuiteException(basic_sv_wrapper<char>(), status)
    {
    }
    CTestSuiteException(CTestSuiteException const&) = default;
    CTestSuiteException& operator=(CTestSuiteException const&) = default;
    ~CTestSuiteException() override;
};
