#include "media/audio/NullSink.h"

#include <thread>

#include "media/audio/AudioFormat.h"
#include "support/Clock.h"

namespace quiravent::desktop {

int64_t NullSink::nextHeardAt() {
    const int64_t now = clock::now();
    if (m_resting || m_next < now + kLatency - kMaxDelay) {
        m_origin = now + kLatency;
        m_next = m_origin;
        m_frames = 0;
        m_resting = false;
    }
    return m_next;
}

void NullSink::write(const float*, size_t frames) {
    m_frames += static_cast<int64_t>(frames);
    m_next = m_origin + m_frames * 1000000 / kAudioRate;
    std::this_thread::sleep_until(clock::timePoint(m_next - kLatency));
}

void NullSink::rest() { m_resting = true; }

}  // namespace quiravent::desktop
