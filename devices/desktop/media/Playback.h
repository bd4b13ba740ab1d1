#pragma once

#include <cstdint>
#include <string>

#include "media/AudioDecoder.h"
#include "media/FrameQueue.h"
#include "media/MediaClock.h"
#include "media/PacketSource.h"
#include "media/VideoDecoder.h"
#include "media/VideoPresenter.h"
#include "media/Wakeup.h"
#include "media/audio/AudioMixer.h"
#include "media/audio/AudioVoice.h"

namespace quiravent::desktop {

/// Decodes what a packet source gives, and lets it be seen and heard at its time. For one thread
/// (that which shows pictures), but for what is said to be otherwise.
class Playback {
  public:
    /// All outlive the playback. The source must be closed before the playback is destroyed.
    struct Parts {
        PacketSource& source;
        AudioMixer& mixer;
        VideoOutput& output;
        SurfacePool& pool;
        Wakeup& wakeup;  ///< signalled when tick() should be called
        std::string subtitleFont;
    };
    explicit Playback(const Parts& parts);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    /// Forgets what is decoded, for a new segment of all kinds of track; to be called before the
    /// source begins it. Time stands still at its beginning until something is decoded.
    struct Start {
        uint32_t serial = 0;
        int64_t target = 0;
        double speed = 1;
        bool hasVideo = false;
        bool hasAudio = false;
        /// Positions are times that pass anyway: nothing is waited for, but the first picture is
        /// seen at once.
        bool live = false;
    };
    void begin(const Start& start);
    /// The same for the sound alone, while pictures go on.
    void beginAudio(uint32_t serial);

    /// Whether time passes, once something is decoded.
    void setRunning(bool running);

    /// Does what is due. Returns when it should be called again at the latest.
    int64_t tick(int64_t now);

    /// The first picture and sound of the segment are there.
    bool isPrimed() const { return m_primed; }
    /// Nothing is decoded in advance, though more is to come.
    bool isStarving() const;
    /// All has been seen and heard.
    bool isDrained(int64_t now) const;
    /// Position at which what was decoded ends.
    int64_t decodedEnd() const;
    /// Why nothing can be decoded, or `none`.
    MediaError error() const;
    uint64_t decodedFrames() const { return m_videoDecoder.decodedFrames(); }

    /// Thread-safe.
    const MediaClock& clock() const { return m_clock; }
    /// Sets the position while standing still.
    void hold(int64_t position) { m_clock.setPosition(position); }
    /// Thread-safe.
    AudioVoice& voice() { return m_voice; }
    /// See there which functions are thread-safe.
    VideoPresenter& presenter() { return m_presenter; }

  private:
    bool prime(int64_t now);
    int64_t presentDue(int64_t now);
    void showNext();

    MediaClock m_clock;
    FrameQueue m_frames;
    AudioVoice m_voice;
    AudioMixer& m_mixer;
    VideoPresenter m_presenter;

    Start m_start{};
    bool m_running = false;
    bool m_primed = false;
    bool m_pictureOfSegment = false;  ///< the presenter has one of this segment
    int64_t m_videoThereSince = 0;    ///< 0: not yet

    VideoDecoder m_videoDecoder;  ///< these two use what stands above
    AudioDecoder m_audioDecoder;
};

}  // namespace quiravent::desktop
