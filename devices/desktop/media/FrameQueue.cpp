#include "media/FrameQueue.h"

#include <utility>

namespace quiravent::desktop {

void FrameQueue::reset(uint32_t serial) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_frames.clear();
    m_serial = serial;
    m_finished = false;
    m_room.notify_all();
}

void FrameQueue::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_frames.clear();
    m_room.notify_all();
}

bool FrameQueue::push(VideoFrame frame, uint32_t serial) {
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_room.wait(lock,
                    [&] { return m_closed || serial != m_serial || m_frames.size() < kCapacity; });
        if (m_closed || serial != m_serial) return false;
        m_frames.push_back(std::move(frame));
    }
    m_wakeup.signal();
    return true;
}

void FrameQueue::finish(uint32_t serial) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (serial != m_serial) return;
        m_finished = true;
    }
    m_wakeup.signal();
}

bool FrameQueue::isEmpty() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_frames.empty();
}

bool FrameQueue::isFinished() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_finished;
}

bool FrameQueue::peek(size_t number, VideoFrame& frame) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (number >= m_frames.size()) return false;
    frame = m_frames[number];
    return true;
}

void FrameQueue::pop() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_frames.empty()) return;
    m_frames.pop_front();
    m_room.notify_all();
}

}  // namespace quiravent::desktop
