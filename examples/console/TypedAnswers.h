#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What an operator types, as the values that it stands for; nothing for what
// stands for none.

/// A number without sign, in that base; "0x" may precede one in base 16. Blanks
/// around it mean nothing.
std::optional<std::uintptr_t> TypedNumber(std::string_view text, int base);

/// A number as TypedNumber reads it.
std::string NumberText(std::uintptr_t number, int base);

/// Indices, from 0, of those of `count` items that are chosen by numbers from 1
/// and ranges: "1 3-5, 7"; all of them by "all" and none by "none". Each index
/// once, in ascending order.
std::optional<std::vector<std::int32_t>> TypedItems(std::string_view text, std::size_t count);

/// The path below `folder`, unless it is absolute or begins with "~/".
std::filesystem::path TypedPath(std::string const& text, std::filesystem::path const& folder);
