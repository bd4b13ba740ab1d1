#include "lineup/streams/Encoder.h"

#include <array>
#include <new>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {

namespace {

[[noreturn]] void fail(const std::string& reason) {
    throw DeviceError(e_pl_status_unavailable, reason);
}

void check(int status, const std::string& subject) {
    if (status >= 0) return;
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(status, text.data(), text.size());
    fail(joined(subject, " can't be coded: ", text.data()));
}

const AVCodec* findEncoder(const char* name, const std::string& subject) {
    const AVCodec* const codec = avcodec_find_encoder_by_name(name);
    if (codec == nullptr) {
        fail(joined(subject, " can't be coded: the installed libavcodec has no encoder ", name,
                    "; choose another \"codec\""));
    }
    return codec;
}

}  // namespace

Encoder::Encoder(const char* name, const std::string& subject, const Configure& configure)
    : m_subject(subject) {
    const AVCodec* const codec = findEncoder(name, subject);
    m_context.reset(avcodec_alloc_context3(codec));
    if (!m_context) throw std::bad_alloc();
    m_context->thread_count = 1;
    m_context->flags |= AV_CODEC_FLAG_BITEXACT;
    configure(*m_context);
    check(avcodec_open2(m_context.get(), codec, nullptr), m_subject);
}

void Encoder::encode(const AVFrame* frame, const Use& use) {
    check(avcodec_send_frame(m_context.get(), frame), m_subject);
    const AvPacket packet = makePacket();
    for (;;) {
        const int status = avcodec_receive_packet(m_context.get(), packet.get());
        if (status == AVERROR(EAGAIN) || status == AVERROR_EOF) return;
        check(status, m_subject);
        use(*packet);
        av_packet_unref(packet.get());
    }
}

}  // namespace quiravent::desktop::lineup
