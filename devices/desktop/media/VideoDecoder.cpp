#include "media/VideoDecoder.h"

#include <utility>

#include "media/ReverseGroup.h"
#include "media/followSource.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// Beyond this speed only key pictures are shown.
constexpr double kFastestAllBackwards = -2;
constexpr int64_t kUsualFrameDuration = 40 * kMillisecond;

}  // namespace

VideoDecoder::VideoDecoder(PacketSource& source, FrameQueue& queue)
    : m_source(source), m_queue(queue), m_thread(startThread("media-video", [this] { run(); })) {}

VideoDecoder::~VideoDecoder() { m_thread.join(); }

void VideoDecoder::run() {
    followSource(
        m_source, TrackKind::video, m_segment, [this](const Segment& segment) { begin(segment); },
        [this](const PacketSource::Read& read) { decode(read); }, [this] { finish(); });
}

void VideoDecoder::begin(const Segment& segment) {
    m_segment = segment;
    m_pushed = false;
    m_seenAlone = kNoTime;
    m_skipped = {};
    m_skippedGroup.clear();
    m_deinterlacer.reset();
    m_group.clear();
    m_nextTime = segment.target;
    if (!segment.track) return;
    if (m_opened == segment.track) {
        m_decoder->reset();
        m_decoder->leaveOutUnreferenced(false);
        return;
    }
    // What was wrong with the track before is no fault of this one.
    m_fruitlessPackets = 0;
    m_error = MediaError::none;
    m_decoder = Decoder::open(*segment.track);
    m_opened = m_decoder ? segment.track : nullptr;
    if (!m_decoder) fail(MediaError::unknownCodec);
}

void VideoDecoder::fail(MediaError error) {
    m_error = error;
    m_queue.finish(m_segment.serial);
}

bool VideoDecoder::isBeforeTarget(const Packet& packet) const {
    int64_t duration = packet.duration;
    if (duration <= 0) duration = m_segment.track->frameDuration;
    if (duration <= 0) duration = kSecond;
    return packet.pts + duration <= m_segment.target;
}

void VideoDecoder::decode(const PacketSource::Read& read) {
    if (!m_decoder) return;
    if (m_segment.mode == PlayMode::backwards) {
        collect(read);
        return;
    }
    if (m_segment.mode == PlayMode::keyFrames && !read.packet->key) return;
    const bool before = isBeforeTarget(*read.packet);
    m_decoder->leaveOutUnreferenced(before);
    if (before && read.packet->key) m_skippedGroup.clear();
    if (before) m_skippedGroup.push_back(read.packet);
    if (m_segment.mode == PlayMode::keyFrames) {
        sendAlone(read.packet->data.get());
        return;
    }
    if (m_segment.firstAtOnce && !m_pushed) {
        sendAlone(read.packet->data.get());
        m_seenAlone = read.packet->data->pts;
    }
    send(read.packet->data.get());
}

/// The picture comes at once and not when its successors are there.
void VideoDecoder::sendAlone(const AVPacket* packet) {
    send(packet);
    send(nullptr);
    m_decoder->reset();
}

void VideoDecoder::send(const AVPacket* packet) {
    m_decoder->send(packet);
    if (packet != nullptr) ++m_fruitlessPackets;
    receive();
    if (m_fruitlessPackets >= kMaxFruitlessPackets && m_decodedFrames == 0)
        fail(MediaError::undecodable);
}

void VideoDecoder::receive() {
    while (AvFrame picture = m_decoder->receive()) {
        ++m_decodedFrames;
        m_fruitlessPackets = 0;
        accept(toFrame(std::move(picture)));
    }
}

VideoFrame VideoDecoder::toFrame(AvFrame picture) {
    VideoFrame frame;
    frame.pts = picture->best_effort_timestamp;
    if (frame.pts == kNoTime) frame.pts = m_nextTime;
    frame.duration = picture->pkt_duration;
    if (frame.duration <= 0) frame.duration = m_segment.track->frameDuration;
    if (frame.duration <= 0) frame.duration = kUsualFrameDuration;
    frame.pixelAspect = m_segment.track->pixelAspect;
    const AVRational aspect = picture->sample_aspect_ratio;
    if (aspect.num > 0 && aspect.den > 0) frame.pixelAspect = aspect;
    m_nextTime = frame.end();
    frame.picture = std::shared_ptr<const AVFrame>(std::move(picture));
    return frame;
}

void VideoDecoder::accept(VideoFrame frame) {
    if (m_pushed && frame.pts == m_seenAlone) return;
    if (frame.end() <= m_segment.target) {
        m_deinterlacer.skip(frame);
        m_skipped = std::move(frame);
        return;
    }
    m_skippedGroup.clear();
    if (m_segment.mode == PlayMode::keyFrames) return push(m_deinterlacer.first(frame));
    for (const VideoFrame& picture : m_deinterlacer.split(frame))
        if (picture.end() > m_segment.target) push(picture);
}

void VideoDecoder::push(const VideoFrame& frame) {
    m_pushed |= m_queue.push(frame, m_segment.serial);
}

void VideoDecoder::decodeLast() {
    if (m_skippedGroup.empty()) return;
    m_decoder->reset();
    m_decoder->leaveOutUnreferenced(false);
    const std::vector<PacketRef> group = std::move(m_skippedGroup);
    for (const PacketRef& packet : group) send(packet->data.get());
    send(nullptr);
    m_decoder->reset();
}

void VideoDecoder::finish() {
    if (m_decoder && m_segment.mode == PlayMode::all) {
        send(nullptr);
        m_decoder->reset();
        // The medium ends before the target: its last picture is shown.
        if (!m_pushed) decodeLast();
    }
    if (!m_pushed && m_skipped.picture) push(m_deinterlacer.first(m_skipped));
    m_skipped = {};
    if (m_decoder && m_decodedFrames == 0) fail(MediaError::undecodable);
    m_queue.finish(m_segment.serial);
}

void VideoDecoder::collect(const PacketSource::Read& read) {
    m_group.push_back(read.packet);
    if (!read.groupEnd) return;
    if (m_segment.speed < kFastestAllBackwards) m_group.resize(1);
    playGroup();
    m_group.clear();
}

void VideoDecoder::playGroup() {
    ReverseGroup group(*m_decoder, m_group);
    int64_t before = m_segment.target + 1;
    while (group.decodeBefore(before, [this](AvFrame picture) {
        ++m_decodedFrames;
        return m_deinterlacer.first(toFrame(std::move(picture)));
    })) {
        for (auto frame = group.frames().rbegin(); frame != group.frames().rend(); ++frame)
            if (!m_queue.push(*frame, m_segment.serial)) return;
        before = group.frames().front().pts;
    }
}

}  // namespace quiravent::desktop
