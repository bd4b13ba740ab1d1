#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

#include "media/Av.h"
#include "media/Wakeup.h"

namespace quiravent::desktop {

/// A decoded picture.
struct VideoFrame {
    std::shared_ptr<const AVFrame> picture;
    int64_t pts = 0;
    int64_t duration = 0;
    AVRational pixelAspect{1, 1};

    int64_t end() const { return pts + duration; }
};

/// Pictures on their way from the decoder, which waits while the queue is full, to the thread that
/// shows them, which is woken. Only those of the present segment get in. Thread-safe.
class FrameQueue {
  public:
    static constexpr size_t kCapacity = 4;

    explicit FrameQueue(Wakeup& wakeup) : m_wakeup(wakeup) {}

    /// Empties the queue for a new segment.
    void reset(uint32_t serial);
    void close();

    /// Waits for room. False when the segment is over.
    bool push(VideoFrame frame, uint32_t serial);
    /// No picture follows in the segment.
    void finish(uint32_t serial);

    bool isEmpty() const;
    bool isFinished() const;
    /// False when there is none. number: 0 is the next one, 1 that after it.
    bool peek(size_t number, VideoFrame& frame) const;
    void pop();

  private:
    Wakeup& m_wakeup;
    mutable std::mutex m_mutex;
    std::condition_variable m_room;
    std::deque<VideoFrame> m_frames;
    uint32_t m_serial = 0;
    bool m_finished = false;
    bool m_closed = false;
};

}  // namespace quiravent::desktop
