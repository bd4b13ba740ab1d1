#include <algorithm>
#include <cmath>

#include "media/PlayerSession.h"
#include "support/listening.h"

// What callers ask of a session.
namespace quiravent::desktop {

namespace {

using Lock = std::lock_guard<std::mutex>;

}  // namespace

bool PlayerSession::isOneOf(std::initializer_list<State> states) const {
    return std::find(states.begin(), states.end(), m_state) != states.end();
}

void PlayerSession::post(std::function<void()> command) {
    m_commands.push_back(std::move(command));
    m_wakeup.signal();
}

void PlayerSession::setEventHandler(Player::EventHandler handler) {
    const Lock lock(m_mutex);
    if (m_closed) return;
    m_handler = std::move(handler);
    ++m_registration;
    m_tellFrom = clock::now() + kUntilListening;
    m_wakeup.signal();
}

e_pl_status PlayerSession::fetch() {
    const Lock lock(m_mutex);
    if (m_state != State::idle) return e_pl_status_wrong_state;
    m_state = State::loaded;
    post([this] { beginFetch(); });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::start() {
    const Lock lock(m_mutex);
    if (isOneOf({State::playing, State::failed})) return e_pl_status_wrong_state;
    if (m_state == State::completed) requestSeek(m_speed < 0 ? m_info.duration : 0);
    m_state = State::playing;
    post([this] {
        m_readyTold = false;
        m_stalls = StallPolicy();
        beginFetch();
        applyRunning();
    });
    if (m_outputTaken) beSuspended();
    return e_pl_status_ok;
}

e_pl_status PlayerSession::pause() {
    const Lock lock(m_mutex);
    if (m_state != State::playing) return e_pl_status_wrong_state;
    m_state = State::paused;
    post([this] { applyRunning(); });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::resume() {
    const Lock lock(m_mutex);
    const bool wasSuspended = m_state == State::suspended;
    if (!isOneOf({State::paused, State::suspended})) return e_pl_status_wrong_state;
    if (wasSuspended && m_outputTaken) return e_pl_status_unavailable;
    m_state = State::playing;
    post([this, wasSuspended] {
        // Told anew, so that a further suspension isn't taken for a repeat of the one before.
        if (wasSuspended) m_readyTold = false;
        applyRunning();
    });
    if (m_outputTaken) beSuspended();
    return e_pl_status_ok;
}

e_pl_status PlayerSession::stop() {
    const Lock lock(m_mutex);
    if (!isOneOf(
            {State::loaded, State::playing, State::paused, State::suspended, State::completed}))
        return e_pl_status_wrong_state;
    m_state = State::stopped;
    post([this] {
        applyRunning();
        m_playback->presenter().setVisible(false);
    });
    requestSeek(0);
    return e_pl_status_ok;
}

void PlayerSession::requestSeek(int64_t position) {
    ++m_pendingSeeks;
    m_position = position;
    post([this, position] {
        beginAt(position);
        {
            // Not sooner: until the clock stands at the position, m_position has to answer for it.
            const Lock begun(m_mutex);
            --m_pendingSeeks;
        }
        applyRunning();
    });
}

e_pl_status PlayerSession::seek(int64_t position) {
    const Lock lock(m_mutex);
    if (m_state == State::failed) return e_pl_status_wrong_state;
    const bool opened = !m_info.tracks.empty();
    if (opened && !m_info.seekable && m_info.duration > 0) return e_pl_status_not_supported;
    if (m_info.duration > 0) {
        position = std::min(position, m_info.duration);
    } else if (opened) {
        // Of what is live there is as much as was read and kept.
        const std::vector<TimeRange> ranges = m_cache.ranges();
        if (ranges.empty()) return e_pl_status_not_supported;
        position = std::clamp(position, ranges.front().begin, ranges.back().end);
    }
    if (m_state == State::completed) m_state = State::paused;
    requestSeek(std::max<int64_t>(position, 0));
    return e_pl_status_ok;
}

e_pl_status PlayerSession::setBounds(const Rect& bounds) {
    const Lock lock(m_mutex);
    m_playback->presenter().setBounds(bounds);
    post([this] {
        if (!m_playback->clock().isRunning()) m_playback->presenter().redraw();
    });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::setSpeed(double& speed) {
    const Lock lock(m_mutex);
    const double wanted =
        std::copysign(std::clamp(std::abs(speed), Player::kMinSpeed, Player::kMaxSpeed), speed);
    const bool valid = std::isfinite(speed) && speed != 0;
    const bool opened = !m_info.tracks.empty();
    const bool video = m_selected[indexOf(TrackKind::video)] != nullptr;
    speed = m_speed;
    if (!valid) return e_pl_status_invalid_argument;
    if (m_state == State::failed) return e_pl_status_wrong_state;
    if (opened && wanted < 0 && !(m_info.seekable && video)) return e_pl_status_not_supported;
    speed = wanted;
    if (m_speed == wanted) return e_pl_status_ok;
    m_speed = wanted;
    post([this] {
        beginAt(m_playback->clock().positionAt(clock::now()));
        applyRunning();
    });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::setVolume(uint8_t percent) {
    const Lock lock(m_mutex);
    m_volume = percent;
    m_playback->voice().setGain(static_cast<float>(percent) / 100);
    return e_pl_status_ok;
}

TrackRef PlayerSession::findTrack(TrackKind kind, uint32_t id) const {
    const auto found =
        std::find_if(m_info.tracks.begin(), m_info.tracks.end(),
                     [&](const TrackRef& track) { return track->kind == kind && track->id == id; });
    return found == m_info.tracks.end() ? nullptr : *found;
}

e_pl_status PlayerSession::selectTrack(TrackKind kind, uint32_t id) {
    const Lock lock(m_mutex);
    if (m_state == State::failed || m_info.tracks.empty()) return e_pl_status_wrong_state;
    TrackRef track = findTrack(kind, id);
    if (!track && kind != TrackKind::subtitle) return e_pl_status_not_found;
    TrackRef& selected = m_selected[indexOf(kind)];
    if (selected == track) return e_pl_status_ok;
    selected = std::move(track);
    post([this, kind] { beginTrack(kind); });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::abort() {
    const Lock lock(m_mutex);
    if (isOneOf({State::idle, State::failed})) return e_pl_status_wrong_state;
    m_state = State::failed;
    post([this] {
        m_failed = true;
        m_playback->setRunning(false);
        m_playback->presenter().setVisible(false);
        tell(e_pl_media_event_playback_abort);
    });
    return e_pl_status_ok;
}

e_pl_status PlayerSession::suspend() {
    const Lock lock(m_mutex);
    if (m_state != State::playing) return e_pl_status_wrong_state;
    beSuspended();
    return e_pl_status_ok;
}

void PlayerSession::beSuspended() {
    m_state = State::suspended;
    post([this] {
        applyRunning();
        tell(e_pl_media_event_playback_suspend);
    });
}

void PlayerSession::setOutputTaken(bool isTaken) {
    const Lock lock(m_mutex);
    m_outputTaken = isTaken;
    if (isTaken && m_state == State::playing) beSuspended();
}

Player::Times PlayerSession::times() const {
    const Lock lock(m_mutex);
    if (m_info.tracks.empty()) return {0, 0, 0};
    const int64_t position =
        m_pendingSeeks > 0 ? m_position : m_playback->clock().positionAt(clock::now());
    if (m_info.duration > 0)
        return {0, std::clamp<int64_t>(position, 0, m_info.duration), m_info.duration};
    const std::vector<TimeRange> ranges = m_cache.ranges();
    if (ranges.empty()) return {0, 0, 0};
    return {ranges.front().begin, position, ranges.back().end};
}

std::vector<TimeRange> PlayerSession::bufferedRanges() const {
    {
        const Lock lock(m_mutex);
        if (!m_info.tracks.empty() && !m_info.remote && m_info.duration > 0)
            return {{0, m_info.duration}};
    }
    return m_cache.ranges();
}

std::vector<TrackRef> PlayerSession::tracks(TrackKind kind) const {
    const Lock lock(m_mutex);
    std::vector<TrackRef> tracks;
    std::copy_if(m_info.tracks.begin(), m_info.tracks.end(), std::back_inserter(tracks),
                 [kind](const TrackRef& track) { return track->kind == kind; });
    return tracks;
}

}  // namespace quiravent::desktop
