#pragma once

#include <BaseUtilities/TqCopyFile.h>

#include <functional>

/// What the suite examines: something that promises what TqCopyFile promises.
using CopyOperation = std::function<std::optional<CSafeString>(
    basic_sv_wrapper<char> const&, basic_sv_wrapper<char> const&, ECopyFailType)>;
