#include <gtest/gtest.h>

#include <algorithm>

#include "media/MediaServer.h"
#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

using desktop::MediaError;

struct FailureCase {
    const char* location;
    const char* status;  ///< of the server, where the location is an URL's path
    MediaError expected;
};

class Unplayable : public testing::TestWithParam<FailureCase> {};

TEST_P(Unplayable, IsToldWithinASecond) {
    const FailureCase& one = GetParam();
    Misbehaviour misbehaviour;
    misbehaviour.status = one.status;
    const MediaServer server(misbehaviour);
    const std::string location =
        *one.status != '\0' ? server.url("film.mp4") : std::string(one.location);
    TestPlayer player(location);
    ASSERT_EQ(player->start(), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_fetch_error), static_cast<int>(one.expected));
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_error), static_cast<int>(one.expected));
    const std::vector<SeenEvent> events = player.events();
    EXPECT_LT(events.back().at - events.front().at, 1000000);
    EXPECT_EQ(player->start(), e_pl_status_wrong_state);
    EXPECT_EQ(player->seek(0), e_pl_status_wrong_state);
}

INSTANTIATE_TEST_SUITE_P(
    Media, Unplayable,
    testing::Values(FailureCase{TEST_MEDIA "/missing.mp4", "", MediaError::notFound},
                    FailureCase{"file:///missing.mp4", "", MediaError::notFound},
                    FailureCase{TEST_MEDIA "/random.mp4", "", MediaError::notMedia},
                    FailureCase{TEST_MEDIA "/empty.mp4", "", MediaError::notMedia},
                    FailureCase{TEST_MEDIA, "", MediaError::badLocation},
                    FailureCase{"gopher://host/film", "", MediaError::badLocation},
                    FailureCase{"http://127.0.0.1:9/film.mp4", "", MediaError::unreachable},
                    FailureCase{"", "404 Not Found", MediaError::notFound},
                    FailureCase{"", "403 Forbidden", MediaError::accessDenied},
                    FailureCase{"", "503 Service Unavailable", MediaError::serverError}));

TEST(Network, PlaylistFromThereNamesNoFilesOfTheMachine) {
    TestPlayer local(TEST_MEDIA "/files.m3u8");
    ASSERT_TRUE(local.play());
    const MediaServer server;
    TestPlayer remote(server.url("files.m3u8"));
    ASSERT_EQ(remote->start(), e_pl_status_ok);
    EXPECT_GT(remote.waitFor(e_pl_media_event_fetch_error), 0);
}

TEST(Network, FillsTheRangesAsItReads) {
    MediaServer server;
    TestPlayer player(server.url("film.mp4"));
    ASSERT_TRUE(player.fetch());
    ASSERT_TRUE(player.playToEnd(player->times().end - 300000));
    const auto ranges = player->bufferedRanges();
    ASSERT_FALSE(ranges.empty());
    EXPECT_EQ(ranges.front().begin, 0);
    EXPECT_NEAR(static_cast<double>(ranges.back().end), 6000000, 50000);
    for (size_t index = 1; index < ranges.size(); ++index)
        EXPECT_GT(ranges[index].begin, ranges[index - 1].end);
}

TEST(Network, StallsAndRecovers) {
    MediaServer server({70000, false, "", false});
    TestPlayer player(server.url("film.mp4"));
    ASSERT_TRUE(player.play());
    ASSERT_TRUE(server.waitUntilHolding());
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_stalled), 0);
    const auto before = player->bufferedRanges();
    EXPECT_NEAR(static_cast<double>(player->times().now), static_cast<double>(before[0].end),
                400000);
    server.behave();
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_recovering), 0);
    EXPECT_GT(player->bufferedRanges()[0].end, before[0].end);
    ASSERT_EQ(player->seek(5500000), e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    const std::vector<e_pl_media_event> expected{
        e_pl_media_event_fetch_in_progress,   e_pl_media_event_fetch_ready,
        e_pl_media_event_playback_ready,      e_pl_media_event_playback_stalled,
        e_pl_media_event_playback_recovering, e_pl_media_event_playback_completed};
    EXPECT_EQ(kindsOf(player.events()), expected);
}

TEST(Network, PlaysWhatIsThereWhenTheServerDrops) {
    MediaServer server({70000, true, "", false});
    TestPlayer player(server.url("film.mp4"));
    ASSERT_TRUE(player.play());
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_error),
              static_cast<int>(MediaError::connectionLost));
    EXPECT_GT(player.output().seen().back().number, 30);
    EXPECT_EQ(player.count(e_pl_media_event_playback_completed), 0U);
}

TEST(Network, GivesUpASilentServer) {
    MediaServer server({SIZE_MAX, false, "", true});
    desktop::MediaSettings settings = testSettings();
    settings.input.timeLimit = 300000;
    TestPlayer player(server.url("film.mp4"), settings);
    ASSERT_EQ(player->fetch(), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_fetch_error), static_cast<int>(MediaError::timeout));
}

TEST(Network, ReadsOnlyTheVariantThatFits) {
    struct Case {
        uint64_t bandwidth;
        const char* read;
        const char* other;
    };
    for (const Case& one :
         {Case{8000000, "hls/v0-2.ts", "hls/v1-2.ts"}, Case{400000, "hls/v1-2.ts", "hls/v0-2.ts"},
          Case{1000, "hls/v1-2.ts", "hls/v0-2.ts"}}) {
        MediaServer server;
        desktop::MediaSettings settings = testSettings();
        settings.input.bandwidth = one.bandwidth;
        TestPlayer player(server.url("hls/master.m3u8"), settings);
        ASSERT_TRUE(player.playToEnd(5500000));
        const std::vector<std::string> requested = server.requested();
        EXPECT_GE(std::count(requested.begin(), requested.end(), one.read), 1);
        EXPECT_EQ(std::count(requested.begin(), requested.end(), one.other), 0);
        EXPECT_EQ(player->tracks(desktop::TrackKind::video).size(), 1U);
    }
}

/// With faults, and a cache so small that they strike in the midst of reading.
class FaultyPlayer : public TestPlayer {
  public:
    explicit FaultyPlayer(const desktop::Fault& fault)
        : TestPlayer(mediaFile("film.mp4"), settings(), {fault}) {}

    void setFaulty(bool isFaulty) { EXPECT_TRUE(engine().faults().setEnabled(0, isFaulty)); }

  private:
    static desktop::MediaSettings settings() {
        desktop::MediaSettings settings = testSettings();
        settings.cacheBytes = 60000;
        return settings;
    }
};

using desktop::Fault;

TEST(Faults, ActFromTheirBeginningToTheirEnd) {
    struct Case {
        Fault::Kind kind;
        e_pl_media_event expected;
        int value;
    };
    for (const Case& one : {Case{Fault::Kind::slow, e_pl_media_event_playback_stalled, 0},
                            Case{Fault::Kind::stalled, e_pl_media_event_playback_stalled, 0},
                            Case{Fault::Kind::dropped, e_pl_media_event_playback_error,
                                 static_cast<int>(MediaError::connectionLost)},
                            Case{Fault::Kind::unavailable, e_pl_media_event_playback_error,
                                 static_cast<int>(MediaError::serverError)}}) {
        SCOPED_TRACE(nameOf(one.kind));
        FaultyPlayer player({one.kind, 0, 1e9, 1000, false});
        ASSERT_TRUE(player.play());
        player.setFaulty(true);
        EXPECT_EQ(player.waitFor(one.expected), one.value);
        if (one.expected != e_pl_media_event_playback_stalled) continue;
        player.setFaulty(false);
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_recovering), 0);
        ASSERT_EQ(player->seek(5500000), e_pl_status_ok);
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    }
}

TEST(Faults, HaltAgainAndAgainWhatIsTooSlow) {
    // The film has some 28,000 bytes a second.
    FaultyPlayer player({Fault::Kind::slow, 0, 1e9, 16000, true});
    ASSERT_TRUE(player.play());
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_stalled, 2), 0);
    player.setFaulty(false);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_recovering, 2), 0);
    ASSERT_EQ(player->seek(5500000), e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    EXPECT_EQ(player.count(e_pl_media_event_playback_stalled),
              player.count(e_pl_media_event_playback_recovering));
}

TEST(Faults, AreToldAfterASeekAsWhilePlaying) {
    FaultyPlayer player({Fault::Kind::stalled, 0, 1e9, 0, false});
    ASSERT_TRUE(player.play());
    player.setFaulty(true);
    ASSERT_EQ(player->seek(4000000), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_stalled), 0);
    // Another seek is no end of the halt, which is told once.
    ASSERT_EQ(player->seek(3000000), e_pl_status_ok);
    player.setFaulty(false);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_recovering), 0);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    EXPECT_EQ(player.count(e_pl_media_event_playback_stalled), 1U);
}

}  // namespace
}  // namespace quiravent::test
