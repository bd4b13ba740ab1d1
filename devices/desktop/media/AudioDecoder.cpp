#include "media/AudioDecoder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "media/audio/AudioFormat.h"
#include "media/followSource.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// Stated times that are further from the counted ones mean a gap in the sound.
constexpr int64_t kGap = 60 * kMillisecond;

}  // namespace

AudioDecoder::AudioDecoder(PacketSource& source, AudioVoice& voice)
    : m_source(source), m_voice(voice), m_thread(startThread("media-audio", [this] { run(); })) {}

AudioDecoder::~AudioDecoder() { m_thread.join(); }

void AudioDecoder::run() {
    followSource(
        m_source, TrackKind::audio, m_segment, [this](const Segment& segment) { begin(segment); },
        [this](const PacketSource::Read& read) {
            if (m_decoder) send(read.packet->data.get());
        },
        [this] { finish(); });
}

void AudioDecoder::begin(const Segment& segment) {
    m_segment = segment;
    m_anchored = false;
    m_resampler.reset();
    m_stretch = TimeStretch(segment.speed);
    m_decodedUntil = segment.target;
    if (!segment.track) return;
    if (m_opened == segment.track) {
        m_decoder->reset();
        return;
    }
    m_fruitlessPackets = 0;
    m_everDecoded = false;
    m_error = MediaError::none;
    m_decoder = Decoder::open(*segment.track);
    m_opened = m_decoder ? segment.track : nullptr;
    if (m_decoder) return;
    m_error = MediaError::unknownCodec;
    m_voice.finish(m_segment.serial);
}

void AudioDecoder::send(const AVPacket* packet) {
    m_decoder->send(packet);
    ++m_fruitlessPackets;
    while (const AvFrame sound = m_decoder->receive()) {
        m_fruitlessPackets = 0;
        m_everDecoded = true;
        accept(*sound);
    }
    if (m_everDecoded || m_fruitlessPackets < kMaxFruitlessPackets) return;
    m_error = MediaError::undecodable;
    m_voice.finish(m_segment.serial);
}

void AudioDecoder::accept(const AVFrame& sound) {
    std::vector<float> samples = m_resampler.convert(sound);
    if (samples.empty()) return;
    const int64_t counted = m_origin + audioDuration(static_cast<size_t>(m_framesIn));
    const int64_t stated = sound.best_effort_timestamp;
    const bool gap = stated != kNoTime && std::abs(stated - counted) > kGap;
    if (!m_anchored || gap) {
        m_origin = stated != kNoTime ? stated : m_segment.target;
        m_framesIn = 0;
        m_framesOut = 0;
        if (m_anchored) m_stretch = TimeStretch(m_segment.speed);
        m_anchored = true;
    }
    const int64_t begin = m_origin + audioDuration(static_cast<size_t>(m_framesIn));
    m_framesIn += static_cast<int64_t>(samples.size() / kAudioChannels);
    const int64_t early = (m_segment.target - begin) * kAudioRate / kSecond;
    if (early > 0) {
        const size_t skipped =
            std::min(static_cast<size_t>(early) * kAudioChannels, samples.size());
        samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(skipped));
        m_origin = begin + audioDuration(skipped / kAudioChannels);
        m_framesIn = static_cast<int64_t>(samples.size() / kAudioChannels);
        m_framesOut = 0;
    }
    push(m_origin, m_stretch.process(samples));
}

void AudioDecoder::push(int64_t position, std::vector<float> samples) {
    if (samples.empty()) return;
    const double speed = m_segment.speed;
    const auto heard = static_cast<double>(audioDuration(static_cast<size_t>(m_framesOut)));
    position += std::llround(heard * speed);
    m_framesOut += static_cast<int64_t>(samples.size() / kAudioChannels);
    m_decodedUntil = m_origin + audioDuration(static_cast<size_t>(m_framesIn));
    m_voice.push({position, speed, std::move(samples)}, m_segment.serial);
}

void AudioDecoder::finish() {
    if (m_decoder) {
        send(nullptr);
        m_decoder->reset();
        if (!m_everDecoded) m_error = MediaError::undecodable;
    }
    m_voice.finish(m_segment.serial);
}

}  // namespace quiravent::desktop
