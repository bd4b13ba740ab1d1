#include "live/ElementaryStreamParser.h"

#include <algorithm>
#include <new>
#include <utility>

#include "live/sniffStream.h"

namespace quiravent::desktop {

namespace {

struct Decodable {
    StreamCodec codec;
    AVCodecID id;
};

constexpr Decodable kDecodable[] = {
    {StreamCodec::mpeg1Video, AV_CODEC_ID_MPEG1VIDEO},
    {StreamCodec::mpeg2Video, AV_CODEC_ID_MPEG2VIDEO},
    {StreamCodec::h264, AV_CODEC_ID_H264},
    {StreamCodec::hevc, AV_CODEC_ID_HEVC},
    {StreamCodec::mpegAudio, AV_CODEC_ID_MP3},
    {StreamCodec::aac, AV_CODEC_ID_AAC},
    {StreamCodec::aacLatm, AV_CODEC_ID_AAC_LATM},
    {StreamCodec::ac3, AV_CODEC_ID_AC3},
    {StreamCodec::eac3, AV_CODEC_ID_EAC3},
    {StreamCodec::dvbSubtitle, AV_CODEC_ID_DVB_SUBTITLE},
};

TrackKind trackKindOf(StreamCodec codec) {
    switch (kindOf(codec)) {
        case StreamKind::audio:
            return TrackKind::audio;
        case StreamKind::subtitle:
            return TrackKind::subtitle;
        default:
            return TrackKind::video;
    }
}

AVMediaType mediaTypeOf(TrackKind kind) {
    if (kind == TrackKind::video) return AVMEDIA_TYPE_VIDEO;
    return kind == TrackKind::audio ? AVMEDIA_TYPE_AUDIO : AVMEDIA_TYPE_SUBTITLE;
}

TrackRef makeTrack(Pid pid, StreamCodec codec, AVCodecID id) {
    const std::unique_ptr<AVCodecParameters, AvDelete> parameters(
        ffmpeg().avcodec_parameters_alloc());
    if (!parameters) throw std::bad_alloc();
    auto track = std::make_shared<Track>();
    track->kind = trackKindOf(codec);
    track->id = pid;
    parameters->codec_id = id;
    parameters->codec_type = mediaTypeOf(track->kind);
    track->codec = copyOf(*parameters);
    return track;
}

}  // namespace

void ElementaryStreamParser::Close::operator()(AVCodecParserContext* parser) const {
    ffmpeg().av_parser_close(parser);
}

std::unique_ptr<ElementaryStreamParser> ElementaryStreamParser::make(Pid pid, StreamCodec codec) {
    const auto* const found =
        std::find_if(std::begin(kDecodable), std::end(kDecodable),
                     [codec](const Decodable& one) { return one.codec == codec; });
    if (found == std::end(kDecodable)) return nullptr;
    return std::unique_ptr<ElementaryStreamParser>(
        new ElementaryStreamParser(makeTrack(pid, codec, found->id), codec));
}

ElementaryStreamParser::ElementaryStreamParser(TrackRef track, StreamCodec codec)
    : m_track(std::move(track)), m_codec(codec) {
    if (m_track->kind == TrackKind::subtitle) return;
    const AVCodecID id = m_track->codec->codec_id;
    m_context.reset(ffmpeg().avcodec_alloc_context3(nullptr));
    m_parser.reset(ffmpeg().av_parser_init(static_cast<int>(id)));
    if (!m_context || !m_parser) throw std::bad_alloc();
    m_context->codec_id = id;
    m_context->codec_type = m_track->codec->codec_type;
}

ElementaryStreamParser::~ElementaryStreamParser() = default;

std::vector<PacketRef> ElementaryStreamParser::parse(const PesUnit& unit, int64_t pts,
                                                     int64_t dts) {
    std::vector<PacketRef> packets;
    if (!m_parser) {
        if (PacketRef one = subtitle(unit, pts)) packets.push_back(std::move(one));
        return packets;
    }
    if (m_track->kind == TrackKind::video) followAlignment(unit);
    m_padded.assign(unit.data.begin(), unit.data.end());
    m_padded.resize(unit.data.size() + AV_INPUT_BUFFER_PADDING_SIZE);
    const uint8_t* rest = m_padded.data();
    auto left = static_cast<int>(unit.data.size());
    while (left > 0) {
        uint8_t* piece = nullptr;
        int size = 0;
        const int used = ffmpeg().av_parser_parse2(m_parser.get(), m_context.get(), &piece, &size,
                                                   rest, left, pts, dts, 0);
        rest += used;
        left -= used;
        pts = dts = kNoTime;  // which are those of the first piece that begins in the unit
        if (size > 0)
            packets.push_back(
                packet(piece, static_cast<size_t>(size), m_parser->pts, m_parser->dts));
        if (used <= 0 && size <= 0) break;
    }
    return packets;
}

/// What is one picture needn't wait for the next one, which would show where it ends.
void ElementaryStreamParser::followAlignment(const PesUnit& unit) {
    m_isAligned = m_isAligned && isOnePicture(unit.data.data(), unit.data.size(), m_codec);
    if (m_isAligned)
        m_parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
    else
        m_parser->flags &= ~PARSER_FLAG_COMPLETE_FRAMES;
}

PacketRef ElementaryStreamParser::packet(const uint8_t* data, size_t size, int64_t pts,
                                         int64_t dts) {
    auto result = std::make_shared<Packet>();
    result->data = makePacket();
    if (ffmpeg().av_new_packet(result->data.get(), static_cast<int>(size)) < 0)
        throw std::bad_alloc();
    std::copy_n(data, size, result->data->data);
    const bool isAudio = m_track->kind == TrackKind::audio;
    if (isAudio && m_parser->duration > 0 && m_context->sample_rate > 0)
        result->duration = m_parser->duration * kSecond / m_context->sample_rate;
    const bool isIntra = m_parser->pict_type == AV_PICTURE_TYPE_I;
    result->key = isAudio || m_parser->key_frame == 1 || (m_parser->key_frame < 0 && isIntra);
    result->track = m_track->id;
    result->pts = pts != kNoTime ? pts : m_nextTime;
    result->dts = dts != kNoTime ? dts : result->pts;
    m_nextTime = result->end();
    AVPacket& av = *result->data;
    // A picture without a time gets one from the decoder, which knows the order.
    av.pts = isAudio ? result->pts : pts;
    av.dts = isAudio ? result->dts : dts;
    av.duration = result->duration;
    if (result->key) av.flags |= AV_PKT_FLAG_KEY;
    return result;
}

PacketRef ElementaryStreamParser::subtitle(const PesUnit& unit, int64_t pts) const {
    constexpr uint8_t kDvbSubtitles = 0x20;  // ETSI EN 300 743, 7.1: data_identifier
    constexpr size_t kHead = 2;
    const bool isWhole = unit.data.size() > kHead && unit.data[0] == kDvbSubtitles;
    if (!isWhole || pts == kNoTime) return nullptr;
    auto result = std::make_shared<Packet>();
    result->data = makePacket();
    const size_t size = unit.data.size() - kHead;
    if (ffmpeg().av_new_packet(result->data.get(), static_cast<int>(size)) < 0)
        throw std::bad_alloc();
    std::copy_n(unit.data.data() + kHead, size, result->data->data);
    result->track = m_track->id;
    result->pts = result->dts = result->data->pts = pts;
    result->key = true;
    return result;
}

}  // namespace quiravent::desktop
