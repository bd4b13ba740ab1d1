#include "media/Playback.h"

#include <algorithm>
#include <utility>

namespace quiravent::desktop {

namespace {

/// So long pictures wait for the sound that belongs to them.
constexpr int64_t kMaxWaitForSound = 100 * kMillisecond;

}  // namespace

Playback::Playback(const Parts& parts)
    : m_frames(parts.wakeup),
      m_voice(m_clock, parts.wakeup),
      m_mixer(parts.mixer),
      m_presenter(parts.source, parts.output, parts.pool, parts.subtitleFont),
      m_videoDecoder(parts.source, m_frames),
      m_audioDecoder(parts.source, m_voice) {
    m_mixer.add(m_voice);
}

Playback::~Playback() {
    m_mixer.remove(m_voice);
    m_frames.close();
    m_voice.close();
}

void Playback::begin(const Start& start) {
    m_start = start;
    m_primed = start.live;
    m_pictureOfSegment = false;
    m_videoThereSince = 0;
    if (!m_presenter.isVisible()) m_presenter.forget();
    m_clock.setPosition(start.target);
    m_clock.setSpeed(start.speed, desktop::clock::now());
    m_frames.reset(start.serial);
    m_voice.reset(start.serial);
}

void Playback::beginAudio(uint32_t serial) { m_voice.reset(serial); }

void Playback::setRunning(bool running) {
    m_running = running;
    if (!running) m_clock.stop(desktop::clock::now());
}

bool Playback::prime(int64_t now) {
    if (m_start.hasVideo && m_frames.isEmpty() && !m_frames.isFinished()) return false;
    if (m_videoThereSince == 0) m_videoThereSince = now;
    const bool soundThere = !m_start.hasAudio || !m_voice.isEmpty() || m_voice.isFinished();
    const bool waited = m_start.hasVideo && now >= m_videoThereSince + kMaxWaitForSound;
    if (!soundThere && !waited) return false;
    if (!m_frames.isEmpty()) showNext();
    return true;
}

void Playback::showNext() {
    VideoFrame next;
    if (!m_frames.peek(0, next)) return;
    m_frames.pop();
    m_presenter.follow(next);
    m_presenter.present(std::move(next));
    m_pictureOfSegment = true;
}

int64_t Playback::tick(int64_t now) {
    if (!m_primed) {
        m_primed = prime(now);
        if (!m_primed)
            return m_videoThereSince == 0 ? Wakeup::kNever : m_videoThereSince + kMaxWaitForSound;
    }
    if (!m_running) return Wakeup::kNever;
    if (!m_clock.isRunning()) {
        m_clock.start(desktop::clock::now());
        m_mixer.wake();
    }
    if (m_start.live && !m_pictureOfSegment) showNext();
    return presentDue(now);
}

int64_t Playback::presentDue(int64_t now) {
    VideoFrame next;
    while (m_frames.peek(0, next)) {
        const int64_t due = m_clock.timeOf(next.pts);
        if (due > now) return due;
        VideoFrame after;
        const bool late = m_frames.peek(1, after) && m_clock.timeOf(after.pts) <= now;
        if (late) {
            m_frames.pop();
            m_presenter.follow(next);
        } else {
            showNext();
        }
    }
    if (m_start.live) return Wakeup::kNever;
    // What is left is the time until the last picture and sound are over.
    const int64_t end = m_clock.timeOf(m_start.speed > 0 ? decodedEnd() : 0);
    return m_frames.isFinished() || !m_start.hasVideo ? std::max(end, now + kMillisecond)
                                                      : Wakeup::kNever;
}

bool Playback::isStarving() const {
    const bool noVideo = !m_start.hasVideo || m_frames.isEmpty();
    const bool noAudio = !m_start.hasAudio || m_voice.isEmpty();
    const bool finished =
        (!m_start.hasVideo || m_frames.isFinished()) && (!m_start.hasAudio || m_voice.isFinished());
    return noVideo && noAudio && !finished;
}

int64_t Playback::decodedEnd() const {
    int64_t end = m_start.target;
    if (m_pictureOfSegment) end = std::max(end, m_presenter.picture().end());
    if (m_start.hasAudio) end = std::max(end, m_audioDecoder.decodedUntil());
    return end;
}

bool Playback::isDrained(int64_t now) const {
    if (!m_primed || isStarving()) return false;
    if (m_start.hasVideo && !(m_frames.isEmpty() && m_frames.isFinished())) return false;
    if (m_start.hasAudio && !(m_voice.isEmpty() && m_voice.isFinished())) return false;
    if (m_start.speed < 0)
        return !m_pictureOfSegment || m_clock.positionAt(now) <= m_presenter.picture().pts;
    return m_clock.positionAt(now) >= decodedEnd();
}

MediaError Playback::error() const {
    if (m_start.hasVideo && m_videoDecoder.error() != MediaError::none)
        return m_videoDecoder.error();
    if (m_start.hasAudio && !m_start.hasVideo) return m_audioDecoder.error();
    return MediaError::none;
}

}  // namespace quiravent::desktop
