#include "media/Thumbnailer.h"

#include <algorithm>
#include <utility>

namespace quiravent::desktop {

namespace {

constexpr size_t kMaxKnown = 8;

InputLimits withTimeLimit(InputLimits limits) {
    limits.timeLimit = std::min(limits.timeLimit, Thumbnailer::kTimeLimit);
    return limits;
}

}  // namespace

Thumbnailer::Thumbnailer(std::string location, InputLimits limits)
    : m_location(std::move(location)), m_limits(withTimeLimit(std::move(limits))) {}

MediaError Thumbnailer::open() {
    auto input = std::make_unique<MediaInput>(m_limits, m_cancelled);
    const MediaError error = input->open(m_location);
    if (error != MediaError::none) return error;
    const auto& tracks = input->info().tracks;
    const auto video = std::find_if(tracks.begin(), tracks.end(), [](const TrackRef& track) {
        return track->kind == TrackKind::video;
    });
    if (video == tracks.end()) return MediaError::noTracks;
    m_decoder = Decoder::open(**video);
    if (!m_decoder) return MediaError::unknownCodec;
    m_track = *video;
    input->readOnly(m_track->id);
    m_input = std::move(input);
    return MediaError::none;
}

MediaError Thumbnailer::decode(int64_t position, VideoFrame& frame) {
    const auto known = std::find_if(m_known.begin(), m_known.end(), [&](const VideoFrame& one) {
        return one.pts <= position && position < one.end();
    });
    if (known != m_known.end()) {
        frame = *known;
        return MediaError::none;
    }
    MediaError error = m_input->seekToKey(position, m_track->id);
    if (error != MediaError::none) return error;
    PacketRef packet = m_input->read(error);
    while (packet && !(packet->track == m_track->id && packet->key)) packet = m_input->read(error);
    if (!packet) return error == MediaError::none ? MediaError::undecodable : error;
    m_decoder->reset();
    m_decoder->send(packet->data.get());
    m_decoder->send(nullptr);
    AvFrame picture = m_decoder->receive();
    m_decoder->reset();
    if (!picture) return MediaError::undecodable;
    frame.pts = std::min(packet->pts, position);
    frame.duration = position + 1 - frame.pts;
    frame.pixelAspect = m_track->pixelAspect;
    frame.picture = std::shared_ptr<const AVFrame>(std::move(picture));
    frame = m_deinterlacer.first(frame);
    if (m_known.size() == kMaxKnown) m_known.erase(m_known.begin());
    m_known.push_back(frame);
    return MediaError::none;
}

Result<std::shared_ptr<Surface>> Thumbnailer::make(int64_t position, uint32_t width,
                                                   uint32_t height, SurfacePool& pool) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    MediaError error = m_input ? MediaError::none : open();
    VideoFrame frame;
    if (error == MediaError::none) error = decode(position, frame);
    if (error != MediaError::none) return Failure{describe(error)};
    std::shared_ptr<Surface> surface = m_scaler.scale(frame, width, height, pool);
    if (!surface) return Failure{describe(MediaError::noMemory)};
    return surface;
}

}  // namespace quiravent::desktop
