#include <gtest/gtest.h>

#include <algorithm>

#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

TEST(Playing, TellsEachStepOnceInOrderOfEachFormat) {
    for (const char* const name :
         {"short.mp4", "film.mkv", "film.ts", "sound.m4a", "dash/film.mpd", "hls/master.m3u8"}) {
        SCOPED_TRACE(name);
        TestPlayer player(mediaFile(name));
        ASSERT_TRUE(player.fetch());
        ASSERT_EQ(player->seek(std::max<int64_t>(player->times().end - 300000, 0)), e_pl_status_ok);
        EXPECT_EQ(player.output().current(), nullptr);
        ASSERT_TRUE(player.playToEnd());
        const std::vector<e_pl_media_event> expected{
            e_pl_media_event_fetch_in_progress, e_pl_media_event_fetch_ready,
            e_pl_media_event_playback_ready, e_pl_media_event_playback_completed};
        EXPECT_EQ(kindsOf(player.events()), expected);
        EXPECT_EQ(player->times().now, player->times().end);
    }
}

TEST(Playing, ShowsEveryPictureAtItsTime) {
    TestPlayer player(mediaFile("film.mp4"));
    ASSERT_TRUE(player.playToEnd(3000000));
    const std::vector<SeenPicture> seen = player.output().seen();
    ASSERT_GT(seen.size(), 50U);
    EXPECT_EQ(seen.front().number, 75);
    EXPECT_EQ(seen.back().number, 149);
    for (size_t index = 1; index < seen.size(); ++index) {
        EXPECT_GT(seen[index].number, seen[index - 1].number);
        EXPECT_EQ(seen[index].position, seen[index].number * 40000);
        EXPECT_GE(seen[index].at - seen[0].at, seen[index].position - seen[0].position - 5000);
    }
}

TEST(Playing, PausesMovesItsPictureResumesStopsAndStartsAgain) {
    TestPlayer player(mediaFile("film.mp4"));
    ASSERT_TRUE(player.play());
    ASSERT_TRUE(player.output().waitForCount(5));
    ASSERT_EQ(player->pause(), e_pl_status_ok);
    EXPECT_EQ(player->pause(), e_pl_status_wrong_state);
    ASSERT_TRUE(player.seekTo(2000000, 50));
    EXPECT_EQ(player->times().now, 2000000);
    player.output().forget();
    ASSERT_EQ(player->setBounds({10, 20, 640, 360}), e_pl_status_ok);
    ASSERT_TRUE(player.output().waitForCount(1));
    EXPECT_EQ(player.output().seen().front().width, 640U);
    EXPECT_EQ(player.output().seen().front().number, 50);
    ASSERT_EQ(player->resume(), e_pl_status_ok);
    ASSERT_TRUE(player.output().waitForNumber(55));
    ASSERT_EQ(player->stop(), e_pl_status_ok);
    EXPECT_EQ(player->times().now, 0);
    player.output().forget();
    ASSERT_EQ(player->start(), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_ready, 2), 0);
    ASSERT_TRUE(player.output().waitForCount(1));
    EXPECT_EQ(player.output().seen().front().number, 0);
}

TEST(Playing, RefusesWhatMakesNoSense) {
    TestPlayer player(mediaFile("film.mp4"));
    EXPECT_EQ(player->pause(), e_pl_status_wrong_state);
    EXPECT_EQ(player->resume(), e_pl_status_wrong_state);
    EXPECT_EQ(player->stop(), e_pl_status_wrong_state);
    EXPECT_EQ(player->times().end, 0);
    EXPECT_TRUE(player->bufferedRanges().empty());
    ASSERT_TRUE(player.play());
    EXPECT_EQ(player->fetch(), e_pl_status_wrong_state);
    EXPECT_EQ(player->start(), e_pl_status_wrong_state);
    EXPECT_EQ(player->selectTrack(desktop::TrackKind::audio, 77), e_pl_status_not_found);
    player->unload();
    EXPECT_EQ(player->start(), e_pl_status_wrong_state);
    EXPECT_EQ(player.output().current(), nullptr);
}

}  // namespace
}  // namespace quiravent::test
