#pragma once

#include <BaseUtilities/Export.h>
#include <BaseUtilities/basic_sv_wrapper.h>
#include <BaseUtilities/custom_unique_ptr.h>

#include <string>

// UTF-8, UTF-16 and wide text (UCS-4) into one another. The view's length
// bounds the input; it needs no terminator and may hold NULs. An empty or null
// view gives an owner of an empty string, never a null owner. Ill-formed input
// is replaced as Qt replaces it: by U+FFFD, or by "?" for half a surrogate
// pair. Also as in Qt, a byte order mark in front of UTF-8 or wide text is
// dropped. All throw std::bad_alloc, and std::length_error for a result that
// no string can hold.
//
// Threads: any number at once.

BASEUTILITIES_EXPORT custom_unique_ptr<std::u16string, std::u16string>
Utf8ToUtf16(basic_sv_wrapper<char> const& text);

BASEUTILITIES_EXPORT custom_unique_ptr<std::string, std::string>
Utf16ToUtf8(basic_sv_wrapper<char16_t> text);

BASEUTILITIES_EXPORT custom_unique_ptr<std::string, std::string>
StdWStrToUtf8(basic_sv_wrapper<wchar_t> text);
