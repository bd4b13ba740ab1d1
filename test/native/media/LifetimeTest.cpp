#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "common/TemporaryFolder.h"
#include "media/MediaServer.h"
#include "media/TestPlayer.h"
#include "support/Clock.h"

namespace quiravent::test {
namespace {

size_t entriesOf(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

size_t threads() { return entriesOf("/proc/self/task"); }
size_t descriptors() { return entriesOf("/proc/self/fd"); }

/// Does something with a player and returns in the midst of it.
using Phase = void (*)(TestPlayer& player);

void expectQuietUnload(const std::string& location, Phase phase) {
    TestPlayer player(location);
    phase(player);
    const int64_t before = desktop::clock::now();
    player->unload();
    EXPECT_LT(desktop::clock::now() - before, 100000);
    EXPECT_EQ(player.output().current(), nullptr);
    const size_t events = player.events().size();
    player.engine().reaper().waitUntilIdle();
    EXPECT_EQ(player.events().size(), events);
    EXPECT_EQ(player.output().current(), nullptr);
}

TEST(Unload, IsQuietInEveryPhase) {
    const Phase phases[] = {
        [](TestPlayer&) {},
        [](TestPlayer& player) { player->fetch(); },
        [](TestPlayer& player) { player->start(); },
        [](TestPlayer& player) { EXPECT_TRUE(player.play()); },
        [](TestPlayer& player) {
            EXPECT_TRUE(player.play());
            player->seek(4000000);
        },
        [](TestPlayer& player) {
            EXPECT_TRUE(player.play());
            double speed = -1;
            player->setSpeed(speed);
        },
        [](TestPlayer& player) {
            EXPECT_TRUE(player.play());
            player->pause();
        },
        [](TestPlayer& player) {
            player->seek(6000000);
            player->start();
            EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
        },
    };
    for (const Phase phase : phases) expectQuietUnload(mediaFile("film.mp4"), phase);
    MediaServer silent({SIZE_MAX, false, "", true});
    for (const Phase phase : {phases[1], phases[2]})
        expectQuietUnload(silent.url("film.mp4"), phase);
    MediaServer stalling({50000, false, "", false});
    expectQuietUnload(stalling.url("film.mp4"), [](TestPlayer& player) {
        player->start();
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_stalled), 0);
    });
}

TEST(Unload, MayComeFromTheEventHandler) {
    TestPlayer player(mediaFile("film.mp4"));
    std::mutex mutex;
    std::condition_variable told;
    int events = 0;
    player->setEventHandler([&](e_pl_media_event, uint8_t) {
        player->unload();
        const std::lock_guard<std::mutex> lock(mutex);
        ++events;
        told.notify_all();
    });
    ASSERT_EQ(player->start(), e_pl_status_ok);
    {
        std::unique_lock<std::mutex> lock(mutex);
        ASSERT_TRUE(told.wait_for(lock, std::chrono::seconds(10), [&] { return events > 0; }));
    }
    player.engine().reaper().waitUntilIdle();
    EXPECT_EQ(events, 1);
}

TEST(Players, LeaveNoThreadsAndFilesBehind) {
    desktop::MediaEngine engine(testSettings(), std::make_unique<desktop::NullSink>());
    size_t threadsAtFirst = 0;
    size_t descriptorsAtFirst = 0;
    for (int cycle = 0; cycle < 100; ++cycle) {
        const auto output = std::make_shared<TestOutput>();
        desktop::Player player(engine, mediaFile("film.mp4"), TestPlayer::kBounds, output);
        ASSERT_EQ(player.start(), e_pl_status_ok);
        if (cycle % 2 == 0) {
            ASSERT_TRUE(output->waitForCount(1));
        }
        player.unload();
        engine.reaper().waitUntilIdle();
        if (cycle == 4) {
            threadsAtFirst = threads();
            descriptorsAtFirst = descriptors();
        }
    }
    EXPECT_EQ(threads(), threadsAtFirst);
    EXPECT_EQ(descriptors(), descriptorsAtFirst);
}

TEST(Damage, OfAnyByteEndsInAnEvent) {
    const TemporaryFolder folder;
    std::mt19937 random(20261121);
    for (const char* name : {"film.mp4", "film.ts", "film.mkv"}) {
        std::ifstream original(mediaFile(name), std::ios::binary);
        const std::string content((std::istreambuf_iterator<char>(original)), {});
        for (int round = 0; round < 10; ++round) {
            std::string damaged = content;
            for (int flip = 0; flip < 200; ++flip)
                damaged[random() % (round % 2 == 0 ? damaged.size() : 4000)] =
                    static_cast<char>(random());
            const std::string file = folder / name;
            std::ofstream(file, std::ios::binary) << damaged;
            TestPlayer player(file);
            double speed = 16;
            ASSERT_EQ(player->setSpeed(speed), e_pl_status_ok);
            ASSERT_EQ(player->start(), e_pl_status_ok);
            const auto isOver = [&] {
                return player.count(e_pl_media_event_playback_completed) +
                           player.count(e_pl_media_event_playback_error) >
                       0;
            };
            EXPECT_TRUE(player.waitUntil(isOver)) << name << ", round " << round;
        }
    }
}

}  // namespace
}  // namespace quiravent::test
