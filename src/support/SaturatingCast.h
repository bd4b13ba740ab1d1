#pragma once

#include <limits>

namespace quiravent {

/// A number cut to an integer, as the device's processor converts: not-a-number is 0, and what is
/// out of range the nearest value in range.
template <class Integer>
Integer SaturatingCast(double value) {
    using Limits = std::numeric_limits<Integer>;
    if (!(value == value)) return 0;
    if (value <= static_cast<double>(Limits::min())) return Limits::min();
    if (value >= static_cast<double>(Limits::max())) return Limits::max();
    return static_cast<Integer>(value);
}

}  // namespace quiravent
