#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "media/Decoder.h"
#include "media/MediaErrors.h"
#include "media/PacketSource.h"
#include "media/audio/AudioVoice.h"
#include "media/audio/Resampler.h"
#include "media/audio/TimeStretch.h"

namespace quiravent::desktop {

/// Decodes the audio track of a source into a voice, on a thread of its own.
class AudioDecoder {
  public:
    /// Source and voice outlive the decoder.
    AudioDecoder(PacketSource& source, AudioVoice& voice);
    /// The source and the voice must have been closed.
    ~AudioDecoder();
    AudioDecoder(const AudioDecoder&) = delete;
    AudioDecoder& operator=(const AudioDecoder&) = delete;

    /// Why nothing can be decoded; `none` as long as that isn't certain.
    MediaError error() const { return m_error; }
    /// End of the sound decoded last, as a position of the medium.
    int64_t decodedUntil() const { return m_decodedUntil; }

  private:
    void run();
    void begin(const Segment& segment);
    void send(const AVPacket* packet);
    void accept(const AVFrame& sound);
    void push(int64_t position, std::vector<float> samples);
    void finish();

    PacketSource& m_source;
    AudioVoice& m_voice;
    Segment m_segment;
    TrackRef m_opened;
    std::unique_ptr<Decoder> m_decoder;
    Resampler m_resampler;
    TimeStretch m_stretch{1};
    bool m_anchored = false;
    int64_t m_origin = 0;     ///< position at which the frames counted below began
    int64_t m_framesIn = 0;   ///< resampled since m_origin
    int64_t m_framesOut = 0;  ///< pushed since m_origin
    uint32_t m_fruitlessPackets = 0;
    bool m_everDecoded = false;
    std::atomic<int64_t> m_decodedUntil{0};
    std::atomic<MediaError> m_error{MediaError::none};
    std::thread m_thread;
};

}  // namespace quiravent::desktop
