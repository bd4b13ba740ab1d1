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
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_events.push_back({event, value, desktop::clock::now()});
        m_told.notify_all();
    });
}

std::vector<SeenEvent> TestPlayer::events() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_events;
}

size_t TestPlayer::count(e_pl_media_event event) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<size_t>(
        std::count_if(m_events.begin(), m_events.end(),
                      [event](const SeenEvent& seen) { return seen.event == event; }));
}

int TestPlayer::waitFor(e_pl_media_event event, size_t times, int seconds) {
    std::unique_lock<std::mutex> lock(m_mutex);
    int value = -1;
    m_told.wait_for(lock, std::chrono::seconds(seconds), [&] {
        size_t told = 0;
        for (const SeenEvent& seen : m_events) {
            if (seen.event != event) continue;
            if (++told == times) value = seen.value;
        }
        return told >= times;
    });
    return value;
}

bool TestPlayer::waitUntil(const std::function<bool()>& isSo) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    size_t known = 0;
    while (!isSo()) {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (!m_told.wait_until(lock, deadline, [&] { return m_events.size() > known; }))
            return false;
        known = m_events.size();
    }
    return true;
}

bool TestPlayer::play() {
    return m_player.start() == e_pl_status_ok && waitFor(e_pl_media_event_playback_ready) == 0 &&
           m_output->waitForCount(1);
}

}  // namespace quiravent::test
