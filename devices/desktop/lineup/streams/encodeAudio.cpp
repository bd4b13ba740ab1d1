#include "lineup/streams/encodeAudio.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "lineup/streams/Encoder.h"
#include "lineup/streams/adts.h"
#include "media/audio/AudioFormat.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace quiravent::desktop::lineup {

namespace {

static_assert(kSampleRate == kAudioRate);

/// Coded frames before the loop's beginning and after its end, which are left out: what is coded
/// of a frame depends on its neighbours, and coders give their first one late.
constexpr int64_t kRunIn = 4;

void configure(const Audio& audio, AVCodecContext& context) {
    context.sample_rate = kAudioRate;
    av_channel_layout_default(&context.ch_layout, kAudioChannels);
    context.bit_rate = audio.bitRate;
    context.sample_fmt = audio.codec == AudioCodec::aac ? AV_SAMPLE_FMT_FLTP : AV_SAMPLE_FMT_S16;
    context.time_base = {1, kAudioRate};
}

int16_t toInteger(float sample) {
    return static_cast<int16_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * 32767));
}

void store(float sample, int frame, int channel, AVFrame& piece) {
    if (piece.format == AV_SAMPLE_FMT_FLTP) {
        reinterpret_cast<float*>(piece.data[channel])[frame] = sample;
    } else {
        reinterpret_cast<int16_t*>(piece.data[0])[frame * kAudioChannels + channel] =
            toInteger(sample);
    }
}

/// The piece of the sound from that frame on, which may lie before its beginning.
AvFrame pieceOf(const Sound& sound, int64_t start, const AVCodecContext& context) {
    AvFrame piece = makeFrame();
    piece->format = context.sample_fmt;
    piece->sample_rate = context.sample_rate;
    av_channel_layout_default(&piece->ch_layout, kAudioChannels);
    piece->nb_samples = context.frame_size;
    piece->pts = start;
    if (av_frame_get_buffer(piece.get(), 0) < 0) throw std::bad_alloc();
    const auto length = static_cast<int64_t>(sound.size()) / kAudioChannels;
    for (int i = 0; i < piece->nb_samples; ++i) {
        const auto frame = static_cast<size_t>(((start + i) % length + length) % length);
        for (int channel = 0; channel < kAudioChannels; ++channel) {
            store(sound[frame * kAudioChannels + static_cast<size_t>(channel)], i, channel, *piece);
        }
    }
    return piece;
}

std::vector<uint8_t> bytesOf(const AVPacket& packet, AudioCodec codec) {
    const auto size = static_cast<size_t>(packet.size);
    if (codec == AudioCodec::aac) return withAdtsHeader(AacForm(), packet.data, size);
    return {packet.data, packet.data + size};
}

}  // namespace

Sound makeTone(double frequency, int64_t frames) {
    constexpr double kLevel = 0.25;
    constexpr double kTurn = 6.283185307179586;
    const double turns =
        std::max(std::round(frequency * static_cast<double>(frames) / kAudioRate), 1.0);
    Sound sound;
    sound.reserve(static_cast<size_t>(frames) * kAudioChannels);
    for (int64_t i = 0; i < frames; ++i) {
        const double part = static_cast<double>(i) * turns / static_cast<double>(frames);
        const auto sample = static_cast<float>(kLevel * std::sin(kTurn * std::fmod(part, 1.0)));
        sound.insert(sound.end(), kAudioChannels, sample);
    }
    return sound;
}

AccessUnits encodeAudio(const Audio& audio, const std::string& subject, const Sound& sound,
                        int64_t count) {
    const char* const name = audio.codec == AudioCodec::aac ? "aac" : "mp2";
    Encoder encoder(name, subject,
                    [&audio](AVCodecContext& context) { configure(audio, context); });
    const int64_t size = encoder.context().frame_size;
    // A coder gives its frames early by a padding that need not be whole frames: the sound is moved
    // by the rest, so that what comes out begins where the loop does.
    const int64_t shift = encoder.context().initial_padding % size;
    AccessUnits units;
    const auto add = [&](const AVPacket& packet) {
        if (packet.pts < 0 || packet.pts >= count * size) return;
        const Ticks time = packet.pts / size * frameDuration(audio);
        units.push_back({time, time, true, bytesOf(packet, audio.codec)});
    };
    for (int64_t i = -kRunIn; i < count + kRunIn; ++i) {
        encoder.encode(pieceOf(sound, i * size + shift, encoder.context()).get(), add);
    }
    encoder.encode(nullptr, add);
    return units;
}

}  // namespace quiravent::desktop::lineup
