#include "live/LiveSource.h"

#include <utility>

#include "support/Clock.h"

namespace quiravent::desktop {

namespace {

/// What a decoder may be behind: several seconds of the richest broadcasts.
constexpr size_t kMaxQueuedBytes = 16U << 20;
constexpr size_t kMaxPackets = 1000;
/// After so many pictures without one that is marked as key, decoding begins anywhere: there are
/// streams that are refreshed bit by bit.
constexpr uint32_t kPatience = 150;
/// Pictures that are older than this when they are decoded aren't shown.
constexpr int64_t kOldest = 30 * kSecond;

}  // namespace

void LiveSource::clear(Queue& queue, bool needsKey) {
    queue.packets.clear();
    queue.bytes = 0;
    queue.needsKey = needsKey;
    queue.skipped = 0;
}

void LiveSource::begin(uint32_t serial) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_serial = serial;
    for (Queue& queue : m_queues) {
        clear(queue, true);
        queue.hasSegment = false;
    }
}

void LiveSource::beginSegment(Queue& queue, uint32_t serial, const TrackRef& track) {
    clear(queue, track && track->kind == TrackKind::video);
    queue.segment = Segment{};
    queue.segment.serial = serial;
    queue.segment.target = clock::now() - kOldest;
    queue.segment.track = track;
    queue.segment.firstAtOnce = true;
    queue.hasSegment = true;
}

void LiveSource::addTrack(const TrackRef& track) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    beginSegment(queueOf(track->kind), m_serial, track);
    m_changed.notify_all();
}

void LiveSource::replaceSubtitles(uint32_t serial, const TrackRef& track) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    beginSegment(queueOf(TrackKind::subtitle), serial, track);
}

void LiveSource::push(TrackKind kind, PacketRef packet) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Queue& queue = queueOf(kind);
    if (!queue.hasSegment) return;
    const bool isFull = queue.bytes > kMaxQueuedBytes || queue.packets.size() >= kMaxPackets;
    if (isFull) clear(queue, kind == TrackKind::video);
    if (queue.needsKey && !packet->key && ++queue.skipped <= kPatience) return;
    queue.needsKey = false;
    queue.bytes += packet->byteSize();
    queue.packets.push_back(std::move(packet));
    m_changed.notify_all();
}

void LiveSource::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

bool LiveSource::readLocked(TrackKind kind, uint32_t serial, Read& read) {
    Queue& queue = queueOf(kind);
    read = Read{};
    if (m_closed) {
        read.state = Read::State::closed;
        return true;
    }
    if (!queue.hasSegment) return false;
    if (queue.segment.serial != serial) {
        read.state = Read::State::newSegment;
        read.segment = queue.segment;
        return true;
    }
    if (queue.packets.empty()) return false;
    read.state = Read::State::packet;
    read.packet = std::move(queue.packets.front());
    queue.packets.pop_front();
    queue.bytes -= read.packet->byteSize();
    return true;
}

PacketSource::Read LiveSource::next(TrackKind kind, uint32_t serial) {
    std::unique_lock<std::mutex> lock(m_mutex);
    Read read{};
    m_changed.wait(lock, [&] { return readLocked(kind, serial, read); });
    return read;
}

bool LiveSource::tryNext(TrackKind kind, uint32_t serial, Read& read) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return readLocked(kind, serial, read);
}

}  // namespace quiravent::desktop
