// What players do that no script can reach.

#include <memory>
#include <vector>

#include "common/RecorderTest.h"
#include "interfaces/AdPlayer.h"
#include "interfaces/MediaPlayer.h"
#include "interfaces/MediaServices.h"

using namespace quiravent::recorder;

namespace {

using PlayersTest = RecorderTest;

/// Calls all that both kinds of player have.
template <class Player>
void callAllOf(Player& player) {
    s_pl_media_timeref records[10]{};
    s_pl_media_timeref* times = records;
    unsigned count = 10;
    unsigned now = 1;
    unsigned begin = 2;
    unsigned end = 3;
    player.Start();
    player.Pause();
    player.Resume();
    player.Stop();
    player.Unload();
    player.SetVolume(100);
    player.GetBufferedTimes(&times, &count);
    player.GetTime(&now, &begin, &end);
    EXPECT_EQ((std::vector<unsigned>{now, begin, end}), (std::vector<unsigned>{1, 2, 3}));
    EXPECT_EQ(count, 10U);
}

TEST_F(PlayersTest, WithoutAHandleReachNothing) {
    MediaPlayer player(0);
    AdPlayer advertisement(0);
    callAllOf(player);
    callAllOf(advertisement);
    int speed = 5;
    unsigned count = 10;
    s_pl_media_track_info records[10]{};
    s_pl_media_track_info* tracks = records;
    player.Fetch();
    player.SetBounds(1, 2, 3, 4);
    player.Seek(1000);
    player.SetPlaybackSpeed(&speed);
    player.GetTracks("audio", &tracks, &count);
    player.SelectTrack("audio", 1);
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(speed, 5);
    EXPECT_EQ(count, 10U);
}

TEST_F(PlayersTest, KeepTheirHandleAndHandStatusesBack) {
    MediaPlayer player(4294967295);
    m_recorder.answerOnce("pl_media_UrlPlayer_Unload", answering(-5));
    EXPECT_EQ(player.Unload(), -5);
    EXPECT_EQ(calls().at(0).args.front().number(), 4294967295.0);
    EXPECT_EQ(player.Handle(), 4294967295U);
}

TEST_F(PlayersTest, KnowFourKindsOfTrackByTheirWholeNames) {
    const char* const names[] = {"video", "audio", "subtitle", "unknown"};
    for (uint32_t code = 0; code < 4; ++code) {
        const auto type = static_cast<e_pl_media_component_type>(code);
        EXPECT_EQ(MediaPlayer::ComponentType2Str(type), names[code]);
        EXPECT_EQ(AdPlayer::ComponentType2Str(type), names[code]);
        EXPECT_EQ(MediaPlayer::Str2ComponentType(names[code]), type);
        EXPECT_EQ(AdPlayer::Str2ComponentType(names[code]), type);
    }
    for (const char* other : {"Video", "", "audi", "audio ", "65535"}) {
        EXPECT_EQ(MediaPlayer::Str2ComponentType(other), 65535U) << other;
        EXPECT_EQ(AdPlayer::Str2ComponentType(other), 65535U) << other;
    }
}

TEST_F(PlayersTest, TellTheErrorOfAnAdvertisementAlsoBesideANull) {
    for (const int32_t status : {0, 9}) {
        m_recorder.answerOnce("pl_media_CreateAdPlayer", answering(status, {{"handle", 5.0}}));
        auto error = static_cast<e_pl_ad_media_error>(77);
        const std::unique_ptr<AdPlayer> ad(MediaServices::GetAdPlayer("url", &error));
        EXPECT_EQ(ad != nullptr, status == 0);
        EXPECT_EQ(error, static_cast<uint32_t>(status));
    }
}

}  // namespace
