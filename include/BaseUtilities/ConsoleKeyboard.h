#pragma once

#include <BaseUtilities/Export.h>

#include <optional>

// Single keys for a console front end, from standard input: without echo and
// without Enter. Only the echo and line modes of the terminal change, and only
// during a call; where standard input is no terminal it is read as a plain
// stream. No error is reported.
//
// A signal that ends the process during oss_getch, or a jump out of it, leaves
// the terminal changed: keep its attributes at start and restore them in a
// handler.
//
// Threads: one console thread; two at once could restore each other's changes.

/// Waits for one character; EOF at the end of input, and when a handler that
/// does not restart system calls interrupts the wait.
BASEUTILITIES_EXPORT int oss_getch();

/// The character that waits, or nothing; never waits itself.
/// Deliberate: asks the terminal, not the stream. Keys that an earlier read took
/// into the stream's buffer are not seen, so set `stdin` unbuffered with
/// `setvbuf` before the first read.
BASEUTILITIES_EXPORT std::optional<int> oss_query_getch();

// Deliberate: this platform has no console code pages. The current one and that
// of UTF-8 are both 0, and so always the same; setting one does nothing.
BASEUTILITIES_EXPORT unsigned int oss_get_current_code_page();
BASEUTILITIES_EXPORT void oss_set_current_code_page(unsigned int page);
BASEUTILITIES_EXPORT unsigned int oss_utf8_code_page_number();
