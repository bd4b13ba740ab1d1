// Players as an application has them: through the porting layer's functions, on the screen.

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>

#include "common/PngFile.h"
#include "common/Watched.h"
#include "common/filmNumber.h"
#include "device/Station.h"
#include "porting/pl_functions.h"

namespace {

const std::string kFilm = TEST_MEDIA "/film.mp4";

/// The last event of each handle. The C interface gives its callbacks nothing of the caller's.
auto& told() {
    static quiravent::test::Watched<std::map<uint32_t, e_pl_media_event>> events;
    return events;
}

void remember(uint32_t player, e_pl_media_event event, unsigned char) {
    told().change([=](auto& last) { last[player] = event; });
}

bool waitForLast(uint32_t player, e_pl_media_event event) {
    return told().waitUntil(
        [=](const auto& last) {
            const auto found = last.find(player);
            return found != last.end() && found->second == event;
        },
        std::chrono::seconds(15));
}

uint32_t urlPlayer(const std::string& url, const s_pl_media_bounds& bounds) {
    uint32_t player = 0;
    EXPECT_EQ(pl_media_CreateUrlPlayer(url.c_str(), &bounds, &player), e_pl_status_ok);
    EXPECT_EQ(pl_media_SetCallback_Event(player, remember), e_pl_status_ok);
    return player;
}

void playLastPart(uint32_t player) {
    EXPECT_EQ(pl_media_UrlPlayer_Seek(player, 5800), e_pl_status_ok);
    EXPECT_EQ(pl_media_UrlPlayer_Start(player), e_pl_status_ok);
    EXPECT_TRUE(waitForLast(player, e_pl_media_event_playback_completed));
}

/// The number that the picture carries in that part of the screen; see make-media.sh.
int pictureNumber(const PngFile& screen, size_t x, size_t y, uint32_t width) {
    return filmNumber(width, 9 * width / 16, [&](uint32_t left, uint32_t down) {
        return screen.rgba(x + left, y + down) >> 24;
    });
}

TEST(MediaDevice, ShowsVideoBelowTheGraphicsInTheOrderOfCreationUntilItsPlayerGoes) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "end.png");
    station.expectQuiet([] {
        const uint32_t below = urlPlayer(kFilm, {0, 0, 1280, 720});
        const uint32_t above = urlPlayer("file://" + kFilm, {640, 180, 320, 180});
        const uint32_t gone = urlPlayer(kFilm, {0, 0, 1280, 720});
        for (const uint32_t player : {above, below, gone}) playLastPart(player);
        EXPECT_EQ(pl_media_UrlPlayer_Unload(gone), e_pl_status_ok);
        uint32_t canvas = 0;
        EXPECT_EQ(pl_gfx_GetTargetCanvas(&canvas), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_SetColor(canvas, {255, 0, 0, 255}), e_pl_status_ok);
        const s_pl_gfx_rect bar{0, 600, 1280, 120};
        EXPECT_EQ(pl_gfx_Canvas_FillRect(canvas, &bar), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_Flush(canvas, nullptr), e_pl_status_ok);
    });
    const PngFile screen(station / "end.png");
    EXPECT_EQ(pictureNumber(screen, 0, 0, 1280), 149);
    EXPECT_EQ(pictureNumber(screen, 640, 180, 320), 149);
    EXPECT_EQ(screen.rgba(100, 650), 0xff0000ffU);
    EXPECT_LT(screen.rgba(100, 500) >> 24, 128U);
}

TEST(MediaDevice, FillsTheCallersRecords) {
    Station().expectQuiet([] {
        const uint32_t player = urlPlayer(kFilm, {0, 0, 320, 180});
        s_pl_media_track_info records[3]{};
        s_pl_media_track_info* tracks = records;
        const auto soundTracks = [&](uint32_t room) {
            const auto kind = e_pl_media_component_type_audio;
            EXPECT_EQ(pl_media_UrlPlayer_GetTracks(player, kind, &tracks, &room), e_pl_status_ok);
            return room;
        };
        EXPECT_EQ(soundTracks(3), 0U);
        EXPECT_EQ(pl_media_UrlPlayer_Fetch(player), e_pl_status_ok);
        EXPECT_TRUE(waitForLast(player, e_pl_media_event_fetch_ready));
        EXPECT_EQ(soundTracks(1), 1U);
        EXPECT_STREQ(records[0].language, "eng");
        EXPECT_STREQ(records[1].language, "");
        s_pl_media_timeref ranges[2]{};
        s_pl_media_timeref* times = ranges;
        uint32_t count = 2;
        EXPECT_EQ(pl_media_UrlPlayer_GetBufferedTimes(player, &times, &count), e_pl_status_ok);
        EXPECT_EQ(count, 1U);
        EXPECT_EQ(ranges[0].end, 6000U);
        s_pl_media_timeref time{};
        EXPECT_EQ(pl_media_UrlPlayer_Seek(player, 1234), e_pl_status_ok);
        EXPECT_EQ(pl_media_UrlPlayer_GetTime(player, &time), e_pl_status_ok);
        EXPECT_EQ(time.now, 1234U);
        int32_t speed = 1000;
        EXPECT_EQ(pl_media_UrlPlayer_SetPlaybackSpeed(player, &speed), e_pl_status_ok);
        EXPECT_EQ(speed, 32);
        speed = 0;
        EXPECT_EQ(pl_media_UrlPlayer_SetPlaybackSpeed(player, &speed),
                  e_pl_status_invalid_argument);
        EXPECT_EQ(speed, 32);
        uint32_t canvas = 0;
        uint32_t width = 0;
        uint32_t height = 0;
        EXPECT_EQ(pl_media_UrlPlayer_GetThumbnail(player, 1000, 160, 90, &canvas), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_GetSize(canvas, &width, &height), e_pl_status_ok);
        EXPECT_EQ(std::pair(width, height), std::pair(160U, 90U));
        EXPECT_EQ(pl_media_UrlPlayer_Unload(player), e_pl_status_ok);
        EXPECT_EQ(pl_media_UrlPlayer_Unload(player), e_pl_status_invalid_handle);
    });
}

TEST(MediaDevice, TellsAdvertisementsFromOtherPlayers) {
    Station().expectQuiet([] {
        uint32_t advertisement = 0;
        EXPECT_EQ(pl_media_CreateAdPlayer(kFilm.c_str(), &advertisement), e_pl_ad_media_error_none);
        EXPECT_EQ(pl_media_UrlPlayer_Start(advertisement), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_media_AdPlayer_Unload(advertisement), e_pl_status_ok);
        EXPECT_EQ(pl_media_AdPlayer_Stop(advertisement), e_pl_status_invalid_handle);
    });
}

}  // namespace
