#include "media/MediaInput.h"

#include <algorithm>
#include <string>
#include <utility>

#include "media/Language.h"
#include "media/VariantChoice.h"
#include "resources/Location.h"
#include "support/Clock.h"

namespace quiravent::desktop {

namespace {

class Options {
  public:
    void set(const char* name, const std::string& value) {
        ffmpeg().av_dict_set(&m_dictionary, name, value.c_str(), 0);
    }
    ~Options() { ffmpeg().av_dict_free(&m_dictionary); }
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    AVDictionary** get() { return &m_dictionary; }

  private:
    AVDictionary* m_dictionary = nullptr;
};

void setNetworkOptions(Options& options, int64_t timeLimit) {
    options.set("rw_timeout", std::to_string(timeLimit));
    options.set("user_agent", "Quiravent");
    // These two are for reading only: an open that fails is told at once.
    options.set("reconnect", "1");
    options.set("reconnect_delay_max", "2");
    options.set("protocol_whitelist", "http,https,tls,tcp,crypto,data");
}

/// The class of an error, with what the libraries tell beside it.
MediaError errorOf(int averror) {
    return takeCertificateRefusal() ? MediaError::untrusted : mediaErrorOf(averror);
}

bool isPlayable(const AVStream& stream) {
    if (stream.discard == AVDISCARD_ALL) return false;
    if ((stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) return false;
    switch (stream.codecpar->codec_type) {
        case AVMEDIA_TYPE_VIDEO:
        case AVMEDIA_TYPE_AUDIO:
        case AVMEDIA_TYPE_SUBTITLE:
            return true;
        default:
            return false;
    }
}

TrackKind kindOf(const AVCodecParameters& codec) {
    if (codec.codec_type == AVMEDIA_TYPE_VIDEO) return TrackKind::video;
    return codec.codec_type == AVMEDIA_TYPE_AUDIO ? TrackKind::audio : TrackKind::subtitle;
}

int64_t frameDurationOf(const AVStream& stream) {
    AVRational rate = stream.avg_frame_rate;
    if (rate.num <= 0 || rate.den <= 0) rate = stream.r_frame_rate;
    if (rate.num <= 0 || rate.den <= 0) return 0;
    constexpr int64_t kLongest = kSecond;
    return std::min(ffmpeg().av_rescale(kSecond, rate.den, rate.num), kLongest);
}

}  // namespace

MediaInput::MediaInput(const InputLimits& limits, const std::atomic<bool>& cancelled)
    : m_limits(limits), m_cancelled(cancelled) {}

int MediaInput::isInterrupted(void* input) {
    const auto* self = static_cast<const MediaInput*>(input);
    return self->m_cancelled || clock::now() >= self->m_deadline ? 1 : 0;
}

/// Opens the medium itself, or a part of it that a playlist names, which doesn't inherit what its
/// playlist was opened with. FFmpeg by itself believes any server to be who it says; here it needs
/// a certificate that the machine trusts.
int MediaInput::openPart(AVFormatContext* format, AVIOContext** stream, const char* url, int flags,
                         AVDictionary** options) {
    const auto& self = *static_cast<const MediaInput*>(format->opaque);
    Options own;
    AVDictionary** const all = options == nullptr ? own.get() : options;
    ffmpeg().av_dict_set(all, "tls_verify", "1", 0);
    if (!self.m_limits.authorities.empty())
        ffmpeg().av_dict_set(all, "ca_file", self.m_limits.authorities.c_str(), 0);
    return self.m_openAny(format, stream, url, flags, all);
}

MediaError MediaInput::open(const std::string& location) {
    const Result<Location> place = parseLocation(location);
    if (!place) return MediaError::badLocation;
    m_info.remote = place->kind == Location::Kind::http;
    m_deadline = clock::now() + m_limits.timeLimit;
    const MediaError error =
        openFormat(m_info.remote ? place->target : "file:" + place->target, m_info.remote);
    m_deadline = INT64_MAX;
    return error;
}

MediaError MediaInput::openFormat(const std::string& target, bool remote) {
    Options options;
    if (remote)
        setNetworkOptions(options, m_limits.timeLimit);
    else
        options.set("protocol_whitelist", "file,crypto,data,http,https,tls,tcp");
    AVFormatContext* format = ffmpeg().avformat_alloc_context();
    if (format == nullptr) return MediaError::noMemory;
    format->interrupt_callback = {&MediaInput::isInterrupted, this};
    m_openAny = format->io_open;
    format->io_open = &MediaInput::openPart;
    format->opaque = this;
    takeCertificateRefusal();  // of who used the thread before
    format->probesize = 2 << 20;
    format->max_analyze_duration = 2 * kSecond;
    // When this fails the context is freed.
    int result = ffmpeg().avformat_open_input(&format, target.c_str(), nullptr, options.get());
    if (result < 0) return errorOf(result);
    m_format.reset(format);
    chooseVariant(*format, m_limits.bandwidth);
    result = ffmpeg().avformat_find_stream_info(format, nullptr);
    if (result < 0) return errorOf(result);
    return findTracks();
}

MediaError MediaInput::findTracks() {
    bool unknownCodec = false;
    for (unsigned index = 0; index < m_format->nb_streams; ++index) {
        AVStream& stream = *m_format->streams[index];
        const bool playable = isPlayable(stream);
        const bool decodable =
            playable && ffmpeg().avcodec_find_decoder(stream.codecpar->codec_id) != nullptr;
        unknownCodec |= playable && !decodable;
        if (decodable)
            m_info.tracks.push_back(trackOf(stream));
        else
            stream.discard = AVDISCARD_ALL;
    }
    const auto isHeardOrSeen = [](const TrackRef& track) {
        return track->kind != TrackKind::subtitle;
    };
    if (std::none_of(m_info.tracks.begin(), m_info.tracks.end(), isHeardOrSeen))
        return unknownCodec ? MediaError::unknownCodec : MediaError::noTracks;
    m_info.duration =
        m_format->duration == AV_NOPTS_VALUE ? 0 : std::max<int64_t>(m_format->duration, 0);
    const bool mayJump = (m_format->iformat->flags & AVFMT_TS_DISCONT) != 0;
    m_timelines.assign(m_format->nb_streams, Timeline(m_info.duration, mayJump));
    const bool byteSeekable =
        m_format->pb == nullptr || (m_format->pb->seekable & AVIO_SEEKABLE_NORMAL) != 0;
    const bool playlist = (m_format->iformat->flags & AVFMT_NOFILE) != 0 ||
                          m_format->iformat->read_seek != nullptr ||
                          m_format->iformat->read_seek2 != nullptr;
    m_info.seekable = m_info.duration > 0 && (byteSeekable || playlist) &&
                      (m_format->ctx_flags & AVFMTCTX_UNSEEKABLE) == 0;
    return MediaError::none;
}

TrackRef MediaInput::trackOf(const AVStream& stream) const {
    Track track;
    track.kind = kindOf(*stream.codecpar);
    track.id = static_cast<uint32_t>(stream.index);
    const AVDictionaryEntry* language =
        ffmpeg().av_dict_get(stream.metadata, "language", nullptr, 0);
    track.language = languageCode(language == nullptr ? nullptr : language->value);
    track.codec = copyOf(*stream.codecpar);
    track.frameDuration = frameDurationOf(stream);
    AVRational aspect = stream.sample_aspect_ratio;
    if (aspect.num <= 0 || aspect.den <= 0) aspect = stream.codecpar->sample_aspect_ratio;
    if (aspect.num > 0 && aspect.den > 0) track.pixelAspect = aspect;
    return std::make_shared<const Track>(std::move(track));
}

int64_t MediaInput::mediumStart() const {
    return m_format->start_time == AV_NOPTS_VALUE ? 0 : m_format->start_time;
}

MediaError MediaInput::seek(int64_t position, uint32_t leading) {
    const AVStream& stream = *m_format->streams[leading];
    const int64_t time =
        ffmpeg().av_rescale_q(position + mediumStart(), kMicroseconds, stream.time_base);
    const int result = ffmpeg().av_seek_frame(m_format.get(), static_cast<int>(leading), time,
                                              AVSEEK_FLAG_BACKWARD);
    for (Timeline& timeline : m_timelines) timeline.restart(position);
    if (result >= 0) return MediaError::none;
    // A position that the index doesn't reach down to is the beginning.
    const int again = ffmpeg().avformat_seek_file(m_format.get(), static_cast<int>(leading),
                                                  INT64_MIN, time, INT64_MAX, AVSEEK_FLAG_BACKWARD);
    if (again >= 0) return MediaError::none;
    const MediaError error = mediaErrorOf(again);
    return error == MediaError::unknown ? MediaError::notSeekable : error;
}

MediaError MediaInput::seekToKey(int64_t position, uint32_t leading) {
    // Where a format has no index, or one by segments, a seek may land behind the key packet that
    // is needed: then go further back, until there is one or the medium begins.
    // Where times are looked for in the packets, they are those of decoding: at that at which the
    // first picture is seen some have passed.
    const int64_t first = m_format->iformat->read_timestamp != nullptr ? -kSecond : 0;
    for (int64_t back = 0;; back = back * 2 + kSecond) {
        m_read.clear();
        const int64_t from = std::max(position - back, first);
        const MediaError failed = seek(from, leading);
        if (failed != MediaError::none) return failed;
        MediaError error = MediaError::none;
        bool found = false;
        while (!found) {
            PacketRef packet = readNext(error);
            if (!packet) break;
            found = packet->track == leading && packet->key;
            const bool usable = found && packet->pts <= position;
            m_read.push_back(std::move(packet));
            if (!usable) continue;
            leaveOutBeforeKey(leading);
            return MediaError::none;
        }
        if (error != MediaError::none) return error;
        if (from == first || m_cancelled) return MediaError::none;
    }
}

/// What comes before the key packet can't be decoded, and would be taken for what was read.
void MediaInput::leaveOutBeforeKey(uint32_t leading) {
    const auto cannotBegin = [leading](const PacketRef& packet) {
        return packet->track == leading && !packet->key;
    };
    m_read.erase(std::remove_if(m_read.begin(), m_read.end(), cannotBegin), m_read.end());
}

PacketRef MediaInput::read(MediaError& error) {
    error = MediaError::none;
    if (m_read.empty()) return readNext(error);
    PacketRef packet = std::move(m_read.front());
    m_read.pop_front();
    return packet;
}

PacketRef MediaInput::readNext(MediaError& error) {
    error = MediaError::none;
    while (true) {
        AvPacket data = makePacket();
        const int result = ffmpeg().av_read_frame(m_format.get(), data.get());
        if (result < 0) {
            const int transfer = m_format->pb == nullptr ? 0 : m_format->pb->error;
            if (result != AVERROR_EOF)
                error = errorOf(result);
            else if (transfer < 0 && transfer != AVERROR_EOF)
                error = errorOf(transfer);
            return nullptr;
        }
        const auto index = static_cast<size_t>(data->stream_index);
        if (index >= m_timelines.size()) continue;  // a stream that turned up later
        if (m_format->streams[index]->discard == AVDISCARD_ALL) continue;
        return toPacket(std::move(data));
    }
}

PacketRef MediaInput::toPacket(AvPacket data) {
    const auto index = static_cast<size_t>(data->stream_index);
    ffmpeg().av_packet_rescale_ts(data.get(), m_format->streams[index]->time_base, kMicroseconds);
    if (data->pts != AV_NOPTS_VALUE) data->pts -= mediumStart();
    if (data->dts != AV_NOPTS_VALUE) data->dts -= mediumStart();
    const bool sparse = m_format->streams[index]->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
    if (sparse)
        Timeline(m_info.duration, false).place(data->pts, data->dts, data->duration);
    else
        m_timelines[index].place(data->pts, data->dts, data->duration);
    auto packet = std::make_shared<Packet>();
    packet->track = static_cast<uint32_t>(index);
    packet->pts = data->pts;
    packet->dts = data->dts;
    packet->duration = data->duration;
    packet->key = (data->flags & AV_PKT_FLAG_KEY) != 0;
    packet->sparse = sparse;
    packet->data = std::move(data);
    return packet;
}

void MediaInput::readOnly(uint32_t track) {
    for (unsigned index = 0; index < m_format->nb_streams; ++index)
        if (index != track) m_format->streams[index]->discard = AVDISCARD_ALL;
}

}  // namespace quiravent::desktop
