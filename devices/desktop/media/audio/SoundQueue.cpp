#include "media/audio/SoundQueue.h"

#include <algorithm>

#include "media/audio/AudioFormat.h"
#include "support/Clock.h"

namespace quiravent::desktop {

SoundQueue::SoundQueue(size_t period) : m_period(period) {}

void SoundQueue::take(float* samples, size_t frames, int64_t now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_clock.asked(m_asked, now);
    m_asked += static_cast<int64_t>(frames);
    const size_t wanted = frames * kAudioChannels;
    const auto there = static_cast<std::ptrdiff_t>(std::min(wanted, m_samples.size()));
    const auto silence = std::copy_n(m_samples.begin(), there, samples);
    std::fill(silence, samples + wanted, 0.0F);
    m_samples.erase(m_samples.begin(), m_samples.begin() + there);
    m_taken.notify_all();
}

bool SoundQueue::put(const float* samples, size_t frames, int64_t patience) {
    std::unique_lock<std::mutex> lock(m_mutex);
    // As much as the card takes next, and some more only while that isn't complete.
    const auto hasRoom = [this] { return m_samples.size() / kAudioChannels < m_period; };
    if (!m_taken.wait_until(lock, clock::timePoint(clock::now() + patience), hasRoom)) return false;
    m_samples.insert(m_samples.end(), samples, samples + frames * kAudioChannels);
    return true;
}

int64_t SoundQueue::nextHeardAt(int64_t now) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const size_t before = m_samples.size() / kAudioChannels;
    const int64_t asked = m_clock.timeOf(m_asked + static_cast<int64_t>(before))
                              .value_or(now + audioDuration(before));
    return asked + audioDuration(m_period);
}

}  // namespace quiravent::desktop
