// The parts of playing whose cases are too many, or too rare, to be met with whole players.

#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <utility>

#include "media/FaultList.h"
#include "media/FetchProgress.h"
#include "media/Language.h"
#include "media/MediaClock.h"
#include "media/MediaErrors.h"
#include "media/PacketCache.h"
#include "media/Samples.h"
#include "media/StallPolicy.h"
#include "media/SubtitleTrack.h"
#include "media/Timeline.h"
#include "media/Watchdog.h"
#include "support/Text.h"

namespace quiravent::desktop {
namespace {

constexpr int64_t kFrame = 40 * kMillisecond;
constexpr int kGroup = 25;

PacketRef packetOf(uint32_t track, int64_t pts, int64_t duration, int bytes = 0) {
    auto packet = std::make_shared<Packet>();
    packet->data = makePacket();
    EXPECT_TRUE(bytes == 0 || av_new_packet(packet->data.get(), bytes) == 0);
    packet->track = track;
    packet->pts = packet->dts = pts;
    packet->duration = duration;
    packet->sparse = track == 2;
    packet->key = bytes > 0 && pts % (kGroup * kFrame) == 0;
    return packet;
}

/// A cache with a video track (id 0) of 25 pictures a second, each of a thousand bytes, with a key
/// picture each second.
class PacketCacheTest : public testing::Test {
  protected:
    explicit PacketCacheTest(size_t bytes = 1U << 20)
        : m_track(std::make_shared<Track>()), m_cache({bytes, 600 * kSecond}, m_wakeup) {}

    void start(int64_t target) {
        m_cache.start({++m_serial, target, PlayMode::all, 1, {m_track, nullptr, nullptr}});
        PacketSource::Read read{};
        ASSERT_TRUE(m_cache.tryNext(TrackKind::video, m_serial - 1, read));
        ASSERT_EQ(read.state, PacketSource::Read::State::newSegment);
    }

    /// Does what the cache asks for, for so many seconds of the medium.
    void read(int seconds) { readPackets(seconds * kGroup); }

    void readPackets(int packets) {
        while (packets > 0) {
            const PacketCache::Task task = m_cache.awaitTask();
            if (task.kind == PacketCache::Task::Kind::seek) {
                m_next = static_cast<int>(task.time / kSecond) * kGroup;
                ++m_seeks;
                m_cache.sought(task.generation);
                continue;
            }
            ASSERT_EQ(task.kind, PacketCache::Task::Kind::read);
            m_cache.append(packetOf(0, m_next++ * kFrame, kFrame, 1000), task.generation);
            --packets;
        }
    }

    /// Position of the next packet in seconds, or -1.
    double take() {
        PacketSource::Read read{};
        if (!m_cache.tryNext(TrackKind::video, m_serial, read) || !read.packet) return -1;
        return static_cast<double>(read.packet->pts) / kSecond;
    }

    std::vector<std::pair<int64_t, int64_t>> seconds() const {
        std::vector<std::pair<int64_t, int64_t>> ranges;
        for (const TimeRange& range : m_cache.ranges())
            ranges.emplace_back(range.begin / kSecond, range.end / kSecond);
        return ranges;
    }

    using Ranges = std::vector<std::pair<int64_t, int64_t>>;
    TrackRef m_track;
    Wakeup m_wakeup;
    PacketCache m_cache;
    uint32_t m_serial = 0;
    int m_next = 0;
    int m_seeks = 0;
};

TEST_F(PacketCacheTest, KeepsRangesJoinsThemAndReadsNothingTwice) {
    start(0);
    read(4);
    EXPECT_EQ(seconds(), (Ranges{{0, 4}}));
    start(10 * kSecond + kFrame);
    read(5);
    EXPECT_EQ(seconds(), (Ranges{{0, 4}, {10, 15}}));
    EXPECT_EQ(m_seeks, 1);
    start(2 * kSecond + kFrame);
    EXPECT_EQ(take(), 2);
    // From 4 on up to the first picture that is known already, then on from 15.
    readPackets(6 * kGroup);
    EXPECT_EQ(seconds(), (Ranges{{0, 15}}));
    readPackets(1);
    EXPECT_EQ(m_seeks, 2);
    read(3);
    EXPECT_EQ(seconds(), (Ranges{{0, 18}}));
    EXPECT_EQ(m_seeks, 3);
    for (int number = 2 * kGroup + 1; number < 18 * kGroup; ++number)
        ASSERT_DOUBLE_EQ(take(), number / 25.0);
    EXPECT_EQ(take(), -1);
    for (const int64_t target : {15 * kSecond, int64_t{0}, 3 * kSecond + 7 * kFrame}) {
        start(target);
        EXPECT_EQ(take(), target / kSecond);
    }
    EXPECT_EQ(m_seeks, 3);
}

TEST_F(PacketCacheTest, KeepsWhatIsBeforeAKeyPictureThatIsReadAgain) {
    start(0);
    readPackets(4 * kGroup + 1);
    start(4 * kSecond + 5 * kFrame);
    read(1);
    EXPECT_EQ(seconds(), (Ranges{{0, 5}}));
    start(kSecond);
    EXPECT_EQ(take(), 1);
    EXPECT_EQ(m_seeks, 1);
}

/// A range of a packet each second of its tracks, each from one second up to another.
PacketRange rangeOf(const std::vector<std::pair<int64_t, int64_t>>& tracks) {
    PacketRange range(tracks[0].first * kSecond);
    for (uint32_t track = 0; track < tracks.size(); ++track)
        for (int64_t second = tracks[track].first; second < tracks[track].second; ++second)
            range.append(packetOf(track, second * kSecond, kSecond));
    return range;
}

TEST(PacketRange, IsContinuedByOneThatItMeetsWithAllItsTracks) {
    // Where the sound of the next range begins and ends, whose pictures begin at 8.
    using Case = std::tuple<int64_t, int64_t, bool, bool>;
    for (const auto& [soundFrom, soundTo, hasSubtitle, isContinued] :
         {Case{7, 14, false, true}, Case{8, 14, false, true}, Case{9, 14, false, false},
          Case{4, 6, false, false}, Case{8, 14, true, true}, Case{0, 0, false, false}}) {
        PacketRange range = rangeOf({{0, 10}, {0, 9}, {3, 4}});
        PacketRange next = rangeOf({{8, 16}, {soundFrom, soundTo}, {12, hasSubtitle ? 13 : 12}});
        EXPECT_EQ(range.resumePoint(), 9 * kSecond);
        ASSERT_EQ(range.runsInto(next), isContinued) << soundFrom;
        if (!isContinued) continue;
        range.absorb(next);
        EXPECT_EQ(range.nextNumber(0), 16U);
        EXPECT_EQ(range.nextNumber(1), 14U);
        EXPECT_EQ(range.nextNumber(2), hasSubtitle ? 2U : 1U);
        for (uint64_t number = 0; number < 16; ++number)
            EXPECT_EQ(range.packet(0, number)->pts, static_cast<int64_t>(number) * kSecond);
        EXPECT_EQ(range.resumePoint(), 14 * kSecond);
    }
}

TEST_F(PacketCacheTest, EndsOnceAndIgnoresWhatComesTooLate) {
    start(0);
    read(1);
    const uint32_t generation = m_cache.awaitTask().generation;
    start(50 * kSecond);
    m_cache.append(packetOf(0, kSecond, kFrame, 1000), generation);
    m_cache.finish(MediaError::connectionLost, generation);
    EXPECT_FALSE(m_cache.status().finished);
    EXPECT_EQ(seconds(), (Ranges{{0, 1}}));
    read(1);
    m_cache.finish(MediaError::none, m_cache.awaitTask().generation);
    while (take() >= 0) {
    }
    PacketSource::Read read{};
    EXPECT_FALSE(m_cache.tryNext(TrackKind::video, m_serial, read));
    EXPECT_TRUE(m_cache.status().finished);
}

struct SmallPacketCacheTest : PacketCacheTest {
    SmallPacketCacheTest() : PacketCacheTest(400000) {}
};

TEST_F(SmallPacketCacheTest, StaysWithinItsBudget) {
    start(0);
    while (!m_cache.status().full) readPackets(1);
    const Ranges ahead = seconds();
    ASSERT_EQ(ahead.size(), 1U);
    EXPECT_EQ(ahead[0].first, 0);
    const int64_t room = ahead[0].second;
    EXPECT_GT(room, 5);
    for (int packet = 0; packet < 40 * kGroup; ++packet) {
        EXPECT_GE(take(), 0);
        if (!m_cache.status().full) readPackets(1);
    }
    const Ranges later = seconds();
    ASSERT_EQ(later.size(), 1U);
    EXPECT_GT(later[0].first, 20);
    EXPECT_LT(later[0].first, 40);
    EXPECT_LT(later[0].second - later[0].first, room * 3 / 2 + 3);
}

TEST(Timeline, MendsTimesThatMakeNoSense) {
    constexpr int64_t kWild = int64_t{26} * 3600 * 25;
    constexpr int64_t kMost = INT64_MAX;
    struct Case {
        bool mayJump;
        int64_t seconds;
        std::vector<std::array<int64_t, 3>> packets;  ///< pts and dts as stated, the right pts
    };
    // Times count pictures, but for none and for the last ones that there are.
    const auto inTime = [](int64_t time) {
        return time == kNoTime || time >= kMost - 1 ? time : time * kFrame;
    };
    const Case cases[] = {
        {false, 1, {{0, 0, 0}, {kNoTime, kNoTime, 1}, {kNoTime, 2, 2}, {3, kNoTime, 3}}},
        {false, 1, {{0, 0, 0}, {kWild, kWild, 1}, {2, 2, 2}, {kWild, 3, 3}}},
        // A gap is one, within the medium.
        {false, 60, {{0, 0, 0}, {750, 750, 750}}},
        {true, 60, {{0, 0, 0}, {750, 750, 1}, {2, 2, 2}}},
        // Times that begin anew, and reordered pictures.
        {true, 0, {{0, 0, 0}, {kWild + 3, kWild, 4}, {kWild + 1, kWild + 1, 2}}},
        {true, 0, {{kMost, kMost - 1, 0}, {1, 1, 1}}},
    };
    for (const Case& one : cases) {
        Timeline timeline(one.seconds * kSecond, one.mayJump);
        for (const auto& [statedPts, statedDts, expected] : one.packets) {
            int64_t pts = inTime(statedPts);
            int64_t dts = inTime(statedDts);
            int64_t duration = kFrame;
            timeline.place(pts, dts, duration);
            EXPECT_EQ(duration, kFrame);
            EXPECT_EQ(pts, expected * kFrame);
            EXPECT_LE(dts, pts);
        }
    }
    Timeline timeline(60 * kSecond, true);
    timeline.restart(30 * kSecond);
    int64_t pts = 20 * kSecond;  // where the seek landed
    int64_t dts = pts;
    int64_t duration = kWild * kFrame;
    timeline.place(pts, dts, duration);
    EXPECT_EQ(pts, 20 * kSecond);
    EXPECT_LT(duration, 5 * kSecond);
}

TEST(Watchdog, CountsOnlyTheTimeOfWaiting) {
    using Case = std::tuple<bool, uint64_t, int64_t, bool>;
    Watchdog watchdog(10);
    for (const auto& [isWaiting, progress, now, isOverdue] :
         {Case{false, 1, 100, false}, Case{true, 1, 500, false}, Case{true, 1, 509, false},
          Case{true, 1, 510, true}, Case{true, 2, 511, false}, Case{true, 2, 521, true},
          Case{false, 2, 600, false}, Case{true, 2, 700, false}})
        EXPECT_EQ(watchdog.isOverdue(isWaiting, progress, now), isOverdue) << now;
}

TEST(MediaClock, GoesAtItsSpeedFromWhereItStands) {
    MediaClock clock;
    clock.setPosition(5000);
    EXPECT_EQ(clock.positionAt(123), 5000);
    EXPECT_EQ(clock.timeOf(6000), INT64_MAX);
    clock.start(1000);
    EXPECT_EQ(clock.positionAt(1500), 5500);
    clock.setSpeed(2, 1500);
    EXPECT_EQ(clock.positionAt(2000), 6500);
    EXPECT_EQ(clock.timeOf(6500), 2000);
    clock.setSpeed(-0.5, 2000);
    EXPECT_EQ(clock.positionAt(4000), 5500);
    EXPECT_EQ(clock.timeOf(5500), 4000);
    clock.stop(4000);
    EXPECT_EQ(clock.positionAt(9000), 5500);
}

TEST(StallPolicy, HaltsOnlyForWantOfDataAndGoesOnWithASecondOfThem) {
    using Change = StallPolicy::Change;
    const std::pair<StallPolicy::Observation, Change> cases[] = {
        {{100000, 0, false, true, true}, Change::none},  // just begun
        {{400000, 500000, false, false, true}, Change::none},
        {{500000, 0, true, true, true}, Change::none},    // at the end
        {{550000, 0, false, true, false}, Change::none},  // nothing has come yet
        {{600000, 0, false, true, true}, Change::stalled},
        {{700000, 900000, false, false, true}, Change::none},
        {{800000, 1000000, false, false, true}, Change::recovering},
        {{900000, 0, false, true, true}, Change::stalled},
        {{950000, 10, true, true, true}, Change::recovering},
        {{1000000, 0, false, true, false}, Change::stalled},
    };
    StallPolicy policy;
    policy.restart(0);
    for (const auto& [seen, change] : cases) EXPECT_EQ(policy.observe(seen), change) << seen.now;
    policy.restart(1000000);
    EXPECT_TRUE(policy.isStalled()) << "until enough is there for the other position, too";
}

TEST(FetchProgress, TellsRisingPercentagesAtMostTenTimesASecond) {
    constexpr uint8_t kNothing = 255;
    using Case = std::tuple<int64_t, int64_t, uint8_t>;
    FetchProgress progress;
    for (const auto& [have, now, percentage] :
         {Case{0, 0, 0}, Case{10, 1000, kNothing}, Case{10, 100000, 10}, Case{5, 300000, kNothing},
          Case{10, 400000, kNothing}, Case{99, 500000, 99}, Case{250, 500001, 100},
          Case{250, 900000, kNothing}})
        EXPECT_EQ(progress.observe(have, 100, now).value_or(kNothing), percentage) << now;
}

TEST(Faults, AreReadFromAText) {
    const auto faults = parseFaults("slow 2-10.5 50000; stalled 12-20 off;unavailable 0-1;");
    ASSERT_TRUE(faults);
    ASSERT_EQ(faults->size(), 3U);
    FaultList list(*faults);
    EXPECT_EQ(list.at(500000)->kind, Fault::Kind::unavailable);
    EXPECT_EQ(list.at(10400000)->bytesPerSecond, 50000U);
    EXPECT_FALSE(list.at(10500000));
    EXPECT_FALSE(list.at(13 * kSecond));
    EXPECT_TRUE(list.setEnabled(1, true));
    EXPECT_EQ(list.at(13 * kSecond)->kind, Fault::Kind::stalled);
    for (const char* wrong : {"slow 2-10", "slow 2-10 0", "broken 1-2", "stalled 5-5",
                              "stalled -1-5", "stalled 1-2 on", "stalled 1", "dropped 1-2 off x"})
        EXPECT_FALSE(parseFaults(wrong)) << wrong;
    EXPECT_EQ(parseFaults("stalled 9-1").reason(), "not a fault of reading: 'stalled 9-1'");
}

TEST(MediaErrors, AreDocumented) {
    const std::string page = test::contentOf(PROJECT_ROOT "/docs/media.md");
    for (size_t value = 1; value < kMediaErrors.size(); ++value) {
        const MediaErrorText& error = kMediaErrors[value];
        const std::string number = std::to_string(value) + (value < 10 ? " " : "");
        const std::string http = *error.http == '\0' ? "" : joined(" (", error.http, ")");
        const std::string row = joined("| ", number, "    | ", error.text, http, " ");
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
}

TEST(Languages, AreOfThreeLetters) {
    const std::pair<const char*, const char*> cases[] = {
        {"de", "deu"}, {"ger", "deu"},    {"DEU", "deu"}, {"en-GB", "eng"},
        {"zu", "zul"}, {"aa", "aar"},     {"chi", "zho"}, {"xx", "und"},
        {"", "und"},   {"german", "und"}, {"qaa", "qaa"}, {"wel", "cym"}};
    for (const auto& [tag, code] : cases) EXPECT_EQ(languageCode(tag), code) << tag;
    EXPECT_EQ(languageCode(nullptr), "und");
}

TEST(Subtitles, LoseTheirMarkup) {
    using Lines = std::vector<std::string>;
    const std::pair<const char*, Lines> cases[] = {
        {"0,0,Default,,0,0,0,,Plain, with a comma", {"Plain, with a comma"}},
        {"0,0,Default,,0,0,0,,{\\i1}One{\\i0}\\N two \\hx", {"One", "two  x"}},
        {"0,0,Default,,0,0,0,,{unclosed", {"{unclosed"}},
        {"0,0,Default,,0,0,0,,\\N\\N", {}},
        {"too,few,fields", {}},
    };
    for (const auto& [event, lines] : cases) EXPECT_EQ(subtitleLines(event), lines) << event;
}

}  // namespace
}  // namespace quiravent::desktop
