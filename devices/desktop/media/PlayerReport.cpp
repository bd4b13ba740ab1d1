#include "media/PlayerReport.h"

#include "media/PlayerSession.h"
#include "support/Lasting.h"

namespace quiravent::desktop {

const std::vector<std::string>& playerStateNames() {
    static const Lasting<std::vector<std::string>> names(
        {"idle", "fetching", "fetched", "buffering", "playing", "paused", "suspended", "stopped",
         "completed", "failed", "aborted"});
    return *names;
}

PlayerReport::State PlayerSession::reportedState() const {
    switch (m_state) {
        case State::idle:
            return PlayerReport::State::idle;
        case State::loaded:
            return m_fetchReady ? PlayerReport::State::fetched : PlayerReport::State::fetching;
        case State::playing:
            return m_playback->clock().isRunning() ? PlayerReport::State::playing
                                                   : PlayerReport::State::buffering;
        case State::paused:
            return PlayerReport::State::paused;
        case State::suspended:
            return PlayerReport::State::suspended;
        case State::stopped:
            return PlayerReport::State::stopped;
        case State::completed:
            return PlayerReport::State::completed;
        case State::failed:
            break;
    }
    return m_error == MediaError::none ? PlayerReport::State::aborted : PlayerReport::State::failed;
}

PlayerReport PlayerSession::report() const {
    PlayerReport report;
    const Player::Times times = this->times();
    report.begin = times.begin;
    report.now = times.now;
    report.end = times.end;
    report.buffered = bufferedRanges();
    report.bounds = m_playback->presenter().bounds();
    const std::lock_guard<std::mutex> lock(m_mutex);
    report.state = reportedState();
    report.error = m_error;
    report.speed = m_speed;
    report.volume = m_volume;
    report.tracks = m_info.tracks;
    for (size_t kind = 0; kind < m_selected.size(); ++kind)
        if (m_selected[kind]) report.selected[kind] = m_selected[kind]->id;
    return report;
}

}  // namespace quiravent::desktop
