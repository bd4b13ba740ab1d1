#include <gtest/gtest.h>

#include <string>

#include "media/MediaServer.h"
#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

constexpr int kSegments = 6;
constexpr int kWindow = 3;

/// The last three segments up to that number, each of a second.
std::string playlistUpTo(int last) {
    const int first = last - kWindow + 1;
    std::string text =
        "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXT-X-MEDIA-SEQUENCE:" +
        std::to_string(first) + "\n";
    for (int number = first; number <= last; ++number)
        text += "#EXTINF:1.0,\nlive/" + std::to_string(number) + ".ts\n";
    return last + 1 == kSegments ? text + "#EXT-X-ENDLIST\n" : text;
}

TEST(Live, PlaysAsItComesGoesBackToWhatWasReadAndStallsWhereThePlaylistDoesntMoveOn) {
    MediaServer server;
    server.publish("live.m3u8", playlistUpTo(kWindow - 1));
    TestPlayer player(server.url("live.m3u8"));
    ASSERT_TRUE(player.play());
    ASSERT_TRUE(server.waitUntilRequested("live/2.ts"));
    const desktop::Player::Times first = player->times();
    EXPECT_EQ(first.begin, 0);
    EXPECT_LE(first.now, first.end);
    ASSERT_TRUE(player.output().waitForNumber(40));
    ASSERT_EQ(player->pause(), e_pl_status_ok);
    ASSERT_TRUE(player.seekTo(520000, 12));
    EXPECT_EQ(player->times().now, 520000);
    double speed = -1;
    EXPECT_EQ(player->setSpeed(speed), e_pl_status_not_supported);
    ASSERT_EQ(player->seek(99000000), e_pl_status_ok);
    ASSERT_EQ(player->resume(), e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_stalled), 0);
    for (int last = kWindow; last < kSegments; ++last) {
        server.publish("live.m3u8", playlistUpTo(last));
        ASSERT_TRUE(server.waitUntilRequested("live/" + std::to_string(last) + ".ts"));
    }
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_recovering), 0);
    ASSERT_EQ(player->seek(99000000), e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    EXPECT_EQ(player.output().seen().back().number, 149);
    EXPECT_NEAR(static_cast<double>(player->times().end), 6000000, 100000);
    EXPECT_EQ(player->times().begin, 0);
}

/// Fetches what is trusted, or is told that it isn't.
void expectFetch(const std::string& url, const desktop::MediaSettings& settings, bool isTrusted) {
    TestPlayer player(url, settings);
    ASSERT_EQ(player->fetch(), e_pl_status_ok);
    if (isTrusted)
        EXPECT_EQ(player.waitFor(e_pl_media_event_fetch_ready), 0);
    else
        EXPECT_EQ(player.waitFor(e_pl_media_event_fetch_error),
                  static_cast<int>(desktop::MediaError::untrusted));
}

TEST(Tls, TakesOnlyServersThatAreCertified) {
    struct Case {
        std::string server;
        std::string authorities;  ///< empty: those of the system
        bool isTrusted;
    };
    for (const Case& one :
         {Case{"server.pem", "server.pem", true}, Case{"server.pem", "", false},
          Case{"server.pem", "other.pem", false}, Case{"other.pem", "other.pem", false}}) {
        SCOPED_TRACE(one.server + ' ' + one.authorities);
        MediaServer server(one.server);
        desktop::MediaSettings settings = testSettings();
        if (!one.authorities.empty()) settings.input.authorities = mediaFile(one.authorities);
        expectFetch(server.url("film.mp4"), settings, one.isTrusted);
    }
}

TEST(Tls, HoldsForThePartsOfAPlaylistToo) {
    MediaServer untrusted(std::string("other.pem"));
    MediaServer trusted(std::string("server.pem"));
    desktop::MediaSettings settings = testSettings();
    settings.input.authorities = mediaFile("server.pem");
    for (const MediaServer* parts : {&untrusted, &trusted}) {
        trusted.publish("list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1.0,\n" +
                                         parts->url("live/0.ts") + "\n#EXT-X-ENDLIST\n");
        expectFetch(trusted.url("list.m3u8"), settings, parts == &trusted);
        EXPECT_EQ(parts->requested().empty(), parts == &untrusted);
    }
}

}  // namespace
}  // namespace quiravent::test
