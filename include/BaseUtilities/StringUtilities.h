#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <vector>

// Splitting, joining, letter case and word forms. Text is UTF-8; splitting and
// joining read it as Qt does, so ill-formed bytes become U+FFFD. All throw
// std::bad_alloc, and std::logic_error for a null view with a length (but such a
// `plural` counts as empty).
//
// Threads: any number at once, for letter case unless another sets the locale.

/// The parts of `text` between occurrences of `separator`, empty ones included;
/// the match is case-sensitive. An empty text gives one empty part. An empty
/// separator splits between all characters, with an empty part at each end. A
/// part that holds a NUL ends there.
BASEUTILITIES_EXPORT std::vector<CSafeString> StringSplit(basic_sv_wrapper<char> const& text,
                                                          basic_sv_wrapper<char> const& separator);

/// The items with `separator` between each two, empty items included. Each
/// item, and the result, ends at its first NUL.
BASEUTILITIES_EXPORT CSafeString StringJoin(std::vector<CSafeString> const& items,
                                            basic_sv_wrapper<char> const& separator);

/// A copy with every byte passed through `toupper` or `tolower` of the C
/// library, so the process's locale decides; in the "C" locale only ASCII
/// letters change.
BASEUTILITIES_EXPORT CSafeString ToUpper(basic_sv_wrapper<char> const& text);
BASEUTILITIES_EXPORT CSafeString ToLower(basic_sv_wrapper<char> const& text);

/// The noun for `count` things: `plural` when it is not empty; otherwise
/// `singular`, with an "s" unless the count is 1. The count is not in the result.
/// Deliberate: a non-empty `plural` is returned for a count of 1 too.
BASEUTILITIES_EXPORT CSafeString PluralNoun(unsigned long count,
                                            basic_sv_wrapper<char> const& singular,
                                            basic_sv_wrapper<char> const& plural);

/// The verb for `count` subjects: `plural` when it is not empty; otherwise
/// `singular`, with an "s" when the count is 1.
/// Deliberate: as in PluralNoun, and the "s" is appended blindly ("passs").
BASEUTILITIES_EXPORT CSafeString PluralVerb(unsigned long count,
                                            basic_sv_wrapper<char> const& singular,
                                            basic_sv_wrapper<char> const& plural);
