#pragma once

#include <exception>
#include <utility>

namespace quiravent {

/// A new object owned by the caller, or null when its constructor or the allocation throws; the
/// reason is dropped, as scripts get no more than the null.
template <class Native, class... Arguments>
Native* MakeOrNull(Arguments&&... arguments) {
    try {
        return new Native(std::forward<Arguments>(arguments)...);
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace quiravent
