#include "support/WallClock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace quiravent::desktop {
namespace {

constexpr int64_t kSecond = 1000000;
constexpr int64_t kHour = 3600 * kSecond;

TEST(WallClock, FollowsTheMachineUntilItIsSet) {
    EXPECT_GE(clock::wallTime() / kSecond, std::time(nullptr) - 1);
    for (const int64_t time : {int64_t{0}, 951782400 * kSecond, int64_t{UINT32_MAX} * kSecond}) {
        clock::setWallTime(time);
        const int64_t shown = clock::wallTime();
        EXPECT_GE(shown, time);
        EXPECT_LT(shown, time + kHour);
        EXPECT_GE(clock::wallTime(), shown) << "time goes on";
    }
}

}  // namespace
}  // namespace quiravent::desktop
