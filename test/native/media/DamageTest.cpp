#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <random>

#include "common/TemporaryFolder.h"
#include "common/countFromEnvironment.h"
#include "media/Samples.h"
#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

constexpr int kAtOnce = 30;

/// Changes between one byte and two hundred; in each second file only where it tells of its parts.
std::string damaged(std::string content, unsigned seed) {
    std::mt19937 random(seed);
    const size_t within =
        seed / 2 % 2 == 0 ? content.size() : std::min<size_t>(content.size(), 4000);
    for (auto flips = 1 + random() % 200; flips > 0; --flips) {
        char& byte = content[random() % within];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1 + random() % 255));
    }
    return content;
}

// The number of a file is all that it takes to make the very same again.
TEST(Damage, OfAnyByteEndsInAnEvent) {
    const TemporaryFolder folder;
    const std::string contents[] = {contentOf(mediaFile("short.mp4")),
                                    contentOf(mediaFile("short.ts"))};
    const int files = countFromEnvironment("QUIRAVENT_TEST_DAMAGED_FILES", 300);
    for (int begin = 0; begin < files; begin += kAtOnce) {
        std::vector<std::unique_ptr<TestPlayer>> players;
        for (int number = begin; number < std::min(begin + kAtOnce, files); ++number) {
            const std::string path = folder / ("damaged-" + std::to_string(number));
            std::ofstream(path, std::ios::binary)
                << damaged(contents[number % 2], static_cast<unsigned>(number));
            players.push_back(std::make_unique<TestPlayer>(path));
            ASSERT_EQ(players.back()->player().start(), e_pl_status_ok);
        }
        for (size_t index = 0; index < players.size(); ++index) {
            TestPlayer& player = *players[index];
            EXPECT_TRUE(player.waitUntilOver())
                << "file " << begin + static_cast<int>(index) << " at " << player->times().now
                << " of " << player->times().end << " after event " << player.events().back().event;
        }
    }
}

TEST(Damage, OfATruncatedMediumIsToldWhereItEnds) {
    TestPlayer player(mediaFile("truncated.mp4"));
    ASSERT_EQ(player->seek(2000000), e_pl_status_ok);
    ASSERT_EQ(player->start(), e_pl_status_ok);
    EXPECT_GT(player.waitFor(e_pl_media_event_playback_error), 0);
    EXPECT_GT(player.output().seen().back().number, 60);
    EXPECT_EQ(player.count(e_pl_media_event_playback_completed), 0U);
}

}  // namespace
}  // namespace quiravent::test
