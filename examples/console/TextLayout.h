#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Text as a terminal shows it. Widths are columns. All but Printable take
// printable UTF-8.

/// Control characters and bytes that are not UTF-8 as "\xNN", lest a file's name
/// command the terminal. Line feeds are kept where `keepLines` says so.
std::string Printable(std::string_view text, bool keepLines = false);

std::size_t DisplayWidth(std::string_view text);

/// The text cut at its start to at most `width` columns, `mark` showing the cut.
std::string ElideStart(std::string_view text, std::size_t width, std::string_view mark);

/// As much of the text's start as fits into `width` columns.
std::string CutEnd(std::string_view text, std::size_t width);

/// The text in lines of at most `width` columns, broken at line feeds, blanks
/// and, within longer words, anywhere.
std::vector<std::string> Wrap(std::string_view text, std::size_t width);

/// "1499 B", "11.1 KiB".
std::string ByteText(std::uintmax_t bytes);
