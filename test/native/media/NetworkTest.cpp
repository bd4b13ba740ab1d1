#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "media/MediaServer.h"
#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

using desktop::MediaError;

TEST(Network, UnplayableIsToldWithinASecond) {
    struct Case {
        std::string location;
        const char* status;  ///< of the server, which is asked where there is one
        MediaError expected;
    };
    const Case cases[] = {
        {mediaFile("missing.mp4"), "", MediaError::notFound},
        {"file:///missing.mp4", "", MediaError::notFound},
        {mediaFile("random.mp4"), "", MediaError::notMedia},
        {mediaFile("empty.mp4"), "", MediaError::notMedia},
        {mediaFile("."), "", MediaError::badLocation},
        {"gopher://host/film", "", MediaError::badLocation},
        {"http://127.0.0.1:9/film.mp4", "", MediaError::unreachable},
        {"", "404 Not Found", MediaError::notFound},
        {"", "403 Forbidden", MediaError::accessDenied},
        {"", "503 Service Unavailable", MediaError::serverError},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.location + one.status);
        const MediaServer server({SIZE_MAX, false, one.status, false});
        TestPlayer player(one.location.empty() ? server.url("film.mp4") : one.location);
        ASSERT_EQ(player->start(), e_pl_status_ok);
        EXPECT_EQ(player.waitFor(e_pl_media_event_fetch_error), static_cast<int>(one.expected));
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_error), static_cast<int>(one.expected));
        const std::vector<SeenEvent> events = player.events();
        EXPECT_LT(events.back().at - events.front().at, 1000000);
        EXPECT_EQ(player->start(), e_pl_status_wrong_state);
        EXPECT_EQ(player->seek(0), e_pl_status_wrong_state);
    }
}

TEST(Network, PlaylistFromThereNamesNoFilesOfTheMachine) {
    TestPlayer local(TEST_MEDIA "/files.m3u8");
    ASSERT_TRUE(local.play());
    const MediaServer server;
    TestPlayer remote(server.url("files.m3u8"));
    ASSERT_EQ(remote->start(), e_pl_status_ok);
    EXPECT_GT(remote.waitFor(e_pl_media_event_fetch_error), 0);
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
    EXPECT_NEAR(static_cast<double>(player->bufferedRanges().back().end), 6000000, 50000);
    EXPECT_EQ(
        kindsOf(player.events()),
        (std::vector{e_pl_media_event_fetch_in_progress, e_pl_media_event_fetch_ready,
                     e_pl_media_event_playback_ready, e_pl_media_event_playback_stalled,
                     e_pl_media_event_playback_recovering, e_pl_media_event_playback_completed}));
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
    using Case = std::pair<uint64_t, const char*>;  // the bandwidth, and what fits
    for (const auto& [bandwidth, fitting] :
         {Case{8000000, "hls/v0-2.ts"}, Case{400000, "hls/v1-2.ts"}, Case{1000, "hls/v1-2.ts"}}) {
        MediaServer server;
        desktop::MediaSettings settings = testSettings();
        settings.input.bandwidth = bandwidth;
        TestPlayer player(server.url("hls/master.m3u8"), settings);
        ASSERT_TRUE(player.playToEnd(5500000));
        const std::vector<std::string> requested = server.requested();
        for (const std::string name : {"hls/v0-2.ts", "hls/v1-2.ts"})
            EXPECT_EQ(std::count(requested.begin(), requested.end(), name) > 0, name == fitting);
        EXPECT_EQ(player->tracks(desktop::TrackKind::video).size(), 1U);
    }
}

using desktop::Fault;

TEST(Faults, ActFromTheirBeginningToTheirEnd) {
    struct Case {
        Fault::Kind kind;
        e_pl_media_event expected;
        int value;
        size_t times;
    };
    // The film has some 28,000 bytes a second: half as many let it halt again and again.
    constexpr uint64_t kBytesPerSecond = 16000;
    for (const Case& one : {Case{Fault::Kind::slow, e_pl_media_event_playback_stalled, 0, 2},
                            Case{Fault::Kind::stalled, e_pl_media_event_playback_stalled, 0, 1},
                            Case{Fault::Kind::dropped, e_pl_media_event_playback_error,
                                 static_cast<int>(MediaError::connectionLost), 1},
                            Case{Fault::Kind::unavailable, e_pl_media_event_playback_error,
                                 static_cast<int>(MediaError::serverError), 1}}) {
        SCOPED_TRACE(nameOf(one.kind));
        // With a cache so small that they strike in the midst of reading.
        desktop::MediaSettings settings = testSettings();
        settings.cacheBytes = 60000;
        TestPlayer player(mediaFile("film.mp4"), settings,
                          {{one.kind, 0, 1e9, kBytesPerSecond, false}});
        ASSERT_TRUE(player.play());
        EXPECT_TRUE(player.engine().faults().setEnabled(0, true));
        EXPECT_EQ(player.waitFor(one.expected, one.times), one.value);
        if (one.expected != e_pl_media_event_playback_stalled) continue;
        // Another seek is no end of the halt, which is told once.
        ASSERT_EQ(player->seek(3000000), e_pl_status_ok);
        EXPECT_TRUE(player.engine().faults().setEnabled(0, false));
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_recovering, one.times), 0);
        ASSERT_EQ(player->seek(5500000), e_pl_status_ok);
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
        EXPECT_EQ(player.count(e_pl_media_event_playback_stalled),
                  player.count(e_pl_media_event_playback_recovering));
    }
}

}  // namespace
}  // namespace quiravent::test
