#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "media/Av.h"

extern "C" {
#include <libavcodec/bsf.h>
}

namespace quiravent::desktop::lineup {

/// Brings coded data into another form without decoding them, packet by packet.
class BitstreamFilter {
  public:
    /// filters: as av_bsf_list_parse_str() takes them. Throws std::bad_alloc.
    BitstreamFilter(const char* filters, const AVCodecParameters& codec);

    /// None when the data can't be brought into the form.
    std::optional<std::vector<uint8_t>> filter(const AVPacket& packet);

  private:
    struct Free {
        void operator()(AVBSFContext* context) const { av_bsf_free(&context); }
    };
    std::unique_ptr<AVBSFContext, Free> m_context;
    bool m_isReady = false;
};

}  // namespace quiravent::desktop::lineup
