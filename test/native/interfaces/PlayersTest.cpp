// What players do that no script can reach.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Recorder.h"
#include "interfaces/AdPlayer.h"
#include "interfaces/MediaPlayer.h"
#include "interfaces/MediaServices.h"

using namespace quiravent::recorder;

namespace {

class PlayersTest : public testing::Test {
  protected:
    PlayersTest() {
        m_recorder.resetAnswers();
        m_recorder.clear();
    }

    /// Prepares the status and the outputs of the next call of a function.
    void answer(const std::string& function, int32_t status, Record outputs) {
        Behaviour behaviour;
        behaviour.status = status;
        behaviour.outputs = std::move(outputs);
        m_recorder.answerOnce(function, behaviour);
    }

    std::vector<Call> calls() const { return m_recorder.callsFrom(0); }

  private:
    Recorder& m_recorder = Recorder::instance();
};

/// Calls all that both kinds of player have.
template <class Player>
void callAllOf(Player& player) {
    s_pl_media_timeref records[10]{};
    s_pl_media_timeref* times = records;
    unsigned count = 10;
    player.Start();
    player.Pause();
    player.Resume();
    player.Stop();
    player.Unload();
    player.SetVolume(100);
    player.GetBufferedTimes(&times, &count);
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

template <class Player>
std::vector<unsigned> timesOf(uint32_t handle) {
    unsigned now = 1;
    unsigned begin = 2;
    unsigned end = 3;
    Player(handle).GetTime(&now, &begin, &end);
    return {now, begin, end};
}

TEST_F(PlayersTest, TellNowBeforeBeginAndNothingWithoutAHandle) {
    const Record times{{"begin", 10.0}, {"now", 20.0}, {"end", 30.0}};
    answer("pl_media_UrlPlayer_GetTime", 4, times);
    answer("pl_media_AdPlayer_GetTime", 0, times);
    const std::vector<unsigned> told{20, 10, 30};
    const std::vector<unsigned> untouched{1, 2, 3};
    EXPECT_EQ(timesOf<MediaPlayer>(7), told);
    EXPECT_EQ(timesOf<AdPlayer>(7), told);
    EXPECT_EQ(timesOf<MediaPlayer>(0), untouched);
    EXPECT_EQ(timesOf<AdPlayer>(0), untouched);
}

TEST_F(PlayersTest, KeepTheirHandleAndHandStatusesBack) {
    MediaPlayer player(4294967295);
    answer("pl_media_UrlPlayer_Unload", 3, {});
    answer("pl_media_UrlPlayer_Start", -5, {});
    EXPECT_EQ(player.Unload(), 3);
    EXPECT_EQ(player.Start(), -5);
    for (const Call& call : calls()) EXPECT_EQ(call.args.front().number(), 4294967295.0);
    EXPECT_EQ(player.Handle(), 4294967295U);
}

TEST_F(PlayersTest, GiveTheDeviceTheLowBitsOfAVolume) {
    for (const int volume : {300, -100, 255, 256}) {
        MediaPlayer(1).SetVolume(volume);
        AdPlayer(2).SetVolume(volume);
        const std::vector<Call> made = calls();
        for (size_t index = made.size() - 2; index < made.size(); ++index)
            EXPECT_EQ(made[index].args[1].number(), volume & 255) << volume;
    }
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

TEST_F(PlayersTest, AreMadeOnlyWithSuccessAndAHandle) {
    struct Case {
        Value handle;
        int32_t status = 0;
        bool isMade = false;
    };
    const Case cases[] = {{5.0, 0, true}, {0.0, 0, false}, {nullptr, 0, false}, {5.0, 9, false}};
    for (const auto& each : cases) {
        answer("pl_media_CreateUrlPlayer", each.status, {{"handle", each.handle}});
        answer("pl_media_CreateAdPlayer", each.status, {{"handle", each.handle}});
        const std::unique_ptr<MediaPlayer> player(MediaServices::GetPlayer("url", 1, 2, 3, 4));
        auto error = static_cast<e_pl_ad_media_error>(77);
        const std::unique_ptr<AdPlayer> ad(MediaServices::GetAdPlayer("url", &error));
        EXPECT_EQ(player != nullptr, each.isMade);
        EXPECT_EQ(ad != nullptr, each.isMade);
        EXPECT_EQ(error, static_cast<uint32_t>(each.status)) << "also beside a null";
    }
}

}  // namespace
