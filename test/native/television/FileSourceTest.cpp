// A file as a live multiplex, in a time that the test makes.

#include "television/FileSource.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "common/TemporaryFolder.h"
#include "support/Clock.h"
#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::multiplexFile;
using test::Taker;
using test::operator+;

/// Reads for so many seconds from now on, in steps as a receiver has them.
Taker readFor(FileSource& source, int64_t seconds) {
    Taker taker;
    source.open();
    const int64_t begin = clock::now();
    for (int64_t now = begin; now < begin + seconds * kSecond; now += 5 * kMillisecond) {
        source.read(taker, now);
    }
    return taker;
}

TEST(FileSource, GoesRoundWithoutLosingAPacketAtTheTimesOfItsClock) {
    const Bytes file = test::readMultiplex("mux.ts");
    const TemporaryFolder folder;
    test::writeBytes(folder / "cut.ts", file + Bytes(100, 0x47));
    for (const std::string& path : {multiplexFile("mux.ts"), folder / "cut.ts"}) {
        SCOPED_TRACE(path);
        FileSource source({path, true, 1e6});
        const Taker taker = readFor(source, 11);
        const size_t packets = file.size() / TransportPacket::kSize;
        ASSERT_GT(taker.arrivals.size(), 2 * packets);
        EXPECT_EQ(taker.restarts, (std::vector<size_t>{packets, 2 * packets}));
        EXPECT_EQ(source.syncLosses(), 0U);
        int64_t offset = 0;
        size_t clocks = 0;
        for (size_t number = 0; number < taker.arrivals.size(); ++number) {
            const size_t place = number * TransportPacket::kSize;
            const TransportPacket packet(&taker.stream[place]);
            ASSERT_EQ(
                std::memcmp(packet.bytes(), &file[place % file.size()], TransportPacket::kSize), 0);
            ASSERT_GE(taker.arrivals[number], taker.arrivals[number == 0 ? 0 : number - 1]);
            const auto clock = packet.clockReference();
            if (!clock || packet.pid() != 256) continue;
            const int64_t here = taker.arrivals[number] - *clock / (kPcrRate / kSecond);
            if (clocks++ > 0 && here - offset <= kSecond) {
                EXPECT_NEAR(here, offset, 3) << number;
            }
            offset = here;
        }
        EXPECT_GT(clocks, 100U);
        const double rate = static_cast<double>(taker.stream.size()) * 8 / 11;
        EXPECT_NEAR(rate, 3000000, 60000) << "the rate stays the same where it begins anew";
    }
}

TEST(FileSource, EndsWhereItDoesNotGoRound) {
    FileSource source({multiplexFile("other.ts"), false, 1e6});
    const Taker taker = readFor(source, 5);
    EXPECT_TRUE(taker.stream == test::readMultiplex("other.ts"));
    EXPECT_EQ(source.awaited().until, INT64_MAX);
}

TEST(FileSource, DoesNotMakeUpForTimeInWhichNothingRan) {
    FileSource source({multiplexFile("mux.ts"), true, 1e6});
    source.open();
    const int64_t begin = clock::now();
    Taker taker;
    source.read(taker, begin);
    const size_t before = taker.arrivals.size();
    source.read(taker, begin + 3600 * kSecond);
    EXPECT_EQ(taker.restarts, std::vector<size_t>{before});
    EXPECT_LT(taker.arrivals.size(), before + 200);
}

}  // namespace
}  // namespace quiravent::desktop
