#pragma once

#include <functional>
#include <string>

#include "lineup/description/Lineup.h"
#include "media/Av.h"

namespace quiravent::desktop::lineup {

/// An encoder of the FFmpeg libraries that has been opened. Works on the thread that calls it, so
/// that the same input always gives the same bytes.
class Encoder {
  public:
    using Configure = std::function<void(AVCodecContext&)>;
    using Use = std::function<void(const AVPacket&)>;

    /// Throws DeviceError when the library lacks the encoder, or refuses what is configured.
    /// subject: what it is for, for the message.
    Encoder(const char* name, const std::string& subject, const Configure& configure);

    const AVCodecContext& context() const { return *m_context; }

    /// Takes a frame, or null for the end, and calls use for each packet that is finished.
    void encode(const AVFrame* frame, const Use& use);

  private:
    std::string m_subject;
    AvCodecContext m_context;
};

}  // namespace quiravent::desktop::lineup
