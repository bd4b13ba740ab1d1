#include "media/Av.h"

#include <cstdarg>
#include <new>
#include <string_view>
#include <utility>

namespace quiravent::desktop {

namespace {

template <class Owner, class Object>
Owner owned(Object* object) {
    if (object == nullptr) throw std::bad_alloc();
    return Owner(object);
}

thread_local bool t_certificateRefused = false;

/// Takes the place of what would write messages to standard error. context: see av_log().
void noteMessage(void* context, int level, const char* format, va_list) {
    if (level > AV_LOG_ERROR || context == nullptr) return;
    // Contexts on the libraries' own stacks may have none.
    const AVClass* const kind = *static_cast<const AVClass* const*>(context);
    if (kind == nullptr || kind->class_name == nullptr) return;
    const std::string_view origin = kind->class_name;
    const std::string_view text = format;
    if (origin == "URLContext" && text.find("certificate") != std::string_view::npos)
        t_certificateRefused = true;
}

}  // namespace

AvPacket makePacket() { return owned<AvPacket>(ffmpeg().av_packet_alloc()); }

AvFrame makeFrame() { return owned<AvFrame>(ffmpeg().av_frame_alloc()); }

std::shared_ptr<const AVCodecParameters> copyOf(const AVCodecParameters& codec) {
    auto copy =
        owned<std::unique_ptr<AVCodecParameters, AvDelete>>(ffmpeg().avcodec_parameters_alloc());
    if (ffmpeg().avcodec_parameters_copy(copy.get(), &codec) < 0) throw std::bad_alloc();
    return copy;
}

void quietAv() { ffmpeg().av_log_set_callback(noteMessage); }

bool takeCertificateRefusal() { return std::exchange(t_certificateRefused, false); }

}  // namespace quiravent::desktop
