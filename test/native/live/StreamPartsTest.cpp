// What is made of the packets of a stream before it is decoded.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include "live/PesAssembler.h"
#include "live/ProgramClock.h"
#include "live/StreamTiming.h"
#include "live/sniffStream.h"
#include "media/Av.h"

namespace quiravent::test {
namespace {

using namespace desktop;

constexpr Pid kPid = 0x100;

using Bytes = std::vector<uint8_t>;
using Packet = std::array<uint8_t, TransportPacket::kSize>;

/// A packetised elementary stream's packet of stream 0xE0. length: as it is told; 0 for none.
Bytes pes(const Bytes& data, int64_t pts, uint8_t length) {
    const auto bits = [=](int from) { return static_cast<uint8_t>(pts >> from); };
    Bytes bytes{0, 0, 1, 0xE0, 0, length, 0x80, 0x80, 5};
    for (const int byte :
         {0x21 | (bits(29) & 0x0E), +bits(22), 1 | bits(14), +bits(7), 1 | bits(0) << 1})
        bytes.push_back(static_cast<uint8_t>(byte));
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

/// What is wrong with one transport packet of each unit.
struct Damage {
    size_t number = SIZE_MAX;  ///< of the packet in the unit
    bool isDiscontinuous = false;
    size_t at = 0;  ///< the byte that is another one
    uint8_t byte = TransportPacket::kSync;
};

/// Gives the assembler a unit in transport packets, the last one stuffed.
void carry(PesAssembler& assembler, const Bytes& bytes, const Damage& damage,
           std::vector<PesUnit>& units) {
    constexpr size_t kPayload = 184;
    for (size_t at = 0, number = 0; at < bytes.size(); at += kPayload, ++number) {
        Packet packet{};
        packet.fill(0xFF);
        const size_t size = std::min(kPayload, bytes.size() - at);
        const size_t stuffing = kPayload - size;
        packet[0] = TransportPacket::kSync;
        packet[1] = static_cast<uint8_t>((at == 0 ? 0x40 : 0) | kPid >> 8U);
        packet[2] = static_cast<uint8_t>(kPid);
        packet[3] = stuffing > 0 ? 0x30 : 0x10;
        if (stuffing > 0) packet[4] = static_cast<uint8_t>(stuffing - 1);
        if (stuffing > 1) packet[5] = 0;
        std::copy_n(&bytes[at], size, &packet[4 + stuffing]);
        const bool isDamaged = number == damage.number;
        if (isDamaged) packet[damage.at] = damage.byte;
        assembler.accept(
            {TransportPacket(packet.data()), 0, isDamaged && damage.isDiscontinuous, false},
            std::nullopt, units);
    }
}

TEST(PesAssembler, GivesWholeUnitsOnly) {
    // With the sizes of the units that come of three, of 300, 300 and 20 bytes.
    const std::tuple<const char*, Damage, std::vector<size_t>> cases[] = {
        {"untouched", {}, {300, 300, 20}},
        {"the middle is missing", {1, true}, {20}},
        {"a recording begins again", {0, true}, {300, 300, 20}},
        {"a clock reference of another recording", {1, true, 3, 0x20}, {170, 170, 20}},
        {"scrambled", {1, false, 3, 0xB0}, {20}},
        {"damaged", {1, false, 1, 0x81}, {20}},
        {"adaptation field too long", {1, false, 4, 250}, {170, 170, 20}},
        {"no start code", {0, false, 6, 7}, {20}},
    };
    for (const auto& [what, damage, expected] : cases) {
        PesAssembler assembler(kPid);
        std::vector<PesUnit> units;
        carry(assembler, pes(Bytes(300, 1), 90000, 0), damage, units);
        carry(assembler, pes(Bytes(300, 2), 93600, 0), damage, units);
        carry(assembler, pes(Bytes(20, 3), 97200, 28), damage, units);
        std::vector<size_t> sizes;
        sizes.reserve(units.size());
        for (const PesUnit& unit : units) sizes.push_back(unit.data.size());
        EXPECT_EQ(sizes, expected) << what;
    }
}

TEST(PesAssembler, ReadsTimesAndEndsAtTheToldLength) {
    PesAssembler assembler(kPid);
    for (const int64_t pts : {int64_t{0}, int64_t{12345678}, (int64_t{1} << 33) - 1}) {
        std::vector<PesUnit> units;
        carry(assembler, pes(Bytes(200, 9), pts, 200 + 8), {}, units);
        ASSERT_EQ(units.size(), 1U);
        EXPECT_EQ(units[0].pts, pts);
        EXPECT_EQ(units[0].data, Bytes(200, 9));
    }
}

constexpr int64_t kTicks = kPcrRate / kSecond;

/// By how much a clock takes the last of a sender's references, 30 a second for a minute, for later
/// than it was sent. begin: the first reference; rate: of the sender's clock against ours; jitter:
/// by how much packets come late, at most.
int64_t errorAfterAMinute(int64_t begin, double rate, int64_t jitter) {
    constexpr int64_t kInterval = kSecond / 30;
    std::mt19937 random{3};
    ProgramClock clock;
    int64_t reference = begin;
    int64_t sent = kSecond;
    for (; sent < 61 * kSecond; sent += kInterval) {
        reference = (reference + static_cast<int64_t>(rate * kInterval * kTicks)) % kPcrModulus;
        const int64_t late = jitter == 0 ? 0 : static_cast<int64_t>(random()) % jitter;
        clock.observe(reference, sent + late, false);
    }
    const ClockMapping mapping = *clock.mapping();
    return mapping.time + pcrDifference(mapping.reference, reference) / kTicks - (sent - kInterval);
}

TEST(ProgramClock, FollowsTheSenderThroughJitterDriftAndTheEndOfItsNumbers) {
    struct Case {
        const char* what;
        double rate;
        int64_t jitter;
        int64_t begin;
        int64_t tolerance;
    };
    for (const Case& one :
         {Case{"exact", 1, 0, 0, 100}, Case{"jitter", 1, 40 * kMillisecond, 0, 8 * kMillisecond},
          Case{"a fast sender", 1.0001, 0, 0, 2 * kMillisecond},
          Case{"a slow sender with jitter", 0.9999, 20 * kMillisecond, 0, 8 * kMillisecond},
          Case{"the numbers begin again", 1, 0, kPcrModulus - 10 * kPcrRate, 100}})
        EXPECT_NEAR(errorAfterAMinute(one.begin, one.rate, one.jitter), 0, one.tolerance)
            << one.what;
}

TEST(ProgramClock, BeginsAnewAfterAJumpOnly) {
    using Case = std::tuple<int64_t, bool, bool>;
    for (const auto& [jump, isDiscontinuous, isFollowed] :
         {Case{3 * kSecond, false, true}, Case{-3 * kSecond, false, true},
          Case{kSecond / 2, false, false}, Case{kSecond / 2, true, true},
          Case{5 * kMillisecond, true, false}}) {
        ProgramClock clock;
        clock.observe(100 * kPcrRate, kSecond, false);
        constexpr int64_t kLater = 40 * kMillisecond;
        clock.observe((100 * kSecond + kLater + jump) * kTicks, kSecond + kLater, isDiscontinuous);
        const int64_t error = clock.mapping()->time - (kSecond + kLater);
        EXPECT_NEAR(error, isFollowed ? 0 : jump, kMillisecond) << jump;
    }
}

PesUnit unitOf(int64_t stamp, int64_t arrival) {
    PesUnit unit;
    unit.pid = kPid;
    unit.pts = unit.dts = stamp;
    unit.arrival = arrival;
    return unit;
}

TEST(StreamTiming, TakesTheClockThatMakesSenseOrTheStampsThemselves) {
    const ClockMapping before{100 * kPcrRate, 50 * kSecond};
    const ClockMapping after{0, 50 * kSecond};
    using Clock = std::optional<ClockMapping>;
    struct Case {
        const char* what = "";
        Clock atBegin;
        Clock atEnd;
        int64_t stamp = 0;
        int64_t due = 0;  ///< in milliseconds after the arrival; -1: not known
    };
    for (const Case& one : {Case{"one clock", before, before, 100 * 90000 + 63000, 700},
                            Case{"ends after the joint", before, after, 100 * 90000 + 63000, 700},
                            Case{"begins before its clock", before, after, 63000, 700},
                            Case{"no clock yet", {}, {}, 63000, -1},
                            Case{"a clock that makes no sense", before, before, 63000, 300}}) {
        PesUnit unit = unitOf(one.stamp, 50 * kSecond);
        unit.atBegin = one.atBegin;
        unit.atEnd = one.atEnd;
        const auto times = StreamTiming().timesOf(unit);
        EXPECT_EQ(times ? (times->pts - unit.arrival) / kMillisecond : -1, one.due) << one.what;
    }
}

TEST(StreamTiming, DoesWithoutAClockAfterAWhile) {
    StreamTiming timing;
    std::vector<PesUnit> units;
    size_t timed = 0;
    for (int picture = 0; picture < 20; ++picture) {
        units.push_back(unitOf(90000 + int64_t{picture} * 3600,
                               kSecond + int64_t{40} * picture * kMillisecond));
        timing.notice(units.back());
        for (auto times = timing.timesOf(units[timed]); times;
             times = ++timed < units.size() ? timing.timesOf(units[timed]) : std::nullopt)
            EXPECT_EQ(times->pts, units[timed].arrival + 300 * kMillisecond);
        EXPECT_EQ(timed, picture < 5 ? 0U : units.size());
    }
}

TEST(SniffStream, KnowsStreamsByTheirBeginnings) {
    using Case = std::pair<StreamCodec, Bytes>;
    for (const auto& [codec, bytes] : {
             Case{StreamCodec::h264, {0, 0, 0, 1, 0x09, 0xF0, 0, 0}},
             Case{StreamCodec::h264, {0, 0, 1, 0x06, 5, 0, 0, 1, 0x67, 0x64, 0}},
             Case{StreamCodec::hevc, {0, 0, 0, 1, 0x46, 0x01, 0x50, 0}},
             Case{StreamCodec::hevc, {0, 0, 1, 0x40, 0x01, 0x0C, 0x01}},
             Case{StreamCodec::mpeg2Video, {0, 0, 1, 0xB3, 0x2D, 0x02, 0x40}},
             Case{StreamCodec::mpeg2Video, {0, 0, 1, 0x00, 0x01, 0x02, 0, 0, 1, 0x09, 0x10}},
             Case{StreamCodec::aac, {0xFF, 0xF1, 0x4C, 0x80, 0x20, 0x00}},
             Case{StreamCodec::aacLatm, {0x56, 0xE1, 0x10, 0x20, 0x00, 0x00}},
             Case{StreamCodec::mpegAudio, {0xFF, 0xFD, 0xA4, 0x04, 0x00, 0x00}},
             Case{StreamCodec::ac3, {0x0B, 0x77, 0x00, 0x00, 0x1C, 0x40}},
             Case{StreamCodec::eac3, {0x0B, 0x77, 0x00, 0x00, 0x3F, 0x80}},
             Case{StreamCodec::dvbSubtitle, {0x20, 0x00, 0x0F, 0x10, 0x00, 0x01}},
             Case{StreamCodec::other, {0, 0, 1, 0x01, 0x9A, 0x00, 0x00}},
             Case{StreamCodec::other, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
             Case{StreamCodec::other, {0, 0, 1}},
             Case{StreamCodec::other, {}},
         }) {
        EXPECT_EQ(sniffStream(bytes.data(), bytes.size()), codec) << nameOf(codec);
    }
}

}  // namespace
}  // namespace quiravent::test
