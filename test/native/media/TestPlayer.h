#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/Player.h"
#include "media/TestOutput.h"
#include "media/audio/NullSink.h"

namespace quiravent::test {

/// Path of a medium that make-media.sh made.
std::string mediaFile(const std::string& name);

struct SeenEvent {
    e_pl_media_event event;
    int value;
    int64_t at;
};

/// The kinds of events in their order, without the repetitions of fetch_in_progress.
std::vector<e_pl_media_event> kindsOf(const std::vector<SeenEvent>& events);

/// Settings with which a test doesn't wait long for what never comes.
desktop::MediaSettings testSettings();

/// A player with an engine of its own, and all that it reports.
class TestPlayer {
  public:
    static constexpr desktop::Rect kBounds{0, 0, 320, 180};

    explicit TestPlayer(
        const std::string& location, desktop::MediaSettings settings = testSettings(),
        std::vector<desktop::Fault> faults = {},
        std::unique_ptr<desktop::AudioSink> sink = std::make_unique<desktop::NullSink>());

    desktop::Player* operator->() { return &m_player; }
    desktop::Player& player() { return m_player; }
    TestOutput& output() { return *m_output; }
    desktop::MediaEngine& engine() { return m_engine; }
    std::vector<SeenEvent> events() const { return m_events.get(); }
    size_t count(e_pl_media_event event) const;

    /// Waits for the event to have been told so often; its last value, or -1 when it hasn't within
    /// the limit.
    int waitFor(e_pl_media_event event, size_t times = 1, int seconds = 15);

    /// Waits until it has played to the end or to an error; false when it hasn't in ten seconds.
    bool waitUntilOver() const;

    /// Each does what it says and waits until it is done; false where that is refused or takes too
    /// long.
    bool fetch();
    bool play();  ///< up to the first picture
    bool playAndPause();
    bool playToEnd(int64_t from = 0);
    bool seekTo(int64_t position, int number);  ///< to the picture of that number

  private:
    Watched<std::vector<SeenEvent>> m_events;
    std::shared_ptr<TestOutput> m_output = std::make_shared<TestOutput>();
    desktop::MediaEngine m_engine;
    desktop::Player m_player;
};

}  // namespace quiravent::test
