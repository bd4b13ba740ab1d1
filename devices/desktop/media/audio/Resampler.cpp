#include "media/audio/Resampler.h"

#include <algorithm>

#include "media/audio/AudioFormat.h"

namespace quiravent::desktop {

Resampler::Resampler() = default;
Resampler::~Resampler() = default;

void Resampler::Free::operator()(SwrContext* context) const { ffmpeg().swr_free(&context); }

bool Resampler::prepare(const AVFrame& frame) {
    const int channels = frame.ch_layout.nb_channels;
    if (m_context && m_rate == frame.sample_rate && m_format == frame.format &&
        m_channels == channels)
        return true;
    AVChannelLayout from{};
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        ffmpeg().av_channel_layout_default(&from, channels);
    else if (ffmpeg().av_channel_layout_copy(&from, &frame.ch_layout) < 0)
        return false;
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    SwrContext* context = nullptr;
    const int made = ffmpeg().swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_FLT, kAudioRate,
                                                  &from, static_cast<AVSampleFormat>(frame.format),
                                                  frame.sample_rate, 0, nullptr);
    ffmpeg().av_channel_layout_uninit(&from);
    m_context.reset(context);
    if (made < 0 || ffmpeg().swr_init(context) < 0) {
        m_context.reset();
        return false;
    }
    m_rate = frame.sample_rate;
    m_format = frame.format;
    m_channels = channels;
    return true;
}

std::vector<float> Resampler::convert(const AVFrame& frame) {
    if (frame.sample_rate <= 0 || frame.nb_samples <= 0 || !prepare(frame)) return {};
    const int room = ffmpeg().swr_get_out_samples(m_context.get(), frame.nb_samples);
    if (room <= 0) return {};
    std::vector<float> samples(static_cast<size_t>(room) * kAudioChannels);
    auto* out = reinterpret_cast<uint8_t*>(samples.data());
    const int count =
        ffmpeg().swr_convert(m_context.get(), &out, room,
                             const_cast<const uint8_t**>(frame.extended_data), frame.nb_samples);
    samples.resize(static_cast<size_t>(std::max(count, 0)) * kAudioChannels);
    return samples;
}

}  // namespace quiravent::desktop
