#include "media/ReverseGroup.h"

#include <algorithm>
#include <utility>

namespace quiravent::desktop {

namespace {

size_t byteSizeOf(const VideoFrame& frame) {
    size_t bytes = 0;
    for (const AVBufferRef* buffer : frame.picture->buf)
        if (buffer != nullptr) bytes += buffer->size;
    return bytes;
}

}  // namespace

void ReverseGroup::keep(VideoFrame frame) {
    m_bytes += byteSizeOf(frame);
    m_frames.push_back(std::move(frame));
    while (m_bytes > kMaxBytes && m_frames.size() > 1) {
        m_bytes -= byteSizeOf(m_frames.front());
        m_frames.pop_front();
    }
}

}  // namespace quiravent::desktop
