#pragma once

#include "FloorExport.h"

#include <BaseUtilities/basic_sv_wrapper.h>

#include <functional>
#include <memory>
#include <string>

namespace Floor
{
template <class T>
using Owner = std::unique_ptr<T, std::function<void(T*)>>;

template <class T>
void CustomDelete(T* object)
{
    delete object;
}

FLOOR_EXPORT Owner<std::u16string> Utf8ToUtf16(basic_sv_wrapper<char> const& text);
FLOOR_EXPORT Owner<std::string> Utf16ToUtf8(basic_sv_wrapper<char16_t> text);
FLOOR_EXPORT Owner<std::string> StdWStrToUtf8(basic_sv_wrapper<wchar_t> text);
} // namespace Floor
