#include "media/audio/AudioMixer.h"

#include <algorithm>
#include <utility>

#include "media/audio/AudioFormat.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kFramesAtOnce = kAudioRate / 100;

}  // namespace

AudioMixer::AudioMixer(std::unique_ptr<AudioSink> sink)
    : m_sink(std::move(sink)),
      m_samples(kFramesAtOnce * kAudioChannels),
      m_thread(startThread("media-mixer", [this] { run(); })) {}

AudioMixer::~AudioMixer() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void AudioMixer::add(AudioVoice& voice) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_voices.push_back(&voice);
}

void AudioMixer::remove(AudioVoice& voice) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_voices.erase(std::remove(m_voices.begin(), m_voices.end(), &voice), m_voices.end());
}

void AudioMixer::wake() {
    // Without the lock the thread could miss this between its look at the clocks and its wait.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_changed.notify_all();
}

bool AudioMixer::isAnyPlaying() const {
    return std::any_of(m_voices.begin(), m_voices.end(),
                       [](const AudioVoice* voice) { return voice->isPlaying(); });
}

bool AudioMixer::waitUntilPlaying() {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_closed && !isAnyPlaying()) {
        m_sink->rest();
        m_changed.wait(lock, [this] { return m_closed || isAnyPlaying(); });
    }
    return !m_closed;
}

void AudioMixer::run() {
    while (waitUntilPlaying()) {
        // Without the lock, since a sink that looks for a sound card takes its time.
        mix(m_sink->nextHeardAt());
        m_sink->write(m_samples.data(), kFramesAtOnce);
    }
    m_sink.reset();
}

void AudioMixer::mix(int64_t heardAt) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::fill(m_samples.begin(), m_samples.end(), 0.0F);
    for (AudioVoice* voice : m_voices) voice->mixInto(m_samples.data(), kFramesAtOnce, heardAt);
    for (float& sample : m_samples) sample = std::clamp(sample, -1.0F, 1.0F);
}

}  // namespace quiravent::desktop
