#pragma once

#include <BaseUtilities/TEST_STATUS.h>

#include <typeinfo>

/// What a shared library of the application, loaded at run time, does with this
/// library: each entry runs inside that module.
struct TestModule
{
    /// Throws the named class of the family, or TQAppExitException or TQUserAbort.
    void (*raise)(char const* className, char const* message, TEST_STATUS status);
    /// Throws a TQRunTimeException through DoThrow with std::string and number.
    void (*raiseFormatted)(TEST_STATUS status, char const* text, int number);
    /// The module's type information of the class.
    std::type_info const* (*typeOf)(char const* className);
    /// Whether the module's own handlers catch what `action` throws as that class.
    bool (*catches)(char const* className, void (*action)());

    // The module's own view of the shared statics.
    bool* (*abortFlag)(int place); ///< ok, paused, sent, requested, enabled
    bool* (*exitFlag)();
    unsigned long* (*indentLevel)();
    char const* (*emptyStr)();
    char const* (*makeWhatString)(char const* message);
    bool (*requestUserAbort)();
};

/// Loads the module on first use, its names hidden from all others; it stays
/// until the process ends. Throws std::runtime_error.
TestModule const& LoadTestModule();
