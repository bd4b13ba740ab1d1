#pragma once

#include <chrono>
#include <cstdint>

namespace quiravent::desktop {

/// Microseconds, in which the device has its times.
constexpr int64_t kSecond = 1000000;
constexpr int64_t kMillisecond = 1000;

}  // namespace quiravent::desktop

/// The device's one source of time.
namespace quiravent::desktop::clock {

/// Microseconds of a time that never jumps; its zero means nothing.
inline int64_t now() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

/// The same time in the form in which condition variables take a deadline.
inline std::chrono::steady_clock::time_point timePoint(int64_t microseconds) {
    return std::chrono::steady_clock::time_point(std::chrono::microseconds(microseconds));
}

}  // namespace quiravent::desktop::clock
