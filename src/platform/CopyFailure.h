#pragma once

#include <filesystem>

// Why the file found at the destination after a copy is not the copy. `type` is anything but
// file_type::regular.
[[noreturn]] void ThrowNotACopy(std::filesystem::path const& file, std::filesystem::file_type type);

// A file-system error met while checking, copying or verifying.
[[noreturn]] void ThrowCopyError(std::filesystem::filesystem_error const& error);
