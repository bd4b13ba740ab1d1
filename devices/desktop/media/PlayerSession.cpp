#include "media/PlayerSession.h"

#include <algorithm>
#include <cmath>

#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// A local medium is read only so far ahead, since it is there anyway.
constexpr int64_t kLocalAhead = 5 * kSecond;
/// Nothing that was read is as good as played when it is so close to its end.
constexpr int64_t kNearlyNothing = 100 * kMillisecond;
constexpr int64_t kStarvingInterval = 10 * kMillisecond;
constexpr int64_t kUnprimedInterval = 100 * kMillisecond;
/// A medium that ends so much before its stated end is truncated.
constexpr int64_t kTruncation = kSecond;

/// Who makes a player registers the handler at once, but by another thread than that which goes on
/// to fetch: so long an event waits for the first handler.
constexpr int64_t kKept = kSecond;

constexpr double kSlowestWithSound = 0.5;
constexpr double kFastestWithSound = 2;

PlayMode modeOf(double speed) {
    if (speed < 0) return PlayMode::backwards;
    return speed > kFastestWithSound ? PlayMode::keyFrames : PlayMode::all;
}

bool hasSoundAt(double speed) { return speed >= kSlowestWithSound && speed <= kFastestWithSound; }

}  // namespace

PlayerSession::PlayerSession(MediaEngine& engine, const std::string& location, const Rect& bounds,
                             std::shared_ptr<VideoOutput> output)
    : m_location(location),
      m_engine(engine),
      m_output(std::move(output)),
      m_cache({engine.settings().cacheBytes, PacketCache::Limits{}.ahead}, m_wakeup),
      m_thumbnailer(location, engine.settings().input),
      m_watchdog(engine.settings().input.timeLimit) {
    m_playback = std::make_unique<Playback>(Playback::Parts{m_cache, engine.mixer(), *m_output,
                                                            engine.pictures(), m_wakeup,
                                                            engine.settings().subtitleFont});
    m_playback->presenter().setBounds(bounds);
    m_thread = startThread("media-player", [this] { run(); });
}

PlayerSession::~PlayerSession() {
    m_thread.join();
    m_demuxer.reset();
    m_playback.reset();
}

void PlayerSession::close() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        m_handler = nullptr;
    }
    m_playback->presenter().close();
    m_playback->voice().setGain(0);
    m_thumbnailer.cancel();
    m_cache.close();
    m_wakeup.signal();
}

PlayerSession::State PlayerSession::state() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_state;
}

void PlayerSession::run() {
    while (true) {
        runCommands();
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_closed) break;
        }
        const int64_t next = step();
        m_wakeup.waitUntil(std::min(next, deliverEvents()));
    }
    if (m_demuxer) m_demuxer->cancel();
    m_playback->setRunning(false);
}

void PlayerSession::runCommands() {
    while (true) {
        std::function<void()> command;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_closed || m_commands.empty()) return;
            command = std::move(m_commands.front());
            m_commands.pop_front();
        }
        command();
    }
}

void PlayerSession::tell(e_pl_media_event event, uint8_t value) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_events.push_back({clock::now(), m_registration, event, value});
    }
    // What is told may be followed by more at once.
    m_wakeup.signal();
}

/// Null where nobody is told of it. due: when that is settled.
Player::EventHandler PlayerSession::handlerOf(const Event& event, int64_t& due) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_registration == 0) {
        due = event.time + kKept;
        return nullptr;
    }
    if (!m_handler || (event.registration != 0 && event.registration != m_registration))
        return nullptr;
    due = m_tellFrom;
    return m_handler;
}

/// The time at which it has to be called again.
int64_t PlayerSession::deliverEvents() {
    while (!m_events.empty()) {
        const Event event = m_events.front();
        int64_t due = 0;
        const Player::EventHandler handler = handlerOf(event, due);
        if (clock::now() < due) return due;
        m_events.pop_front();
        if (handler) handler(event.event, event.value);
    }
    return Wakeup::kNever;
}

int64_t PlayerSession::step() {
    if (!m_demuxer || m_failed) return Wakeup::kNever;
    if (!m_open) {
        if (m_demuxer->state() == Demuxer::State::failed) fail(m_demuxer->error());
        if (m_demuxer->state() != Demuxer::State::open) return Wakeup::kNever;
        takeOverMedium();
    }
    const int64_t now = clock::now();
    int64_t next = m_playback->tick(now);
    const PacketCache::Status status = m_cache.status();
    followFetch(status, now);
    followStalls(status, now);
    followEnd(status, now);
    if (m_failed) return Wakeup::kNever;
    const bool waiting = !m_fetchReady || !m_playback->isPrimed() || m_stalls.isStalled();
    if (m_watchdog.isOverdue(waiting, status.received + m_playback->decodedFrames(), now))
        fail(status.error == MediaError::none ? MediaError::timeout : status.error);
    if (waiting) next = std::min(next, m_watchdog.deadline());
    // That nothing comes any more is told by nobody, nor that nothing has come yet.
    if (m_readyTold && !m_playback->isPrimed()) next = std::min(next, now + kUnprimedInterval);
    if (m_playback->isStarving() && m_playback->clock().isRunning())
        next = std::min(next, std::max(m_playback->clock().timeOf(status.end - kNearlyNothing),
                                       now + kStarvingInterval));
    return next;
}

void PlayerSession::beginFetch() {
    if (m_demuxer) return;
    tell(e_pl_media_event_fetch_in_progress, m_progress.observe(0, 1, clock::now()).value_or(0));
    m_demuxer = std::make_unique<Demuxer>(m_location, m_engine.settings().input, m_engine.faults(),
                                          m_cache, m_wakeup);
}

void PlayerSession::takeOverMedium() {
    m_open = true;
    const MediaInfo& info = m_demuxer->info();
    int64_t position = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_info = info;
        for (const TrackKind kind : {TrackKind::video, TrackKind::audio}) {
            const auto first =
                std::find_if(info.tracks.begin(), info.tracks.end(),
                             [kind](const TrackRef& track) { return track->kind == kind; });
            if (first != info.tracks.end()) m_selected[indexOf(kind)] = *first;
        }
        if (!info.seekable && m_speed < 0) m_speed = 1;
        position = info.seekable ? m_position : 0;
    }
    m_duration = info.duration;
    if (!info.remote) m_cache.setAheadLimit(kLocalAhead);
    beginAt(position);
}

void PlayerSession::beginAt(int64_t position) {
    if (!m_open) return;
    PacketCache::Start start{};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_duration > 0) position = std::min(position, m_duration);
        start = {++m_serial, position, modeOf(m_speed), m_speed, m_selected, !m_info.seekable};
        const bool hasVideo = start.tracks[indexOf(TrackKind::video)] != nullptr;
        // What has sound only can't be played by key pictures.
        if (!hasSoundAt(m_speed) && hasVideo) start.tracks[indexOf(TrackKind::audio)] = nullptr;
        m_audible = start.tracks[indexOf(TrackKind::audio)] != nullptr;
        m_backwards = start.mode == PlayMode::backwards;
        m_playback->begin({start.serial, position, m_speed, hasVideo, m_audible});
    }
    m_cache.start(start);
    m_stalls.restart(clock::now());
}

void PlayerSession::beginTrack(TrackKind kind) {
    if (!m_open) return;
    if (kind == TrackKind::video) return beginAt(m_playback->clock().positionAt(clock::now()));
    if (kind == TrackKind::audio && !m_audible) return;
    Segment segment;
    segment.serial = ++m_serial;
    segment.target = m_playback->clock().positionAt(clock::now());
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        segment.speed = m_speed;
        segment.track = m_selected[indexOf(kind)];
    }
    if (kind == TrackKind::audio) m_playback->beginAudio(segment.serial);
    m_cache.startTrack(kind, segment);
    if (kind == TrackKind::subtitle) m_playback->presenter().redraw();
}

int64_t PlayerSession::ahead(const PacketCache::Status& status, int64_t now) const {
    if (m_backwards) return status.hasGroups ? StallPolicy::kTarget : 0;
    return std::max<int64_t>(status.end - m_playback->clock().positionAt(now), 0);
}

void PlayerSession::followFetch(const PacketCache::Status& status, int64_t now) {
    if (m_fetchReady) return;
    const bool enough = StallPolicy::suffices(ahead(status, now), status.finished) || status.full;
    const int64_t have = enough ? StallPolicy::kTarget : ahead(status, now);
    if (const auto percent = m_progress.observe(have, StallPolicy::kTarget, now))
        tell(e_pl_media_event_fetch_in_progress, *percent);
    if (m_playback->error() != MediaError::none)
        return fail(status.error == MediaError::none ? m_playback->error() : status.error);
    if (!enough || !m_playback->isPrimed()) return;
    m_fetchReady = true;
    tell(e_pl_media_event_fetch_ready);
    applyRunning();
}

void PlayerSession::applyRunning() {
    const bool runs =
        m_open && m_fetchReady && !m_failed && state() == State::playing && !m_stalls.isStalled();
    m_playback->setRunning(runs);
    if (!runs) return;
    m_playback->presenter().setVisible(true);
    m_wakeup.signal();
}

void PlayerSession::followStalls(const PacketCache::Status& status, int64_t now) {
    if (!m_fetchReady || m_failed || state() != State::playing) return;
    const bool begun = m_playback->isPrimed();
    if (!m_readyTold) {
        if (!begun || !m_playback->clock().isRunning()) return;
        m_readyTold = true;
        m_stalls.restart(now);
        tell(e_pl_media_event_playback_ready);
    }
    const int64_t left = ahead(status, now);
    const bool empty = m_playback->isStarving() && left < kNearlyNothing;
    const StallPolicy::Change change =
        m_stalls.observe({now, left, status.finished || status.full, empty, begun});
    if (change == StallPolicy::Change::none) return;
    applyRunning();
    tell(change == StallPolicy::Change::stalled ? e_pl_media_event_playback_stalled
                                                : e_pl_media_event_playback_recovering);
}

MediaError PlayerSession::endError(const PacketCache::Status& status) const {
    if (status.error != MediaError::none) return status.error;
    if (m_playback->error() != MediaError::none) return m_playback->error();
    const bool short_ =
        m_duration > 0 && !m_backwards && m_playback->decodedEnd() < m_duration - kTruncation;
    return short_ ? MediaError::truncated : MediaError::none;
}

void PlayerSession::followEnd(const PacketCache::Status& status, int64_t now) {
    if (!m_fetchReady || m_failed || state() != State::playing) return;
    if (!m_playback->isDrained(now)) return;
    const MediaError error = endError(status);
    if (error != MediaError::none)
        fail(error);
    else
        complete();
}

void PlayerSession::complete() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // What was asked for meanwhile goes before.
        if (m_state != State::playing || m_pendingSeeks > 0) return;
        m_state = State::completed;
    }
    m_playback->setRunning(false);
    const int64_t end = m_duration > 0 ? m_duration : m_playback->decodedEnd();
    m_playback->hold(m_backwards ? 0 : end);
    tell(e_pl_media_event_playback_completed);
}

void PlayerSession::fail(MediaError error) {
    if (m_failed) return;
    m_failed = true;
    bool started = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        started = isOneOf({State::playing, State::paused, State::suspended});
        m_state = State::failed;
        m_error = error;
    }
    m_playback->setRunning(false);
    const auto value = static_cast<uint8_t>(error);
    if (!m_fetchReady) tell(e_pl_media_event_fetch_error, value);
    if (m_fetchReady || started) tell(e_pl_media_event_playback_error, value);
}

}  // namespace quiravent::desktop
