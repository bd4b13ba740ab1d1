#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <future>
#include <iostream>
#include <iterator>
#include <thread>
#include <vector>

#include "common/processMemory.h"
#include "media/Count.h"
#include "media/MediaServer.h"
#include "media/TestPlayer.h"
#include "support/Clock.h"

namespace quiravent::test {
namespace {

size_t entriesOf(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

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
        [](TestPlayer& player) {
            EXPECT_TRUE(player.play());
            player->stop();
        },
        [](TestPlayer& player) {
            EXPECT_TRUE(player.play());
            player->abort();
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
    Watched<int> events;
    player->setEventHandler([&](e_pl_media_event, uint8_t) {
        player->unload();
        events.change([](int& count) { ++count; });
    });
    ASSERT_EQ(player->start(), e_pl_status_ok);
    ASSERT_TRUE(events.waitUntil([](int count) { return count > 0; }));
    player.engine().reaper().waitUntilIdle();
    EXPECT_EQ(events.get(), 1);
}

TEST(Reaper, GivesBackWhatTheAllocatorWouldKeep) {
    constexpr size_t kBlockBytes = 16 << 10;
    constexpr size_t kBlocks = 4000;
    constexpr size_t kBytes = kBlocks * kBlockBytes;
    desktop::Reaper reaper("test-reaper");
    const size_t inUse = mallinfo2().uordblks;
    auto blocks = std::make_shared<std::vector<std::vector<char>>>();
    for (size_t i = 0; i < kBlocks; ++i) blocks->emplace_back(kBlockBytes, 'x');
    // Above the others in the heap, it keeps the allocator from giving them back by itself.
    const std::vector<char> last(kBlockBytes, 'x');
    // The allocators of the sanitizers keep what is freed for a while, to find faults.
    const bool isUsual = mallinfo2().uordblks >= inUse + kBytes;
    const size_t before = processMemory("RssAnon");
    reaper.take(std::move(blocks));
    ASSERT_TRUE(reaper.waitUntilIdle());
    const size_t most = isUsual ? before - kBytes / 1024 / 2 : before + kBytes / 1024;
    EXPECT_LE(processMemory("RssAnon"), most);
    EXPECT_EQ(last.back(), 'x');
}

TEST(Events, WaitForTheFirstHandler) {
    desktop::MediaEngine engine(testSettings(), std::make_unique<desktop::NullSink>());
    desktop::Player player(engine, "/nowhere.mp4", TestPlayer::kBounds,
                           std::make_shared<TestOutput>());
    ASSERT_EQ(player.start(), e_pl_status_ok);
    // By then there is nothing more to tell, and nobody has heard it.
    while (player.report().state != desktop::PlayerReport::State::failed) std::this_thread::yield();
    std::vector<e_pl_media_event> told;
    std::promise<void> failed;
    player.setEventHandler([&](e_pl_media_event event, uint8_t) {
        told.push_back(event);
        if (event == e_pl_media_event_playback_error) failed.set_value();
    });
    ASSERT_EQ(failed.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_EQ(told, (std::vector<e_pl_media_event>{e_pl_media_event_fetch_in_progress,
                                                   e_pl_media_event_fetch_error,
                                                   e_pl_media_event_playback_error}));
}

struct Holdings {
    size_t threads;
    size_t descriptors;
    double memory;  ///< bytes in use
};

Holdings holdings() {
    const auto heap = mallinfo2();
    return {entriesOf("/proc/self/task"), entriesOf("/proc/self/fd"),
            static_cast<double>(heap.uordblks + heap.hblkhd)};
}

/// Bytes of memory by which it grows with each cycle, by least squares.
double slopeOf(const std::vector<Holdings>& cycles) {
    const double middle = static_cast<double>(cycles.size() - 1) / 2;
    double products = 0;
    double squares = 0;
    for (size_t cycle = 0; cycle < cycles.size(); ++cycle) {
        const double from = static_cast<double>(cycle) - middle;
        products += from * cycles[cycle].memory;
        squares += from * from;
    }
    return products / squares;
}

TEST(Players, LeaveNothingBehind) {
    constexpr size_t kWarmUp = 20;
    constexpr double kMostGrowth = 1000;
    const int count = countFromEnvironment("QUIRAVENT_TEST_CYCLES", 100);
    desktop::MediaEngine engine(testSettings(), std::make_unique<desktop::NullSink>());
    std::vector<Holdings> cycles;
    for (int cycle = 0; cycle < count + static_cast<int>(kWarmUp); ++cycle) {
        const auto output = std::make_shared<TestOutput>();
        desktop::Player player(engine, mediaFile("film.mp4"), TestPlayer::kBounds, output);
        ASSERT_EQ(player.start(), e_pl_status_ok);
        if (cycle % 2 == 0) {
            ASSERT_TRUE(output->waitForCount(1));
        }
        player.unload();
        ASSERT_TRUE(engine.reaper().waitUntilIdle());
        cycles.push_back(holdings());
    }
    cycles.erase(cycles.begin(), cycles.begin() + kWarmUp);
    EXPECT_EQ(cycles.back().threads, cycles.front().threads);
    EXPECT_EQ(cycles.back().descriptors, cycles.front().descriptors);
    std::cout << count << " players: " << slopeOf(cycles) << " bytes of memory each, "
              << cycles.back().threads << " threads and " << cycles.back().descriptors
              << " descriptors at the end\n";
    EXPECT_LT(slopeOf(cycles), kMostGrowth);
}

}  // namespace
}  // namespace quiravent::test
