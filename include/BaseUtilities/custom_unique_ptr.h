#pragma once

#include <BaseUtilities/Export.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

/// A unique owner whose deleter is a function object, so that an object made
/// inside the library is also freed there, whichever module lets go of it.
/// A default-constructed owner holds null and an empty deleter; give it an
/// object only together with a deleter, for releasing an object through an
/// empty one ends the process.
template <class T, class U = T>
using custom_unique_ptr = std::unique_ptr<T, std::function<void(U*)>>;

/// Destroys and frees `*object`; does nothing for null. For the types declared
/// below it is the library's own function.
template <class T>
void CustomDelete(T* object)
{
    static_assert(sizeof(T) > 0, "CustomDelete needs the complete type");
    delete object;
}

extern template BASEUTILITIES_EXPORT void CustomDelete<std::string>(std::string*);
extern template BASEUTILITIES_EXPORT void CustomDelete<std::u16string>(std::u16string*);

/// A new T, moved from `value`, owned together with CustomDelete<T>.
/// Throws std::bad_alloc, and what moving a T throws.
template <class T, class U = T>
custom_unique_ptr<T, U> make_custom_unique(T&& value)
{
    static_assert(!std::is_reference_v<T>, "make_custom_unique takes a temporary: use std::move");
    return custom_unique_ptr<T, U>(new T(std::forward<T>(value)), &CustomDelete<U>);
}
