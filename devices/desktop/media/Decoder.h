#pragma once

#include <memory>

#include "media/Av.h"
#include "media/Packet.h"

namespace quiravent::desktop {

/// The decoder of one track. For one thread at a time.
class Decoder {
  public:
    /// Null when the track can't be decoded.
    static std::unique_ptr<Decoder> open(const Track& track);

    /// Gives coded data, or null for the end. Every frame must have been received before. False
    /// when the data are unusable, which a decoder survives.
    bool send(const AVPacket* packet);

    /// The next picture or piece of sound, its times in microseconds; null when more data are
    /// needed.
    AvFrame receive();

    /// Whether pictures that no other one needs are left out, which is faster.
    void leaveOutUnreferenced(bool leaveOut) {
        m_context->skip_frame = leaveOut ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    }

    /// Forgets what is half decoded.
    void reset() { ffmpeg().avcodec_flush_buffers(m_context.get()); }

  private:
    explicit Decoder(AvCodecContext context) : m_context(std::move(context)) {}

    AvCodecContext m_context;
};

}  // namespace quiravent::desktop
