// Live players over a multiplex that is received in this process.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "common/RecordingOutput.h"
#include "common/holdings.h"
#include "lineup/streams/FrameMark.h"
#include "live/Broadcast.h"
#include "live/LivePlayer.h"
#include "media/audio/NullSink.h"

namespace quiravent::test {
namespace {

using namespace desktop;

constexpr LiveStreams kService1{kVideo1, kAudio1, kVideo1, kNullPid};
constexpr LiveStreams kService2{kVideo2, kAudio2, kVideo2, kNullPid};

using Mark = lineup::FrameMark;

std::optional<Mark> markOf(const VideoPicture& picture) {
    const Surface& surface = *picture.surface;
    return lineup::readMark(surface.width(), surface.height(), [&](uint32_t x, uint32_t y) {
        return static_cast<int>(surface.row(y)[x] >> 8 & 0xFF);
    });
}

class LivePlayerTest : public testing::Test {
  protected:
    /// A player that is started at the beginning of its life, and closed at its end.
    class Playing {
      public:
        Playing(LivePlayerTest& test, const LiveStreams& streams)
            : m_player(LivePlayer::make(test.m_engine, test.m_broadcast.multiplex(), streams,
                                        {0, 0, 320, 180}, output)) {
            m_player->start();
        }
        ~Playing() { m_player->close(); }
        Playing(const Playing&) = delete;
        Playing& operator=(const Playing&) = delete;
        LivePlayer* operator->() { return m_player.get(); }

        const std::shared_ptr<RecordingOutput<Mark>> output =
            std::make_shared<RecordingOutput<Mark>>(markOf);

      private:
        std::shared_ptr<LivePlayer> m_player;
    };

    /// Has received all that comes in three seconds.
    void receive() {
        m_broadcast.publishTables();
        m_broadcast.receivePast(3 * kSecond);
    }

    Broadcast m_broadcast;
    MediaEngine m_engine{MediaSettings{}, std::make_unique<NullSink>()};
};

TEST_F(LivePlayerTest, ShowsTheLastKeyPictureAtOnceAndThenGoesOn) {
    receive();
    for (const auto& [streams, service] : {std::pair{kService1, 1}, std::pair{kService2, 2}}) {
        Playing player(*this, streams);
        // Nothing more is received yet.
        ASSERT_TRUE(player.output->waitForCount(1));
        EXPECT_EQ(player.output->seen()[0].service, service);
    }
    m_broadcast.play();
    Playing player(*this, kService1);
    ASSERT_TRUE(player.output->waitForCount(20));
    m_broadcast.stop();
}

TEST_F(LivePlayerTest, LosesNoPictureWhereTheRecordingBeginsAgain) {
    m_broadcast.publishTables();
    m_broadcast.play();
    Playing first(*this, kService1);
    Playing second(*this, kService2);
    // Where the machine is busy a picture may come too late to be shown, but not at each joint.
    const int pictures = Broadcast::picturesOfLoop();
    const std::vector<int> joint{pictures - 2, pictures - 1, 0, 1};
    const auto isNumber = [](const Mark& mark, int number) { return mark.number == number; };
    const auto hasJoint = [&](const std::vector<Mark>& marks) {
        return std::search(marks.begin(), marks.end(), joint.begin(), joint.end(), isNumber) !=
               marks.end();
    };
    EXPECT_TRUE(first.output->waitUntil(hasJoint));
    EXPECT_TRUE(second.output->waitUntil(hasJoint));
    m_broadcast.stop();
}

TEST_F(LivePlayerTest, PlaysWhatNoTableTellsOfAndWithoutAClock) {
    struct Case {
        const char* what = "";
        LiveStreams streams;
        int service = 0;
    };
    const Case cases[] = {{"H.264", kService1, 1},
                          {"MPEG-2", kService2, 2},
                          {"no clock", {kVideo1, kAudio1, kNullPid, kNullPid}, 1},
                          {"a clock that isn't there", {kVideo2, kAudio2, 0x1234, kNullPid}, 2},
                          {"the other service's clock", {kVideo1, kAudio1, kVideo2, kNullPid}, 1},
                          {"no sound", {kVideo1, kNullPid, kVideo1, kNullPid}, 1},
                          {"a sound that isn't there", {kVideo2, 0x1234, kVideo2, kNullPid}, 2}};
    std::vector<std::unique_ptr<Playing>> players;
    for (const Case& one : cases) {
        players.push_back(std::make_unique<Playing>(*this, one.streams));
    }
    m_broadcast.play();
    for (size_t index = 0; index < players.size(); ++index) {
        RecordingOutput<Mark>& output = *players[index]->output;
        ASSERT_TRUE(output.waitForCount(30)) << cases[index].what;
        EXPECT_EQ(output.seen()[0].service, cases[index].service) << cases[index].what;
    }
    m_broadcast.stop();
}

TEST_F(LivePlayerTest, ShowsNothingWithoutAPictureStream) {
    receive();
    const Playing sound(*this, {0x1234, kAudio1, kVideo1, kNullPid});
    const Playing swapped(*this, {kAudio1, kVideo1, kVideo1, kNullPid});
    const Playing control(*this, kService1);
    ASSERT_TRUE(control.output->waitForCount(1));
    EXPECT_EQ(sound.output->seen().size(), 0U);
    EXPECT_EQ(swapped.output->seen().size(), 0U);
}

TEST_F(LivePlayerTest, FollowsSelectionsAndSignal) {
    receive();
    Playing player(*this, kService1);
    ASSERT_TRUE(player.output->waitForCount(1));
    player->stop();
    ASSERT_TRUE(player.output->waitUntilHidden());
    player->start();
    ASSERT_TRUE(player.output->waitForCount(2));

    m_broadcast.setSignal(false);
    ASSERT_TRUE(player.output->waitUntilHidden());
    m_broadcast.setSignal(true);
    player.output->forget();
    m_broadcast.receivePast(3 * kSecond);
    ASSERT_TRUE(player.output->waitForCount(1));

    m_broadcast.multiplex().end();
    ASSERT_TRUE(player.output->waitUntilHidden());
    m_broadcast.retune();
    player.output->forget();
    receive();
    ASSERT_TRUE(player.output->waitForCount(1));
}

TEST_F(LivePlayerTest, SurvivesWhatIsSpoiltAndShowsWhatFollows) {
    std::mt19937 random(5);
    using Packet = std::vector<uint8_t>;
    const std::pair<const char*, Broadcast::Spoil> cases[] = {
        {"garbage",
         [&](Packet& packet) {
             std::generate(packet.begin() + 4, packet.end(), std::ref(random));
             return true;
         }},
        {"bit errors",
         [&](Packet& packet) {
             packet[4 + random() % 184] ^= static_cast<uint8_t>(1U << random() % 8);
             return true;
         }},
        {"losses", [&](Packet&) { return random() % 10 != 0; }},
        {"everything is lost", [](Packet&) { return false; }},
    };
    for (const auto& [what, spoil] : cases) {
        SCOPED_TRACE(what);
        m_broadcast.retune();
        m_broadcast.publishTables();
        Playing first(*this, kService1);
        Playing second(*this, kService2);
        first->setCaptions(1);
        second->setCaptions(kSubtitle2);
        m_broadcast.setSpoil(spoil);
        m_broadcast.receivePast(4 * kSecond);
        m_broadcast.setSpoil([](auto&) { return true; });
        m_broadcast.play();
        const auto showsAgain = [](const Playing& player, int service) {
            const auto isOfService = [=](const Mark& mark) { return mark.service == service; };
            return player.output->waitUntil([&](const std::vector<Mark>& marks) {
                return marks.size() > 5 && std::all_of(marks.end() - 5, marks.end(), isOfService);
            });
        };
        EXPECT_TRUE(showsAgain(first, 1));
        EXPECT_TRUE(showsAgain(second, 2));
        m_broadcast.stop();
    }
}

TEST_F(LivePlayerTest, FiveHundredChannelChangesLeaveNothingBehind) {
    receive();
    std::vector<std::ptrdiff_t> before;
    for (int change = 0; change < 500; ++change) {
        if (change == 20) {
            ASSERT_TRUE(m_engine.reaper().waitUntilIdle());
            before = holdings();
        }
        Playing player(*this, change % 2 == 0 ? kService1 : kService2);
        ASSERT_TRUE(change % 10 != 0 || player.output->waitForCount(1));
    }
    ASSERT_TRUE(m_engine.reaper().waitUntilIdle());
    EXPECT_EQ(holdings(), before);
}

}  // namespace
}  // namespace quiravent::test
