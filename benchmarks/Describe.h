#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// What came out of an operation as bytes, whatever type of whose library holds it, so that
// contenders can be compared.

template <class T, class = void>
inline constexpr bool HasGetAndSize = false;
template <class T>
inline constexpr bool HasGetAndSize<T, std::void_t<decltype(std::declval<T const&>().get()),
                                                   decltype(std::declval<T const&>().size())>> =
    true;

template <class T, class = void>
inline constexpr bool HasBytes = false;
template <class T>
inline constexpr bool
    HasBytes<T, std::void_t<decltype(std::declval<T const&>().data()),
                            decltype(std::declval<T const&>().size()), typename T::value_type>> =
        true;

template <class T, class = void>
inline constexpr bool IsOwner = false;
template <class T>
inline constexpr bool
    IsOwner<T, std::void_t<typename T::deleter_type, decltype(*std::declval<T const&>())>> = true;

template <class T>
std::string Describe(T const& value);

template <class T>
std::string Describe(std::optional<T> const& value)
{
    return value ? Describe(*value) : "nothing";
}

template <class T>
std::string DescribeEach(T const& values)
{
    std::string text;
    for (auto const& value : values)
        text += Describe(value) + '\n';
    return text;
}

template <class T>
std::string Describe(T const& value)
{
    if constexpr (HasGetAndSize<T>) {
        return std::string(value.get(), value.size());
    } else if constexpr (std::is_arithmetic_v<T>) {
        return std::to_string(value);
    } else if constexpr (std::is_convertible_v<T, std::string_view>) {
        return std::string(std::string_view(value));
    } else if constexpr (IsOwner<T>) {
        return value ? Describe(*value) : "nothing";
    } else if constexpr (HasBytes<T>) {
        if constexpr (std::is_trivially_copyable_v<typename T::value_type>)
            return {reinterpret_cast<char const*>(value.data()),
                    static_cast<std::size_t>(value.size()) * sizeof(typename T::value_type)};
        else
            return DescribeEach(value);
    } else {
        return DescribeEach(value);
    }
}
