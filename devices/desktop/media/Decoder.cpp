#include "media/Decoder.h"

#include <algorithm>
#include <thread>

namespace quiravent::desktop {

namespace {

/// Threads cost a picture of delay each; up to this size one decodes fast enough, also up to the
/// target of a seek.
constexpr int kPixelsForOneThread = 720 * 576;
constexpr unsigned kMaxThreads = 4;

int threadsFor(const AVCodecParameters& codec) {
    if (codec.codec_type != AVMEDIA_TYPE_VIDEO) return 1;
    if (int64_t{codec.width} * codec.height <= kPixelsForOneThread) return 1;
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMaxThreads));
}

}  // namespace

std::unique_ptr<Decoder> Decoder::open(const Track& track) {
    const AVCodec* codec = ffmpeg().avcodec_find_decoder(track.codec->codec_id);
    if (codec == nullptr) return nullptr;
    AvCodecContext context(ffmpeg().avcodec_alloc_context3(codec));
    if (!context || ffmpeg().avcodec_parameters_to_context(context.get(), track.codec.get()) < 0)
        return nullptr;
    context->pkt_timebase = kMicroseconds;
    context->thread_count = threadsFor(*track.codec);
    if (ffmpeg().avcodec_open2(context.get(), codec, nullptr) < 0) return nullptr;
    return std::unique_ptr<Decoder>(new Decoder(std::move(context)));
}

bool Decoder::send(const AVPacket* packet) {
    const int result = ffmpeg().avcodec_send_packet(m_context.get(), packet);
    return result >= 0 || result == AVERROR_EOF;
}

AvFrame Decoder::receive() {
    AvFrame frame = makeFrame();
    if (ffmpeg().avcodec_receive_frame(m_context.get(), frame.get()) < 0) return nullptr;
    return frame;
}

}  // namespace quiravent::desktop
