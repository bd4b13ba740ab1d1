#include "media/PacketRange.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace quiravent::desktop {

const PacketRange::Queue* PacketRange::find(uint32_t track) const {
    const auto found = m_queues.find(track);
    return found == m_queues.end() || found->second.entries.empty() ? nullptr : &found->second;
}

bool PacketRange::isEmpty(uint32_t track) const { return find(track) == nullptr; }

void PacketRange::append(PacketRef packet) {
    Queue& queue = m_queues[packet->track];
    if (queue.resumed && !queue.entries.empty()) {
        if (packet->dts <= queue.entries.back().packet->dts) return;
        queue.resumed = false;
    }
    const size_t size = packet->byteSize();
    queue.end = std::max(queue.entries.empty() ? packet->end() : queue.end, packet->end());
    queue.entries.push_back({std::move(packet), m_appended});
    m_appended += size;
    m_byteSize += size;
}

void PacketRange::resumed() {
    for (auto& [track, queue] : m_queues) queue.resumed = true;
    m_finished = false;
    m_error = MediaError::none;
}

bool PacketRange::isContinuous(const Queue& queue) {
    return !queue.entries.empty() && !queue.entries.back().packet->sparse;
}

int64_t PacketRange::resumePoint() const {
    std::optional<int64_t> point;
    for (const auto& [track, queue] : m_queues)
        if (isContinuous(queue)) point = std::min(point.value_or(queue.end), queue.end);
    return point.value_or(m_wanted);
}

bool PacketRange::runsInto(const PacketRange& next) const {
    bool any = false;
    for (const auto& [track, queue] : m_queues) {
        if (!isContinuous(queue)) continue;
        const Queue* after = next.find(track);
        if (after == nullptr) return false;
        const int64_t last = queue.entries.back().packet->dts;
        if (after->entries.front().packet->dts > last || after->entries.back().packet->dts < last)
            return false;
        any = true;
    }
    return any;
}

void PacketRange::absorb(const PacketRange& next) {
    std::vector<PacketRef> packets;
    for (const auto& [track, queue] : next.m_queues) {
        const Queue* known = find(track);
        for (const Entry& entry : queue.entries)
            if (known == nullptr || entry.packet->dts > known->entries.back().packet->dts)
                packets.push_back(entry.packet);
    }
    std::stable_sort(packets.begin(), packets.end(),
                     [](const PacketRef& a, const PacketRef& b) { return a->dts < b->dts; });
    for (auto& [track, queue] : m_queues) queue.resumed = false;
    for (PacketRef& packet : packets) append(std::move(packet));
    m_finished = next.m_finished;
    m_error = next.m_error;
}

void PacketRange::finish(MediaError error) {
    m_finished = true;
    m_error = error;
}

int64_t PacketRange::begin(uint32_t track) const {
    const Queue* queue = find(track);
    if (queue == nullptr) return m_wanted;
    const int64_t first = queue->entries.front().packet->pts;
    // Tracks seldom begin at the very position that was gone to.
    return queue->first == 0 ? std::min(first, m_wanted) : first;
}

int64_t PacketRange::end(uint32_t track) const {
    const Queue* queue = find(track);
    return queue == nullptr ? m_wanted : queue->end;
}

bool PacketRange::covers(uint32_t track, int64_t position) const {
    if (isEmpty(track)) return false;
    return begin(track) <= position && (position < end(track) || m_finished);
}

int64_t PacketRange::lastEnd() const {
    int64_t last = m_wanted;
    for (const auto& [track, queue] : m_queues)
        if (!queue.entries.empty()) last = std::max(last, queue.end);
    return last;
}

PacketRef PacketRange::packet(uint32_t track, uint64_t number) const {
    const Queue* queue = find(track);
    if (queue == nullptr || number < queue->first) return nullptr;
    const uint64_t index = number - queue->first;
    return index < queue->entries.size() ? queue->entries[index].packet : nullptr;
}

uint64_t PacketRange::firstNumber(uint32_t track) const {
    const auto found = m_queues.find(track);
    return found == m_queues.end() ? 0 : found->second.first;
}

uint64_t PacketRange::nextNumber(uint32_t track) const {
    const auto found = m_queues.find(track);
    return found == m_queues.end() ? 0 : found->second.first + found->second.entries.size();
}

size_t PacketRange::bytesFrom(uint32_t track, uint64_t number) const {
    const Queue* queue = find(track);
    if (queue == nullptr) return m_appended;
    const uint64_t index = std::max(number, queue->first) - queue->first;
    return index < queue->entries.size() ? m_appended - queue->entries[index].bytesBefore : 0;
}

uint64_t PacketRange::decodeStart(uint32_t track, int64_t position) const {
    const Queue* queue = find(track);
    if (queue == nullptr) return firstNumber(track);
    for (size_t index = queue->entries.size(); index-- > 0;) {
        const Packet& packet = *queue->entries[index].packet;
        if (packet.key && packet.pts <= position) return queue->first + index;
    }
    return queue->first;
}

bool PacketRange::dropBefore(uint32_t leading, int64_t position) {
    const Queue* queue = find(leading);
    if (queue == nullptr) return false;
    const uint64_t number = decodeStart(leading, position);
    if (number == queue->first) return false;
    const int64_t keep = queue->entries[number - queue->first].packet->pts;
    for (auto& [track, other] : m_queues) {
        while (
            !other.entries.empty() &&
            (track == leading ? other.first < number : other.entries.front().packet->end() <= keep))
            dropFront(other);
    }
    return true;
}

void PacketRange::dropFront(Queue& queue) {
    m_byteSize -= queue.entries.front().packet->byteSize();
    queue.entries.pop_front();
    ++queue.first;
}

}  // namespace quiravent::desktop
