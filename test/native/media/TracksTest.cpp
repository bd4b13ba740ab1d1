#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "common/TemporaryFolder.h"
#include "media/Samples.h"
#include "media/TestPlayer.h"
#include "media/audio/WavSink.h"

namespace quiravent::test {
namespace {

using desktop::TrackKind;

double toneBefore(const std::vector<int16_t>& samples, double second) {
    return frequencyOf(samples, std::min(static_cast<size_t>(second * 48000), samples.size()));
}

int loudest(const std::vector<int16_t>& samples) {
    int most = 0;
    for (const int16_t sample : samples) most = std::max<int>(most, std::abs(sample));
    return most;
}

/// A player whose sound goes into a file.
struct Recording {
    explicit Recording(const std::string& medium)
        : player(mediaFile(medium), testSettings(), {},
                 std::move(*desktop::WavSink::create(file))) {}

    std::vector<int16_t> samples() const {
        constexpr size_t kHeader = 44;
        return leftOf<int16_t>(contentOf(file), kHeader);
    }

    TemporaryFolder folder;
    std::string file = folder / "sound.wav";
    TestPlayer player;
};

TEST(Tracks, AreToldWithTheirLanguages) {
    // Of video, audio and subtitles, in this order.
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"film.mp4", {"und", "eng", "fra", "deu"}},
        {"film.mkv", {"und", "eng", "fra", "deu"}},
        {"film.ts", {"und", "eng", "fra"}},
        {"sound.m4a", {"eng"}}};
    for (const auto& [medium, expected] : cases) {
        TestPlayer player(mediaFile(medium));
        ASSERT_TRUE(player.fetch());
        std::vector<std::string> languages;
        std::vector<uint32_t> ids;
        for (const TrackKind kind : {TrackKind::video, TrackKind::audio, TrackKind::subtitle})
            for (const desktop::TrackRef& track : player->tracks(kind)) {
                languages.push_back(track->language);
                ids.push_back(track->id);
            }
        EXPECT_EQ(languages, expected) << medium;
        std::sort(ids.begin(), ids.end());
        EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
    }
}

TEST(Sound, ChangesWithTheTrackWhilePlaying) {
    Recording recording("film.mp4");
    TestPlayer& player = recording.player;
    ASSERT_TRUE(player.play());
    ASSERT_TRUE(player.output().waitForNumber(50));
    ASSERT_EQ(player->selectTrack(TrackKind::audio, player->tracks(TrackKind::audio)[1]->id),
              e_pl_status_ok);
    ASSERT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    const std::vector<int16_t> samples = recording.samples();
    const double length = static_cast<double>(samples.size()) / 48000;
    // A busy machine loses some of it; the change came at 2 of 6 seconds.
    EXPECT_LT(length, 6.15);
    ASSERT_GT(length, 5);
    EXPECT_NEAR(toneBefore(samples, 1), 440, 15);
    EXPECT_NEAR(toneBefore(samples, length - 3.2), 880, 15);
    EXPECT_NEAR(toneBefore(samples, length - 0.5), 880, 15);
}

TEST(Sound, KeepsItsPitchAtDoubleSpeedAndIsSilentBackwards) {
    for (const double wanted : {2.0, -1.0}) {
        Recording recording("film.mp4");
        double speed = wanted;
        ASSERT_EQ(recording.player->setSpeed(speed), e_pl_status_ok);
        ASSERT_TRUE(recording.player.playToEnd(wanted < 0 ? 1000000 : 4000000));
        const std::vector<int16_t> samples = recording.samples();
        EXPECT_NEAR(static_cast<double>(samples.size()) / 48000, 1, 0.15);
        if (wanted > 0) {
            EXPECT_NEAR(toneBefore(samples, 0.6), 440, 15);
        } else {
            EXPECT_EQ(loudest(samples), 0);
        }
    }
}

TEST(Sound, IsAsLoudAsTheVolume) {
    std::map<int, int> loudness;
    for (const int volume : {0, 50, 100, 200}) {
        Recording recording("short.mp4");
        ASSERT_EQ(recording.player->setVolume(static_cast<uint8_t>(volume)), e_pl_status_ok);
        ASSERT_TRUE(recording.player.playToEnd(600000));
        loudness[volume] = loudest(recording.samples());
    }
    EXPECT_EQ(loudness[0], 0);
    EXPECT_GT(loudness[100], 1000);
    EXPECT_NEAR(loudness[50] * 2, loudness[100], 50);
    EXPECT_NEAR(loudness[200], loudness[100] * 2, 50);
}

/// The smallest box with all white pixels of the lower quarter in it: those of a subtitle.
desktop::Box whiteBox(const desktop::Surface& surface) {
    desktop::Box box{surface.width(), surface.height(), 0, 0};
    for (int64_t y = surface.height() * 3 / 4; y < surface.height(); ++y) {
        const uint32_t* row = surface.row(static_cast<uint32_t>(y));
        for (int64_t x = 0; x < surface.width(); ++x) {
            if ((row[x] & 0xFF) < 200) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                   std::max(box.bottom, y + 1)};
        }
    }
    return box;
}

TEST(Subtitles, AreDrawnAtTheirTimeInTheirPlaceUntilAnUnknownIdIsSelected) {
    using Pictures = std::vector<std::pair<int, bool>>;  // numbers, and whether a subtitle is seen
    const Pictures ofBitmaps{{20, false}, {30, true}, {60, false}, {110, false}, {80, true}};
    const std::pair<std::string, Pictures> cases[] = {
        {"film.mp4", {{13, false}, {38, true}, {63, false}, {88, true}}},
        {"pgs.mkv", ofBitmaps},
        {"dvd.mkv", ofBitmaps},
        {"dvb.ts", ofBitmaps}};
    for (const auto& [name, pictures] : cases) {
        SCOPED_TRACE(name);
        TestPlayer player(mediaFile(name));
        ASSERT_EQ(player->setBounds({0, 0, 640, 360}), e_pl_status_ok);
        ASSERT_TRUE(player.playAndPause());
        const auto boxAt = [&](int number) {
            EXPECT_TRUE(player.seekTo(int64_t{number} * 40000, number));
            return whiteBox(*player.output().current());
        };
        EXPECT_EQ(boxAt(pictures.back().first).right, 0) << "not unless it is selected";
        const auto tracks = player->tracks(TrackKind::subtitle);
        ASSERT_EQ(tracks.size(), 1U);
        ASSERT_EQ(player->selectTrack(TrackKind::subtitle, tracks[0]->id), e_pl_status_ok);
        for (const auto& [number, isSeen] : pictures) {
            const desktop::Box box = boxAt(number);
            EXPECT_EQ(box.right > box.left, isSeen) << number;
            if (!isSeen || name == "film.mp4") continue;
            // The scaled picture's edges are soft.
            EXPECT_NEAR(static_cast<double>(box.left), 160, 2);
            EXPECT_NEAR(static_cast<double>(box.top), 300, 2);
            EXPECT_NEAR(static_cast<double>(box.right), 480, 2);
            EXPECT_NEAR(static_cast<double>(box.bottom), 340, 2);
        }
        player.output().forget();
        ASSERT_EQ(player->selectTrack(TrackKind::subtitle, 99), e_pl_status_ok);
        ASSERT_TRUE(player.output().waitForCount(1));
        EXPECT_EQ(whiteBox(*player.output().current()).right, 0);
    }
}

TEST(Thumbnails, ShowTheKeyPictureBeforeThePosition) {
    TestPlayer player(mediaFile("film.mp4"));
    desktop::SurfacePool pool(16U << 20);
    for (const auto& [position, number] : std::map<int64_t, int>{
             {0, 0}, {990000, 0}, {1000000, 25}, {4100000, 100}, {99000000, 125}}) {
        const auto picture = player->thumbnail(position, 160, 90, pool);
        ASSERT_TRUE(picture) << picture.reason();
        EXPECT_EQ((*picture)->width(), 160U);
        EXPECT_EQ(pictureNumber(**picture), number);
    }
    TestPlayer missing(mediaFile("missing.mp4"));
    const auto none = missing->thumbnail(0, 160, 90, pool);
    ASSERT_FALSE(none);
    EXPECT_EQ(none.reason(), "not found");
}

}  // namespace
}  // namespace quiravent::test
