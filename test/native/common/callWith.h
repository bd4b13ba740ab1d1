#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>

/// A value for a parameter: the number for every handle, number and code, null for every pointer,
/// empty texts.
template <class Value>
Value parameterFrom([[maybe_unused]] uint32_t number) {
    if constexpr (std::is_enum_v<Value> || std::is_arithmetic_v<Value>) {
        return static_cast<Value>(number);
    } else {
        return Value{};
    }
}

/// Calls a function of the porting layer with such values for all of its parameters.
template <class Result, class... Parameters>
Result callWith([[maybe_unused]] uint32_t number, Result (*function)(Parameters...)) {
    std::tuple<std::decay_t<Parameters>...> arguments{
        parameterFrom<std::decay_t<Parameters>>(number)...};
    return std::apply(
        [&](auto&... values) { return function(static_cast<Parameters&&>(values)...); }, arguments);
}
