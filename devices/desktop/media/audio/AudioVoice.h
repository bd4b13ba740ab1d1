#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "media/MediaClock.h"
#include "media/Wakeup.h"

namespace quiravent::desktop {

/// The sound of one player, between its decoder, which waits while enough is there, and the mixer,
/// which takes what is due by the player's clock. Thread-safe.
class AudioVoice {
  public:
    /// Both outlive the voice. wakeup: signalled when sound begins to be there or has ended.
    AudioVoice(const MediaClock& clock, Wakeup& wakeup) : m_clock(clock), m_wakeup(wakeup) {}

    /// Empties the voice for a new segment.
    void reset(uint32_t serial);
    void close();

    /// Sound that begins at a position of the medium, `speed` seconds of which are heard in one.
    struct Chunk {
        int64_t position;
        double speed;
        std::vector<float> samples;  ///< as AudioFormat.h
    };
    /// Waits for room. False when the segment is over.
    bool push(Chunk chunk, uint32_t serial);
    /// No sound follows in the segment.
    void finish(uint32_t serial);

    bool isFinished() const;
    bool isEmpty() const;

    /// 1 is the medium's own loudness.
    void setGain(float gain) { m_gain = gain; }

    /// True while the player's clock runs, thus sound may be due.
    bool isPlaying() const { return m_clock.isRunning(); }

    /// Adds what is heard from that time on.
    void mixInto(float* samples, size_t frames, int64_t heardAt);

  private:
    size_t framesIn(const Chunk& chunk) const;
    int64_t frontPosition() const;
    void skip(size_t frames);
    size_t align(int64_t position, size_t frames);
    void add(float* samples, size_t frames);

    const MediaClock& m_clock;
    Wakeup& m_wakeup;
    std::atomic<float> m_gain{1};

    mutable std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_room;
    std::deque<Chunk> m_chunks;
    size_t m_offset = 0;    ///< frames of the first chunk that have been taken
    size_t m_buffered = 0;  ///< frames
    uint32_t m_serial = 0;
    bool m_finished = false;
    bool m_closed = false;
};

}  // namespace quiravent::desktop
