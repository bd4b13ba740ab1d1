#include "support/WallClock.h"

#include <atomic>
#include <chrono>

#include "support/Clock.h"

namespace quiravent::desktop::clock {

namespace {

/// No moment lies as far from the steady clock's zero as this.
constexpr int64_t kFollowsMachine = INT64_MIN;

/// From the steady clock's zero to the beginning of 1970.
std::atomic<int64_t> s_offset{kFollowsMachine};

int64_t machineTime() {
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

int64_t wallTime() {
    const int64_t offset = s_offset;
    return offset == kFollowsMachine ? machineTime() : now() + offset;
}

void setWallTime(int64_t microseconds) { s_offset = microseconds - now(); }

}  // namespace quiravent::desktop::clock
