#include <gtest/gtest.h>

#include <cstdlib>

#include "common/TemporaryFolder.h"
#include "media/Samples.h"
#include "media/TestPlayer.h"
#include "media/audio/AudioFormat.h"
#include "media/audio/SoundCardSink.h"
#include "media/audio/audioSinks.h"
#include "support/Clock.h"

namespace quiravent::test {
namespace {

using desktop::CardClock;
using desktop::SoundCardSink;
using desktop::SoundQueue;

constexpr int kPeriod = 480;
constexpr int64_t kPeriodTime = 10000;

TEST(CardClock, FollowsTheCardAndNotTheDelaysOfItsThread) {
    struct Case {
        const char* name;
        int64_t (*askedAt)(int64_t period);  ///< when the card asks for each hundredth of a second
        int64_t expected;                    ///< for the request after two thousand
        int64_t tolerance;
    };
    const Case cases[] = {
        {"steady", [](int64_t n) { return n * kPeriodTime; }, 2000 * kPeriodTime, 0},
        {"late now and then", [](int64_t n) { return n * kPeriodTime + (n % 7 == 3 ? 5000 : 0); },
         2000 * kPeriodTime, 400},
        {"a thousandth slow", [](int64_t n) { return n * (kPeriodTime + 10); },
         2000 * (kPeriodTime + 10), 500},
        {"a thousandth fast", [](int64_t n) { return n * (kPeriodTime - 10); },
         2000 * (kPeriodTime - 10), 50},
        {"halted once", [](int64_t n) { return n * kPeriodTime + (n > 1990 ? 300000 : 0); },
         2000 * kPeriodTime + 300000, 0},
    };
    for (const Case& one : cases) {
        CardClock clock;
        EXPECT_FALSE(clock.timeOf(0));
        for (int64_t n = 0; n < 2000; ++n) clock.asked(n * kPeriod, one.askedAt(n));
        EXPECT_NEAR(static_cast<double>(*clock.timeOf(int64_t{2000} * kPeriod)),
                    static_cast<double>(one.expected), static_cast<double>(one.tolerance))
            << one.name;
    }
}

/// A card that takes sound when the test says so.
class FakeCard : public desktop::SoundCard {
  public:
    explicit FakeCard(const bool& plugged) : m_plugged(plugged) {}
    SoundQueue& queue() override { return m_queue; }
    bool isPlugged() const override { return m_plugged; }

  private:
    const bool& m_plugged;
    SoundQueue m_queue{kPeriod};
};

struct Bench {
    bool plugged = true;
    int opened = 0;
    FakeCard* card = nullptr;
    SoundCardSink sink{desktop::log::Level::silent, [this] {
                           auto made = std::make_unique<FakeCard>(plugged);
                           card = made.get();
                           ++opened;
                           return desktop::Result<std::unique_ptr<desktop::SoundCard>>(
                               std::unique_ptr<desktop::SoundCard>(std::move(made)));
                       }};
    std::vector<float> samples = std::vector<float>(size_t{2} * kPeriod, 0.5F);

    int64_t writeOnce() {
        const int64_t heardAt = sink.nextHeardAt();
        sink.write(samples.data(), kPeriod);
        return heardAt;
    }
};

TEST(SoundCardSink, TellsWhenSoundIsHeardByWhatTheCardTakes) {
    Bench bench;
    bench.writeOnce();
    std::vector<float> taken(size_t{2} * kPeriod);
    int64_t now = desktop::clock::now() + 1000000;
    for (int period = 0; period < 5; ++period, now += kPeriodTime) {
        bench.card->queue().take(taken.data(), kPeriod, now);
        EXPECT_EQ(taken.front(), 0.5F);
        EXPECT_EQ(taken.back(), 0.5F);
        // What comes next is asked for a period later, and heard another one after that.
        EXPECT_EQ(bench.writeOnce(), now + 2 * kPeriodTime);
    }
    bench.sink.rest();
    bench.card->queue().take(taken.data(), kPeriod, now);
    bench.card->queue().take(taken.data(), kPeriod, now + kPeriodTime);
    EXPECT_EQ(taken.front(), 0);
    EXPECT_EQ(bench.sink.nextHeardAt(), now + 3 * kPeriodTime);
    EXPECT_EQ(bench.opened, 1);
}

TEST(SoundCardSink, GoesOnInSilenceWithoutItsCard) {
    testing::internal::CaptureStderr();
    for (const bool isPlugged : {false, true}) {
        Bench bench;
        bench.writeOnce();
        bench.plugged = isPlugged;
        // The queue is full, and nobody takes anything.
        for (int period = 0; period < 5; ++period)
            EXPECT_GT(bench.writeOnce(), desktop::clock::now() - 1000000);
        bench.sink.rest();
        bench.plugged = true;
        bench.sink.nextHeardAt();
        EXPECT_EQ(bench.opened, isPlugged ? 1 : 2) << "cards, when playing begins anew";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "quiravent: warning: no sound is heard any more: the sound card is gone\n"
              "quiravent: warning: no sound is heard any more: the sound card takes none\n");
}

/// Plays a film from there with SDL's driver of that name; gives what is told meanwhile.
std::string playWith(const char* sink, const char* driver, int64_t from = 5700000) {
    setenv("SDL_AUDIODRIVER", driver, 1);
    testing::internal::CaptureStderr();
    {
        TestPlayer player(mediaFile("film.mp4"), testSettings(), {},
                          std::move(*desktop::createAudioSink(sink, "")));
        EXPECT_EQ(player->seek(from), e_pl_status_ok);
        EXPECT_TRUE(player.play());
        EXPECT_EQ(player->pause(), e_pl_status_ok);
        EXPECT_EQ(player->resume(), e_pl_status_ok);
        EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
    }
    unsetenv("SDL_AUDIODRIVER");
    return testing::internal::GetCapturedStderr();
}

TEST(SoundCard, TakesTheSound) {
    const TemporaryFolder folder;
    const std::string file = folder / "sound.raw";
    setenv("SDL_DISKAUDIOFILE", file.c_str(), 1);
    playWith("device", "disk", 4000000);
    unsetenv("SDL_DISKAUDIOFILE");
    const std::vector<float> samples = leftOf<float>(contentOf(file));
    ASSERT_GT(samples.size(), 40000U);
    EXPECT_NEAR(frequencyOf(samples, samples.size() / 2), 440, 25);
}

TEST(SoundCard, IsDoneWithoutWhereThereIsNone) {
    EXPECT_EQ(playWith("device", "dummy"), "");
    EXPECT_EQ(playWith("auto", "nonsense"), "");
    EXPECT_EQ(playWith("device", "nonsense"),
              "quiravent: warning: no sound is heard, for want of a sound card: Audio target "
              "'nonsense' not available\n");
}

}  // namespace
}  // namespace quiravent::test
