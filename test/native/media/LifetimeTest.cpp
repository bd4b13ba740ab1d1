#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <future>
#include <iostream>
#include <map>
#include <thread>
#include <vector>

#include "common/countFromEnvironment.h"
#include "common/holdings.h"
#include "common/processMemory.h"
#include "media/MediaServer.h"
#include "media/TestPlayer.h"
#include "support/Clock.h"

namespace quiravent::test {
namespace {

/// What a letter does with a player; false when it isn't done.
const std::map<char, bool (*)(TestPlayer& player)> kSteps{
    {'f', [](TestPlayer& player) { return player->fetch() == e_pl_status_ok; }},
    {'s', [](TestPlayer& player) { return player->start() == e_pl_status_ok; }},
    {'p', [](TestPlayer& player) { return player.play(); }},
    {'P', [](TestPlayer& player) { return player->pause() == e_pl_status_ok; }},
    {'4', [](TestPlayer& player) { return player->seek(4000000) == e_pl_status_ok; }},
    {'b',
     [](TestPlayer& player) {
         double backwards = -1;
         return player->setSpeed(backwards) == e_pl_status_ok;
     }},
    {'e', [](TestPlayer& player) { return player.playToEnd(6000000); }},
    {'S', [](TestPlayer& player) { return player->stop() == e_pl_status_ok; }},
    {'a', [](TestPlayer& player) { return player->abort() == e_pl_status_ok; }},
    {'h',
     [](TestPlayer& player) { return player.waitFor(e_pl_media_event_playback_stalled) == 0; }}};

TEST(Unload, IsQuietInEveryPhase) {
    const MediaServer silent({SIZE_MAX, false, "", true});
    const MediaServer stalling({50000, false, "", false});
    const std::pair<std::string, std::vector<std::string>> phases[] = {
        {mediaFile("film.mp4"), {"", "f", "s", "p", "p4", "pb", "pP", "e", "pS", "pa"}},
        {silent.url("film.mp4"), {"f", "s"}},
        {stalling.url("film.mp4"), {"sh"}},
    };
    for (const auto& [location, all] : phases)
        for (const std::string& steps : all) {
            SCOPED_TRACE(steps);
            TestPlayer player(location);
            for (const char step : steps) EXPECT_TRUE(kSteps.at(step)(player)) << step;
            const int64_t before = desktop::clock::now();
            player->unload();
            EXPECT_LT(desktop::clock::now() - before, 100000);
            EXPECT_EQ(player.output().current(), nullptr);
            const size_t events = player.events().size();
            player.engine().reaper().waitUntilIdle();
            EXPECT_EQ(player.events().size(), events);
            EXPECT_EQ(player.output().current(), nullptr);
        }
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

double bytesInUse() {
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

TEST(Players, LeaveNothingBehind) {
    constexpr int kWarmUp = 20;
    constexpr double kMostGrowth = 1000;
    const int half = (countFromEnvironment("QUIRAVENT_TEST_CYCLES", 100) + 1) / 2;
    desktop::MediaEngine engine(testSettings(), std::make_unique<desktop::NullSink>());
    const auto play = [&](int times) {
        for (int cycle = 0; cycle < times; ++cycle) {
            const auto output = std::make_shared<TestOutput>();
            desktop::Player player(engine, mediaFile("film.mp4"), TestPlayer::kBounds, output);
            ASSERT_EQ(player.start(), e_pl_status_ok);
            ASSERT_TRUE(cycle % 2 != 0 || output->waitForCount(1));
            player.unload();
            ASSERT_TRUE(engine.reaper().waitUntilIdle());
        }
    };
    play(kWarmUp);
    const auto before = holdings();
    const double atFirst = bytesInUse();
    play(half);
    const double inBetween = bytesInUse();
    play(half);
    EXPECT_EQ(holdings(), before) << "threads and descriptors";
    // What is made once, whenever that is, grows in one of the halves only.
    const double growth = std::min(inBetween - atFirst, bytesInUse() - inBetween) / half;
    std::cout << 2 * half << " players: " << growth << " bytes of memory each\n";
    EXPECT_LT(growth, kMostGrowth);
}

}  // namespace
}  // namespace quiravent::test
