#include "media/TestPlayer.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "support/Clock.h"

namespace quiravent::test {

std::string mediaFile(const std::string& name) { return std::string(TEST_MEDIA) + "/" + name; }

std::vector<e_pl_media_event> kindsOf(const std::vector<SeenEvent>& events) {
    std::vector<e_pl_media_event> kinds;
    for (const SeenEvent& seen : events)
        if (kinds.empty() || kinds.back() != seen.event ||
            seen.event != e_pl_media_event_fetch_in_progress)
            kinds.push_back(seen.event);
    return kinds;
}

desktop::MediaSettings testSettings() {
    desktop::MediaSettings settings;
    settings.input.timeLimit = 5000000;
    return settings;
}

TestPlayer::TestPlayer(const std::string& location, desktop::MediaSettings settings,
                       std::vector<desktop::Fault> faults, std::unique_ptr<desktop::AudioSink> sink)
    : m_engine(std::move(settings), std::move(sink), std::move(faults)),
      m_player(m_engine, location, kBounds, m_output) {
    m_player.setEventHandler([this](e_pl_media_event event, uint8_t value) {
        m_events.change([=](auto& events) {
            events.push_back({event, value, desktop::clock::now()});
        });
    });
}

size_t TestPlayer::count(e_pl_media_event event) const {
    const std::vector<SeenEvent> all = events();
    return static_cast<size_t>(std::count_if(
        all.begin(), all.end(), [event](const SeenEvent& seen) { return seen.event == event; }));
}

int TestPlayer::waitFor(e_pl_media_event event, size_t times, int seconds) {
    int value = -1;
    m_events.waitUntil(
        [&](const std::vector<SeenEvent>& events) {
            size_t told = 0;
            for (const SeenEvent& seen : events)
                if (seen.event == event && ++told == times) value = seen.value;
            return told >= times;
        },
        std::chrono::seconds(seconds));
    return value;
}

bool TestPlayer::waitUntilOver() const {
    return m_events.waitUntil([](const std::vector<SeenEvent>& events) {
        return std::any_of(events.begin(), events.end(), [](const SeenEvent& seen) {
            return seen.event == e_pl_media_event_playback_completed ||
                   seen.event == e_pl_media_event_playback_error;
        });
    });
}

bool TestPlayer::fetch() {
    return m_player.fetch() == e_pl_status_ok && waitFor(e_pl_media_event_fetch_ready) == 0;
}

bool TestPlayer::play() {
    return m_player.start() == e_pl_status_ok && waitFor(e_pl_media_event_playback_ready) == 0 &&
           m_output->waitForCount(1);
}

bool TestPlayer::playAndPause() { return play() && m_player.pause() == e_pl_status_ok; }

bool TestPlayer::playToEnd(int64_t from) {
    constexpr int kPatience = 30;
    return (from == 0 || m_player.seek(from) == e_pl_status_ok) &&
           m_player.start() == e_pl_status_ok &&
           waitFor(e_pl_media_event_playback_completed, 1, kPatience) == 0;
}

bool TestPlayer::seekTo(int64_t position, int number) {
    return m_player.seek(position) == e_pl_status_ok && m_output->waitForNumber(number);
}

}  // namespace quiravent::test
