// What is made of the packets of a stream before it is decoded.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "live/PesAssembler.h"
#include "live/ProgramClock.h"
#include "live/StreamTiming.h"
#include "live/TransportPackets.h"
#include "live/sniffStream.h"
#include "media/Av.h"

namespace quiravent::test {
namespace {

using namespace desktop;

constexpr Pid kPid = 0x100;

TEST(PesAssembler, GivesWholeUnitsOnly) {
    using Packet = std::array<uint8_t, TransportPacket::kSize>;
    struct Case {
        const char* what;
        void (*change)(Packet& packet, StreamPacket& stream, size_t number);
        std::vector<size_t> sizes;  ///< of the units that come of three, of 300, 300 and 20 bytes
    };
    static const auto isIn = [](size_t number, size_t one) { return number == one; };
    const Case cases[] = {
        {"untouched", [](Packet&, StreamPacket&, size_t) {}, {300, 300, 20}},
        {"the middle is missing",
         [](Packet&, StreamPacket& stream, size_t number) {
             stream.isDiscontinuous = isIn(number, 1);
         },
         {20}},
        {"a recording begins again",
         [](Packet&, StreamPacket& stream, size_t number) {
             stream.isDiscontinuous = isIn(number, 0);
         },
         {300, 300, 20}},
        {"a clock reference of another recording",
         [](Packet& packet, StreamPacket& stream, size_t number) {
             stream.isDiscontinuous = isIn(number, 1);
             if (isIn(number, 1)) packet[3] = 0x20;
         },
         {170, 170, 20}},
        {"scrambled",
         [](Packet& packet, StreamPacket&, size_t number) {
             if (isIn(number, 1)) packet[3] |= 0x80;
         },
         {20}},
        {"damaged",
         [](Packet& packet, StreamPacket&, size_t number) {
             if (isIn(number, 1)) packet[1] |= 0x80;
         },
         {20}},
        {"adaptation field too long",
         [](Packet& packet, StreamPacket&, size_t number) {
             if (isIn(number, 1)) packet[4] = 250;
         },
         {170, 170, 20}},
        {"no start code",
         [](Packet& packet, StreamPacket&, size_t number) {
             if (isIn(number, 0)) packet[packet[3] & 0x20 ? 5 + packet[4] + 2 : 6] = 7;
         },
         {}},
    };
    for (const Case& one : cases) {
        PesAssembler assembler(kPid);
        TransportPackets packets(kPid);
        std::vector<PesUnit> units;
        const auto accept = [&](const StreamPacket& packet) {
            assembler.accept(packet, std::nullopt, units);
        };
        packets.carry(pes(Bytes(300, 1), 90000), accept, one.change);
        packets.carry(pes(Bytes(300, 2), 93600), accept, one.change);
        packets.carry(pes(Bytes(20, 3), 97200, 28), accept, one.change);
        std::vector<size_t> sizes(units.size());
        std::transform(units.begin(), units.end(), sizes.begin(),
                       [](const PesUnit& unit) { return unit.data.size(); });
        EXPECT_EQ(sizes, one.sizes) << one.what;
    }
}

TEST(PesAssembler, ReadsTimesAndEndsAtTheToldLength) {
    PesAssembler assembler(kPid);
    TransportPackets packets(kPid);
    std::vector<PesUnit> units;
    const int64_t last = (int64_t{1} << 33) - 1;
    for (const int64_t pts : {int64_t{0}, int64_t{12345678}, last}) {
        units.clear();
        packets.carry(
            pes(Bytes(200, 9), pts, 200 + 8),
            [&](const StreamPacket& packet) { assembler.accept(packet, std::nullopt, units); },
            [](auto&, auto&, size_t) {});
        ASSERT_EQ(units.size(), 1U);
        EXPECT_EQ(units[0].pts, pts);
        EXPECT_EQ(units[0].data, Bytes(200, 9));
    }
}

TEST(PesAssembler, SurvivesAnyBytes) {
    std::mt19937 random(7);
    PesAssembler assembler(kPid);
    std::vector<PesUnit> units;
    for (int number = 0; number < 20000; ++number) {
        std::array<uint8_t, TransportPacket::kSize> packet{};
        for (uint8_t& byte : packet) byte = static_cast<uint8_t>(random() % 4 == 0 ? random() : 1);
        assembler.accept({TransportPacket(packet.data()), number, random() % 8 == 0, false},
                         std::nullopt, units);
        for (const PesUnit& unit : units) EXPECT_FALSE(unit.data.empty());
        units.clear();
    }
}

constexpr int64_t kTicks = kPcrRate / kSecond;

/// A sender's references, 30 a second, and when they arrive.
class Sender {
  public:
    explicit Sender(ProgramClock& clock) : m_clock(clock) {}

    /// rate: of its clock against ours; jitter: by how much packets come late, at most.
    void send(int64_t duration, double rate, int64_t jitter) {
        constexpr int64_t kInterval = kSecond / 30;
        for (const int64_t end = m_sent + duration; m_sent < end; m_sent += kInterval) {
            m_reference =
                (m_reference + static_cast<int64_t>(rate * kInterval * kTicks)) % kPcrModulus;
            const int64_t late =
                jitter == 0 ? 0 : static_cast<int64_t>(m_random() % static_cast<uint64_t>(jitter));
            m_clock.observe(m_reference, m_sent + late, false);
        }
    }
    void jump(int64_t ticks) { m_reference = (m_reference + ticks) % kPcrModulus; }
    void setReference(int64_t reference) { m_reference = reference; }

    /// By how much the clock takes the last reference for later than it was sent.
    int64_t error() const {
        const ClockMapping mapping = *m_clock.mapping();
        const int64_t ahead = pcrDifference(mapping.reference, m_reference) / kTicks;
        return mapping.time + ahead - (m_sent - kSecond / 30);
    }

  private:
    ProgramClock& m_clock;
    std::mt19937 m_random{3};
    int64_t m_sent = kSecond;
    int64_t m_reference = 0;
};

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
          Case{"the numbers begin again", 1, 0, kPcrModulus - 10 * kPcrRate, 100}}) {
        ProgramClock clock;
        Sender sender(clock);
        sender.setReference(one.begin);
        sender.send(60 * kSecond, one.rate, one.jitter);
        EXPECT_LE(std::abs(sender.error()), one.tolerance) << one.what;
    }
}

TEST(ProgramClock, BeginsAnewAfterAJumpOnly) {
    struct Case {
        int64_t jump;
        bool discontinuous;
        bool isFollowed;
    };
    for (const Case& one : {Case{3 * kSecond, false, true}, Case{-3 * kSecond, false, true},
                            Case{kSecond / 2, false, false}, Case{kSecond / 2, true, true},
                            Case{5 * kMillisecond, true, false}}) {
        ProgramClock clock;
        clock.observe(100 * kPcrRate, kSecond, false);
        clock.observe((100 * kSecond + 40 * kMillisecond + one.jump) * kTicks,
                      kSecond + 40 * kMillisecond, one.discontinuous);
        const int64_t error = clock.mapping()->time - (kSecond + 40 * kMillisecond);
        EXPECT_NEAR(error, one.isFollowed ? 0 : one.jump, kMillisecond) << one.jump;
    }
}

TEST(StreamTiming, TakesTheClockThatMakesSenseOrTheStampsThemselves) {
    const ClockMapping before{100 * kPcrRate, 50 * kSecond};
    const ClockMapping after{0, 50 * kSecond};
    struct Case {
        const char* what = "";
        std::optional<ClockMapping> atBegin;
        std::optional<ClockMapping> atEnd;
        int64_t stamp = 0;
        std::optional<int64_t> due;
    };
    const int64_t dueOfStamp = 50 * kSecond + 700 * kMillisecond;
    for (const Case& one :
         {Case{"one clock", before, before, 100 * 90000 + 63000, dueOfStamp},
          Case{"ends after the joint", before, after, 100 * 90000 + 63000, dueOfStamp},
          Case{"begins before its clock", before, after, 63000, dueOfStamp},
          Case{"no clock yet", std::nullopt, std::nullopt, 63000, std::nullopt},
          Case{"a clock that makes no sense", before, before, 63000,
               50 * kSecond + 300 * kMillisecond}}) {
        StreamTiming timing;
        PesUnit unit;
        unit.pid = kPid;
        unit.pts = unit.dts = one.stamp;
        unit.arrival = 50 * kSecond;
        unit.atBegin = one.atBegin;
        unit.atEnd = one.atEnd;
        const auto times = timing.timesOf(unit);
        EXPECT_EQ(times ? std::optional(times->pts) : std::nullopt, one.due) << one.what;
    }
}

TEST(StreamTiming, DoesWithoutAClockAfterAWhile) {
    StreamTiming timing;
    std::vector<PesUnit> waiting;
    size_t mostWaiting = 0;
    for (int picture = 0; picture < 20; ++picture) {
        PesUnit unit;
        unit.pid = kPid;
        unit.pts = unit.dts = 90000 + int64_t{picture} * 3600;
        unit.arrival = kSecond + int64_t{40} * picture * kMillisecond;
        timing.notice(unit);
        waiting.push_back(unit);
        mostWaiting = std::max(mostWaiting, waiting.size());
        while (!waiting.empty()) {
            const auto times = timing.timesOf(waiting.front());
            if (!times) break;
            EXPECT_EQ(times->pts, waiting.front().arrival + 300 * kMillisecond);
            waiting.erase(waiting.begin());
        }
    }
    EXPECT_EQ(mostWaiting, 6U);
    EXPECT_TRUE(waiting.empty());
}

TEST(SniffStream, KnowsStreamsByTheirBeginnings) {
    struct Case {
        StreamCodec codec;
        Bytes bytes;
    };
    for (const Case& one : {
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
        EXPECT_EQ(sniffStream(one.bytes.data(), one.bytes.size()), one.codec) << nameOf(one.codec);
    }
}

}  // namespace
}  // namespace quiravent::test
