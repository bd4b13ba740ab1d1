#include "lineup/streams/copyTrack.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "lineup/streams/BitstreamFilter.h"
#include "lineup/streams/adts.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr Ticks kTicksPerMicrosecond = kPcrRate / kSecond;

void checkCodec(const MediaTrack& track, AVCodecID codec, const Place& copy) {
    if (track.track().codec->codec_id == codec) return;
    refuseValue(
        copy, true,
        joined("false, since the medium has ", avcodec_get_name(track.track().codec->codec_id),
               ", not ", avcodec_get_name(codec)));
}

using Data = std::vector<uint8_t>;
using Convert = std::function<Data(const AVPacket&)>;

/// Units from the first key one on, as many as are decoded within the loop's length.
AccessUnits copyUnits(MediaTrack& track, Ticks loop, const Convert& convert) {
    AccessUnits units;
    std::optional<Ticks> first;
    for (;;) {
        const PacketRef packet = track.read();
        if (!packet && !first) track.refuse("it has nothing that decoding can begin with");
        if (!packet || (!first && !packet->key)) continue;
        const Ticks dts = (packet->dts + track.begin()) * kTicksPerMicrosecond;
        const Ticks pts = (packet->pts + track.begin()) * kTicksPerMicrosecond;
        if (!first) first = dts;
        if (dts >= *first + loop) return units;
        // Where a medium begins again, its first units may lie before the last ones.
        if (!units.empty() && dts <= units.back().dts) continue;
        units.push_back({std::max(pts, dts), dts, packet->key, convert(*packet->data)});
    }
}

/// The head of AAC's configuration in a file (ISO/IEC 14496-3, 1.6.2.1).
struct AacConfiguration {
    unsigned objectType;
    unsigned rateIndex;
    unsigned channels;
};

AacConfiguration configurationOf(const AVCodecParameters& codec) {
    const unsigned bits = static_cast<unsigned>(codec.extradata[0] << 8 | codec.extradata[1]);
    return {bits >> 11, bits >> 7 & 0xF, bits >> 3 & 0xF};
}

Convert audioConversion(const MediaTrack& track, AudioCodec codec, const Place& copy) {
    const Convert plain = [](const AVPacket& packet) {
        return Data(packet.data, packet.data + packet.size);
    };
    const AVCodecParameters& parameters = *track.track().codec;
    // Without a configuration, the sound has headers already.
    if (codec != AudioCodec::aac || parameters.extradata_size < 2) return plain;
    const AacConfiguration configuration = configurationOf(parameters);
    constexpr unsigned kMostObjectType = 4;
    constexpr unsigned kMostRateIndex = 12;
    if (configuration.objectType < 1 || configuration.objectType > kMostObjectType ||
        configuration.rateIndex > kMostRateIndex || configuration.channels == 0) {
        refuseValue(copy, true, "false, since ADTS headers can't tell how the sound is coded");
    }
    return [configuration](const AVPacket& packet) {
        return withAdtsHeader(
            {configuration.objectType, configuration.rateIndex, configuration.channels},
            packet.data, static_cast<size_t>(packet.size));
    };
}

}  // namespace

AccessUnits copyVideo(const Video& video, MediaTrack& track, Ticks loop, const Place& copy) {
    const bool isH264 = video.codec == VideoCodec::h264;
    checkCodec(track, isH264 ? AV_CODEC_ID_H264 : AV_CODEC_ID_MPEG2VIDEO, copy);
    // Files keep H.264 without start codes and without delimiters, which a transport stream needs.
    BitstreamFilter filter(isH264 ? "h264_mp4toannexb,h264_metadata=aud=insert" : "null",
                           *track.track().codec);
    return copyUnits(track, loop, [&](const AVPacket& packet) {
        std::optional<Data> data = filter.filter(packet);
        if (!data) track.refuse("its video can't be brought into the form of a stream");
        return std::move(*data);
    });
}

AccessUnits copyAudio(const Audio& audio, MediaTrack& track, Ticks loop, const Place& copy) {
    checkCodec(track, audio.codec == AudioCodec::aac ? AV_CODEC_ID_AAC : AV_CODEC_ID_MP2, copy);
    return copyUnits(track, loop, audioConversion(track, audio.codec, copy));
}

}  // namespace quiravent::desktop::lineup
