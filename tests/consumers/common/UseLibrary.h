#pragma once

#include <BaseUtilities/CFormattedString.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/DoThrow.h>
#include <BaseUtilities/LibraryVersion.h>
#include <BaseUtilities/StringUtilities.h>
#include <BaseUtilities/TQUserAbort.h>
#include <BaseUtilities/TqCopyFile.h>

#include <cstring>

/// What a consumer needs of the library: text in and out, a message built in this module, an
/// exception of the library caught here and the state that all modules share. 0 when all holds,
/// otherwise the number of the step that failed.
inline int UseLibrary()
{
    if (GetVersionMajor() != 5)
        return 1;
    if (PluralNoun(2, "file", "") + ", " + CSafeString::to_string(7) != "files, 7")
        return 2;
    if (std::strcmp(CFormattedString("%s of %d", CSafeString("3"), 4).get(), "3 of 4") != 0)
        return 3;
    try {
        TqCopyFile("/nonexistent/a", "/nonexistent/b", ECopyFailType::Throw);
        return 4;
    } catch (TQRunTimeException const& error) {
        if (error.GetStatus() != TEST_STATUS_ERROR)
            return 5;
    }
    try {
        DoThrow<CTestSuiteException>(TEST_STATUS_ERROR, "%d of %s", 1, "2");
    } catch (TQDOMDocException const& error) {
        if (std::strcmp(error.what(), "1 of 2") != 0)
            return 6;
    }
    TQUserAbort::SetUserAbortOk();
    return TQUserAbort::IsUserAbortOk() ? 0 : 7;
}
