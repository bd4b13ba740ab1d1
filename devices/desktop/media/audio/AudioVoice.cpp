#include "media/audio/AudioVoice.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "media/audio/AudioFormat.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kMaxBuffered = kAudioRate * 3 / 10;
/// Sound that is further away from its time is moved there at once; sound that is only a little
/// off drifts there, by a frame in each mix, which can't be heard.
constexpr int64_t kLeap = 40000;
constexpr int64_t kTolerance = 4000;

}  // namespace

size_t AudioVoice::framesIn(const Chunk& chunk) const {
    return chunk.samples.size() / kAudioChannels;
}

void AudioVoice::reset(uint32_t serial) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_chunks.clear();
    m_offset = 0;
    m_buffered = 0;
    m_serial = serial;
    m_finished = false;
    m_room.notify_all();
}

void AudioVoice::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_room.notify_all();
}

bool AudioVoice::push(Chunk chunk, uint32_t serial) {
    bool first = false;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_room.wait(lock,
                    [&] { return m_closed || serial != m_serial || m_buffered < kMaxBuffered; });
        if (m_closed || serial != m_serial) return false;
        if (chunk.samples.empty()) return true;
        first = m_chunks.empty();
        m_buffered += framesIn(chunk);
        m_chunks.push_back(std::move(chunk));
    }
    if (first) m_wakeup.signal();
    return true;
}

void AudioVoice::finish(uint32_t serial) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (serial != m_serial) return;
        m_finished = true;
    }
    m_wakeup.signal();
}

bool AudioVoice::isFinished() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_finished;
}

bool AudioVoice::isEmpty() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_chunks.empty();
}

int64_t AudioVoice::frontPosition() const {
    const Chunk& chunk = m_chunks.front();
    return chunk.position +
           std::llround(static_cast<double>(audioDuration(m_offset)) * chunk.speed);
}

void AudioVoice::skip(size_t frames) {
    while (frames > 0 && !m_chunks.empty()) {
        const size_t count = std::min(frames, framesIn(m_chunks.front()) - m_offset);
        m_offset += count;
        m_buffered -= count;
        frames -= count;
        if (m_offset < framesIn(m_chunks.front())) continue;
        m_chunks.pop_front();
        m_offset = 0;
    }
    m_room.notify_all();
    if (m_chunks.empty()) m_wakeup.signal();
}

size_t AudioVoice::align(int64_t position, size_t frames) {
    while (!m_chunks.empty()) {
        const double speed = m_chunks.front().speed;
        const auto early =
            static_cast<int64_t>(static_cast<double>(frontPosition() - position) / speed);
        if (early > kLeap)
            return std::min(frames, static_cast<size_t>(early * kAudioRate / 1000000));
        if (early > kTolerance) return 1;
        if (early >= -kTolerance) return 0;
        const size_t late = static_cast<size_t>(-early * kAudioRate / 1000000);
        skip(early < -kLeap ? late : 1);
        if (early >= -kLeap) return 0;
    }
    return frames;
}

void AudioVoice::add(float* samples, size_t frames) {
    const float gain = m_gain;
    while (frames > 0 && !m_chunks.empty()) {
        const Chunk& chunk = m_chunks.front();
        const size_t count = std::min(frames, framesIn(chunk) - m_offset);
        const float* from = chunk.samples.data() + m_offset * kAudioChannels;
        for (size_t index = 0; index < count * kAudioChannels; ++index)
            samples[index] += from[index] * gain;
        samples += count * kAudioChannels;
        frames -= count;
        skip(count);
    }
}

void AudioVoice::mixInto(float* samples, size_t frames, int64_t heardAt) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_clock.isRunning() || m_clock.speed() <= 0) return;
    const size_t silent = align(m_clock.positionAt(heardAt), frames);
    if (silent < frames) add(samples + silent * kAudioChannels, frames - silent);
}

}  // namespace quiravent::desktop
