#pragma once

#include <cstdint>

/// The date and time of day that the device goes by. It starts as the machine's and can be set,
/// which leaves the machine's clock alone. Thread-safe.
namespace quiravent::desktop::clock {

/// Microseconds since the beginning of 1970, UTC.
int64_t wallTime();

/// Makes that moment the present one; time goes on from there, whatever the machine's clock does.
void setWallTime(int64_t microseconds);

}  // namespace quiravent::desktop::clock
