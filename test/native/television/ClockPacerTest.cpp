#include "television/ClockPacer.h"

#include <gtest/gtest.h>

#include <vector>

#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

constexpr int64_t kMillisecondTicks = kPcrRate / 1000;
constexpr int64_t kStart = 5000000;
constexpr double kUsualBitRate = 188 * 8 * 1000.0;  // a packet each millisecond

/// When the packets of a stream come, in milliseconds since the beginning. 0 in the list is a
/// packet without a clock, another number one with a clock of so many milliseconds.
std::vector<int64_t> times(const std::vector<int64_t>& clocks, size_t restartBefore) {
    ClockPacer pacer(kUsualBitRate);
    pacer.begin(kStart);
    for (size_t number = 0; number < clocks.size(); ++number) {
        if (number == restartBefore) pacer.restart();
        const auto packet = test::clockPacket(0x100, clocks[number] * kMillisecondTicks);
        pacer.add(TransportPacket(packet.data()), number * TransportPacket::kSize);
    }
    pacer.finish(clocks.size() * TransportPacket::kSize);
    std::vector<int64_t> result;
    for (const auto& packet : pacer.timed()) result.push_back((packet.due - kStart + 500) / 1000);
    return result;
}

TEST(ClockPacer, SpreadsPacketsBetweenClockReferences) {
    struct Case {
        const char* what = "";
        std::vector<int64_t> clocks;
        std::vector<int64_t> times;
        size_t restartBefore = SIZE_MAX;
    };
    constexpr int64_t kTurn = kPcrModulus / kMillisecondTicks;  // and 0.68 of one
    const Case cases[] = {
        {"at an even rate", {100, 0, 0, 0, 140, 0, 160}, {0, 10, 20, 30, 40, 50, 60}},
        {"what stands before the first comes at once", {0, 0, 100, 0, 120}, {0, 0, 0, 10, 20}},
        {"the clock begins anew at its end", {kTurn - 9, 0, 10}, {0, 10, 20}},
        {"a clock that jumps: the rate so far",
         {100, 0, 120, 0, 9000, 0, 9040},
         {0, 10, 20, 30, 40, 60, 80}},
        {"a clock that goes back", {100, 0, 120, 0, 50, 0, 70}, {0, 10, 20, 30, 40, 50, 60}},
        {"no clock: the usual rate", {0, 0, 0, 0}, {0, 1, 2, 3}},
        {"where the stream begins anew: the rate so far",
         {100, 0, 120, 100, 0, 120, 0},
         {0, 10, 20, 30, 40, 50, 60},
         3},
    };
    for (const Case& one : cases)
        EXPECT_EQ(times(one.clocks, one.restartBefore), one.times) << one.what;
}

TEST(ClockPacer, PacesWhatHasNoPackets) {
    ClockPacer pacer(kUsualBitRate);
    pacer.begin(kStart);
    for (uint64_t place = 0; place <= (8U << 20); place += 65536) pacer.reach(place);
    const double seconds = static_cast<double>(pacer.time() - kStart) / 1e6;
    EXPECT_NEAR(seconds, (8U << 20) * 8 / kUsualBitRate, 0.01);
}

}  // namespace
}  // namespace quiravent::desktop
