#include "media/Av.h"

#include <new>

extern "C" {
#include <libavutil/log.h>
}

namespace quiravent::desktop {

namespace {

template <class Owner, class Object>
Owner owned(Object* object) {
    if (object == nullptr) throw std::bad_alloc();
    return Owner(object);
}

}  // namespace

AvPacket makePacket() { return owned<AvPacket>(av_packet_alloc()); }

AvFrame makeFrame() { return owned<AvFrame>(av_frame_alloc()); }

std::shared_ptr<const AVCodecParameters> copyOf(const AVCodecParameters& codec) {
    auto copy = owned<std::unique_ptr<AVCodecParameters, AvDelete>>(avcodec_parameters_alloc());
    if (avcodec_parameters_copy(copy.get(), &codec) < 0) throw std::bad_alloc();
    return copy;
}

void quietAv() { av_log_set_level(AV_LOG_QUIET); }

}  // namespace quiravent::desktop
