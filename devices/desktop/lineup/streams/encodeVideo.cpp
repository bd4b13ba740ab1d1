#include "lineup/streams/encodeVideo.h"

#include <algorithm>
#include <new>

#include "lineup/streams/Encoder.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace quiravent::desktop::lineup {

namespace {

void setOption(AVCodecContext& context, const char* name, const char* value) {
    av_opt_set(context.priv_data, name, value, 0);
}

void configure(const Video& video, AVCodecContext& context) {
    context.width = static_cast<int>(video.width);
    context.height = static_cast<int>(video.height);
    context.pix_fmt = AV_PIX_FMT_YUV420P;
    context.framerate = {video.rate.numerator, video.rate.denominator};
    context.time_base = {video.rate.denominator, video.rate.numerator};
    context.sample_aspect_ratio = {1, 1};
    context.color_range = AVCOL_RANGE_MPEG;
    context.colorspace = AVCOL_SPC_SMPTE170M;
    context.color_primaries = AVCOL_PRI_SMPTE170M;
    context.color_trc = AVCOL_TRC_SMPTE170M;
    context.bit_rate = video.bitRate;
    // Pictures that need it may have more for a while.
    context.rc_max_rate = context.bit_rate * 5 / 4;
    context.rc_buffer_size = static_cast<int>(context.rc_max_rate / 2);
    context.gop_size = std::max(video.rate.numerator / video.rate.denominator / 2, 1);
    context.max_b_frames = 0;
    context.flags |= AV_CODEC_FLAG_CLOSED_GOP;
    context.keyint_min = context.gop_size;
    if (video.codec == VideoCodec::mpeg2) {
        // The library refuses closed groups of pictures together with groups at changes of scene.
        setOption(context, "sc_threshold", "1000000000");
        return;
    }
    setOption(context, "preset", "superfast");
    setOption(context, "aud", "1");
    setOption(context, "forced-idr", "1");
    setOption(context, "x264-params", "scenecut=0:rc-lookahead=0:sync-lookahead=0");
}

const char* encoderOf(VideoCodec codec) {
    return codec == VideoCodec::h264 ? "libx264" : "mpeg2video";
}

void attachCaptions(AVFrame& frame, const std::vector<uint8_t>& data) {
    if (data.empty()) return;
    AVFrameSideData* const place =
        av_frame_new_side_data(&frame, AV_FRAME_DATA_A53_CC, data.size());
    if (place == nullptr) throw std::bad_alloc();
    std::copy(data.begin(), data.end(), place->data);
}

}  // namespace

AccessUnits encodeVideo(const Video& video, const std::string& subject, Pictures& pictures,
                        int64_t count, const CaptionData& captions) {
    Encoder encoder(encoderOf(video.codec), subject,
                    [&video](AVCodecContext& context) { configure(video, context); });
    AccessUnits units;
    const auto add = [&](const AVPacket& packet) {
        const Ticks time = packet.pts * frameDuration(video);
        units.push_back({time,
                         time,
                         (packet.flags & AV_PKT_FLAG_KEY) != 0,
                         {packet.data, packet.data + packet.size}});
    };
    for (int64_t number = 0; number < count; ++number) {
        const AvFrame picture = pictures.picture(number);
        picture->pts = number;
        if (captions) attachCaptions(*picture, captions(number));
        encoder.encode(picture.get(), add);
    }
    encoder.encode(nullptr, add);
    return units;
}

}  // namespace quiravent::desktop::lineup
