#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "media/audio/AudioSink.h"
#include "media/audio/AudioVoice.h"

namespace quiravent::desktop {

/// Mixes the sound of all players into one sink, on a thread of its own, which rests while nothing
/// plays. Thread-safe.
class AudioMixer {
  public:
    explicit AudioMixer(std::unique_ptr<AudioSink> sink);
    ~AudioMixer();
    AudioMixer(const AudioMixer&) = delete;
    AudioMixer& operator=(const AudioMixer&) = delete;

    void add(AudioVoice& voice);
    /// After the return the voice isn't touched any more.
    void remove(AudioVoice& voice);
    /// To be called when a voice's clock was started.
    void wake();

  private:
    void run();
    bool waitUntilPlaying();
    bool isAnyPlaying() const;
    void mix(int64_t heardAt);

    std::unique_ptr<AudioSink> m_sink;  ///< of the mixer's thread, after the constructor
    std::vector<float> m_samples;       ///< of the mixer's thread
    std::mutex m_mutex;                 ///< guards what follows
    std::condition_variable m_changed;
    std::vector<AudioVoice*> m_voices;
    bool m_closed = false;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
