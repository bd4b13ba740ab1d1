#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "media/Decoder.h"
#include "media/FrameQueue.h"

namespace quiravent::desktop {

/// Decodes a group of pictures, which can only be done forwards, so that it can be shown
/// backwards. Of a group that is too large for the memory only the last pictures are kept, and the
/// group is decoded again for those before.
class ReverseGroup {
  public:
    static constexpr size_t kMaxBytes = 96U << 20;

    /// Both outlive the object. group: beginning with a key packet.
    ReverseGroup(Decoder& decoder, const std::vector<PacketRef>& group)
        : m_decoder(decoder), m_group(group) {}

    /// Decodes the pictures that begin before a position, as many of the last ones as there is
    /// memory for. False when there is none. toFrame(AvFrame) gives a VideoFrame.
    template <class ToFrame>
    bool decodeBefore(int64_t position, ToFrame toFrame) {
        m_frames.clear();
        m_bytes = 0;
        m_decoder.reset();
        for (const PacketRef& packet : m_group) decode(packet->data.get(), position, toFrame);
        decode(nullptr, position, toFrame);
        m_decoder.reset();
        return !m_frames.empty();
    }

    /// What the last call decoded, in the order of time.
    const std::deque<VideoFrame>& frames() const { return m_frames; }

  private:
    template <class ToFrame>
    void decode(const AVPacket* packet, int64_t position, ToFrame& toFrame) {
        m_decoder.send(packet);
        while (AvFrame picture = m_decoder.receive()) {
            VideoFrame frame = toFrame(std::move(picture));
            if (frame.pts < position) keep(std::move(frame));
        }
    }
    void keep(VideoFrame frame);

    Decoder& m_decoder;
    const std::vector<PacketRef>& m_group;
    std::deque<VideoFrame> m_frames;
    size_t m_bytes = 0;
};

}  // namespace quiravent::desktop
