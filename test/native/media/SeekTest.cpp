#include <gtest/gtest.h>

#include "media/TestPlayer.h"
#include "support/Clock.h"

namespace quiravent::test {
namespace {

TEST(Seeking, LandsOnTheExactPicture) {
    struct Case {
        const char* medium;
        std::vector<std::pair<int64_t, int>> landings;  ///< positions and their pictures
    };
    const Case cases[] = {
        {"film.mp4",
         {{0, 0}, {39000, 0}, {40000, 1}, {3230000, 80}, {4999000, 124}, {99000000, 149}}},
        {"film.mkv", {{3230000, 80}}},
        // Where the sound begins before the pictures, all pictures are 21 to 23 ms later.
        {"film.ts", {{3230000, 80}, {5525000, 137}}},
        {"onegroup.mp4", {{3600000, 90}}},
        {"hls/master.m3u8", {{3230000, 80}}},
        {"dash/film.mpd", {{3230000, 80}}},
    };
    for (const Case& one : cases)
        for (const auto& [position, picture] : one.landings) {
            SCOPED_TRACE(testing::Message() << one.medium << " at " << position);
            TestPlayer player(mediaFile(one.medium));
            ASSERT_TRUE(player.playAndPause());
            ASSERT_EQ(player->seek(position), e_pl_status_ok);
            EXPECT_EQ(player->times().now, std::min<int64_t>(position, player->times().end));
            ASSERT_TRUE(player.output().waitForNumber(picture))
                << player.output().seen().back().number;
        }
}

TEST(Seeking, LandsOnTheExactPictureBeforeAllThatWasRead) {
    struct Case {
        const char* medium;
        int64_t begin;  ///< where it is played from
        int64_t position;
        int picture;
    };
    const Case cases[] = {
        // Between the place from which the key picture was looked for and that picture.
        {"film.ts", 5525000, 4825000, 120},
        // After the first key picture, and at it.
        {"dvb.ts", 3200000, 800000, 20},
        {"dvb.ts", 3200000, 0, 0},
        {"film.ts", 5525000, 0, 0},
        {"film.mkv", 3230000, 0, 0},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(testing::Message() << one.medium << " at " << one.position);
        TestPlayer player(mediaFile(one.medium));
        ASSERT_EQ(player->seek(one.begin), e_pl_status_ok);
        ASSERT_TRUE(player.playAndPause());
        EXPECT_TRUE(player.seekTo(one.position, one.picture))
            << player.output().seen().back().number;
    }
}

TEST(Seeking, GoesThereFromAnywhereInQuickSuccession) {
    TestPlayer player(mediaFile("film.mp4"));
    ASSERT_TRUE(player.playAndPause());
    for (const int number : {140, 3, 77, 149, 0, 76, 51}) {
        ASSERT_EQ(player->seek(1000000), e_pl_status_ok);
        ASSERT_TRUE(player.seekTo(int64_t{number} * 40000, number)) << number;
    }
    ASSERT_EQ(player->seek(5600000), e_pl_status_ok);
    ASSERT_EQ(player->resume(), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    ASSERT_EQ(player->seek(1000000), e_pl_status_ok);
    EXPECT_TRUE(player.output().waitForNumber(25));
}

struct SpeedCase {
    const char* medium;
    double speed;
    int64_t from;
    int64_t duration;  ///< of the way to the end, in microseconds
    size_t pictures;   ///< at least
};

class Speed : public testing::TestWithParam<SpeedCase> {};

void playThrough(const SpeedCase& one, size_t& shown) {
    TestPlayer player(mediaFile(one.medium));
    double speed = one.speed;
    ASSERT_EQ(player->setSpeed(speed), e_pl_status_ok);
    EXPECT_EQ(speed, one.speed);
    ASSERT_EQ(player->seek(one.from), e_pl_status_ok);
    const int64_t before = desktop::clock::now();
    ASSERT_EQ(player->start(), e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_completed, 1, 30), 0);
    const std::vector<SeenEvent> events = player.events();
    // A busy machine may be late, but nothing is early.
    EXPECT_GT(events.back().at - before, one.duration - 250000);
    EXPECT_LT(events.back().at - events[events.size() - 2].at, one.duration * 2);
    const std::vector<SeenPicture> seen = player.output().seen();
    for (size_t index = 1; index < seen.size(); ++index)
        ASSERT_EQ(seen[index].number > seen[index - 1].number, one.speed > 0);
    EXPECT_EQ(player->times().now, one.speed > 0 ? player->times().end : 0);
    shown = seen.size();
}

TEST_P(Speed, PassesTheMediumInItsTime) {
    const SpeedCase& one = GetParam();
    size_t shown = 0;
    // A busy machine leaves pictures out, which it isn't always.
    for (int time = 0; time < 3 && shown < one.pictures && !HasFailure(); ++time)
        playThrough(one, shown);
    EXPECT_GE(shown, one.pictures);
}

INSTANTIATE_TEST_SUITE_P(Media, Speed,
                         testing::Values(SpeedCase{"film.mp4", 2, 3000000, 1500000, 35},
                                         SpeedCase{"film.mp4", 0.5, 5000000, 2000000, 25},
                                         SpeedCase{"film.mp4", 4, 0, 1500000, 6},
                                         SpeedCase{"film.mp4", -1, 1990000, 1990000, 48},
                                         SpeedCase{"film.mkv", -2, 2990000, 1495000, 36},
                                         SpeedCase{"onegroup.mp4", -1, 3990000, 3990000, 96},
                                         SpeedCase{"film.mp4", -8, 5990000, 748750, 5}));

TEST(Speeds, ChangeWhilePlayingAndKeepThePosition) {
    TestPlayer player(mediaFile("film.mp4"));
    ASSERT_TRUE(player.play());
    ASSERT_TRUE(player.output().waitForNumber(40));
    double speed = -1;
    ASSERT_EQ(player->setSpeed(speed), e_pl_status_ok);
    ASSERT_TRUE(player.output().waitForNumber(30));
    speed = 1;
    ASSERT_EQ(player->setSpeed(speed), e_pl_status_ok);
    ASSERT_TRUE(player.output().waitForNumber(35));
    speed = -100;
    EXPECT_EQ(player->setSpeed(speed), e_pl_status_ok);
    EXPECT_EQ(speed, -desktop::Player::kMaxSpeed);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
}

}  // namespace
}  // namespace quiravent::test
