#pragma once

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/CSimpleBuffer.h>
#include <BaseUtilities/TQAppExitException.h>
#include <BaseUtilities/TQException.h>

#include <optional>
#include <string>
#include <tuple>
#include <vector>

/// Text too long for a standard string to keep inside itself, so that it is on the heap.
inline char const* const LongText = "forty characters, which go onto the heap";
inline char const* const FormerText = "the former text, on the heap as well as the others";

/// What an operation works on, one of each kind; and the state that it must leave.
struct SOperands
{
    SOperands();

    /// Everything that an operation can change, the statics of the library included.
    std::string Describe() const;

    CSafeString text{FormerText};
    CSafeString other{LongText};
    std::vector<CSafeString> items{LongText, LongText};
    CSimpleBuffer buffer;
    CSimpleBuffer largeBuffer;
    void* block = nullptr;
    /// For the destructors.
    std::tuple<std::optional<CSafeString>, std::optional<CSimpleBuffer>, std::optional<TQException>,
               std::optional<TQAppException>, std::optional<TQDOMDocException>,
               std::optional<TQParseTreeException>, std::optional<TQRunTimeException>,
               std::optional<CTestSuiteException>, std::optional<TQAppExitException>>
        doomed;
};

enum class EAllocates {
    Never,
    Always,
    OnFirstCall ///< of the process, so that only the first of many attempts meets it
};

/// What may become of a failed allocation besides std::bad_alloc. The system and the standard
/// library can do without some.
enum class EMakesDo {
    Never,
    Always,  ///< also where operator new fails
    AtMalloc ///< where malloc fails
};

struct SEntryPoint
{
    /// As in the list of exported names, abbreviated; or what only a header has, in brackets.
    char const* name;
    void (*run)(SOperands& with);
    EAllocates allocates = EAllocates::Never;
    EMakesDo makesDo = EMakesDo::Never;
    /// Whether a failure left what the interface states; null where it must leave all as it was.
    bool (*isAsStated)(SOperands const& with) = nullptr;
};

std::vector<SEntryPoint> const& EntryPoints();

/// One of the exported functions, as the table names it.
std::string Abbreviated(std::string exportedName);
