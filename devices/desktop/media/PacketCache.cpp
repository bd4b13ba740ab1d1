#include "media/PacketCache.h"

#include <algorithm>
#include <utility>

namespace quiravent::desktop {

namespace {

constexpr size_t kMaxRanges = 4;
/// Times are rounded: ranges meet that are so close to each other.
constexpr int64_t kMeeting = kMillisecond;

}  // namespace

void PacketCache::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

void PacketCache::setAheadLimit(int64_t ahead) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_limits.ahead = ahead;
    m_changed.notify_all();
}

const PacketCache::Slot* PacketCache::leadingSlot() const {
    for (const Slot& slot : m_slots)
        if (slot.segment.track) return &slot;
    return nullptr;
}

bool PacketCache::isBackwards() const {
    return m_slots[indexOf(TrackKind::video)].segment.mode == PlayMode::backwards;
}

PacketCache::Task PacketCache::awaitTask() {
    std::unique_lock<std::mutex> lock(m_mutex);
    Task task{Task::Kind::close, 0, 0, 0};
    m_changed.wait(lock, [&] { return m_closed || nextTask(task); });
    if (m_closed) task.kind = Task::Kind::close;
    return task;
}

bool PacketCache::nextTask(Task& task) {
    const Slot* leading = leadingSlot();
    if (leading == nullptr || m_ranges.empty()) return false;
    task = {Task::Kind::read, m_generation, 0, leading->segment.track->id};
    if (isBackwards()) return nextGroupTask(task);
    if (!wantsMore()) return false;
    if (m_atEnd) return true;
    PacketRange& range = *m_ranges.back();
    task.kind = Task::Kind::seek;
    task.time = range.isEmpty(task.leading) ? range.wanted() : range.resumePoint();
    return true;
}

void PacketCache::sought(uint32_t generation) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (generation != m_generation) return;
    m_ranges.back()->resumed();
    m_atEnd = true;
}

void PacketCache::append(PacketRef packet, uint32_t generation) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (generation != m_generation) return;
        ++m_received;
        m_ranges.back()->append(std::move(packet));
        joinRanges();
        keepWithinBudget();
        m_changed.notify_all();
    }
    m_wakeup.signal();
}

void PacketCache::finish(MediaError error, uint32_t generation) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (generation != m_generation) return;
        if (isBackwards()) {
            m_groupsDone = true;
            m_groupError = error;
        } else {
            m_ranges.back()->finish(error);
        }
        m_changed.notify_all();
    }
    m_wakeup.signal();
}

void PacketCache::start(const Start& start) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (size_t kind = 0; kind < m_slots.size(); ++kind) {
            m_slots[kind].segment = {start.serial, start.target, start.mode, start.speed,
                                     start.tracks[kind]};
            m_slots[kind].endTold = false;
        }
        m_groups.clear();
        m_groupCount = 0;
        m_groupsDone = false;
        m_groupError = MediaError::none;
        m_groupBefore = start.target + 1;
        if (isBackwards()) {
            ++m_generation;
            m_atEnd = false;
            if (m_ranges.empty()) activate(start.target, start.stay);
        } else {
            activate(start.target, start.stay);
        }
        for (Slot& slot : m_slots) place(slot);
        m_changed.notify_all();
    }
    m_wakeup.signal();
}

void PacketCache::startTrack(TrackKind kind, const Segment& segment) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot& slot = slotOf(kind);
    slot.segment = segment;
    slot.endTold = false;
    place(slot);
    m_changed.notify_all();
}

void PacketCache::activate(int64_t target, bool stay) {
    if (stay && !m_ranges.empty()) return;
    const Slot* leading = leadingSlot();
    const auto covering = [&](const std::unique_ptr<PacketRange>& range) {
        return leading != nullptr && range->covers(leading->segment.track->id, target);
    };
    const auto found = std::find_if(m_ranges.rbegin(), m_ranges.rend(), covering);
    if (found != m_ranges.rend() && found == m_ranges.rbegin() &&
        m_ranges.back()->error() == MediaError::none)
        return;
    ++m_generation;
    // The source stands at the beginning when it was opened.
    m_atEnd = m_ranges.empty() && target == 0;
    if (found != m_ranges.rend()) {
        std::rotate(found.base() - 1, found.base(), m_ranges.end());
        if (m_ranges.back()->error() != MediaError::none) m_ranges.back()->resumed();
        return;
    }
    if (m_ranges.size() == kMaxRanges) m_ranges.erase(m_ranges.begin());
    m_ranges.push_back(std::make_unique<PacketRange>(target));
}

void PacketCache::place(Slot& slot) {
    if (!slot.segment.track || m_ranges.empty()) return;
    slot.number = m_ranges.back()->decodeStart(slot.segment.track->id, slot.segment.target);
}

int64_t PacketCache::position() const {
    const Slot* leading = leadingSlot();
    if (leading == nullptr || m_ranges.empty()) return 0;
    const PacketRange& range = *m_ranges.back();
    const PacketRef packet = range.packet(leading->segment.track->id, leading->number);
    return packet ? packet->pts : range.end(leading->segment.track->id);
}

bool PacketCache::wantsMore() const {
    const Slot& leading = *leadingSlot();
    const PacketRange& range = *m_ranges.back();
    if (range.isFinished()) return false;
    const uint32_t track = leading.segment.track->id;
    const int64_t from = std::max(leading.segment.target, position());
    if (range.end(track) - from >= m_limits.ahead) return false;
    return range.bytesFrom(track, leading.number) < m_limits.bytes / 4 * 3;
}

void PacketCache::joinRanges() {
    const Slot* leading = leadingSlot();
    if (leading == nullptr) return;
    const uint32_t track = leading->segment.track->id;
    PacketRange& playing = *m_ranges.back();
    const auto isNoLongerNeeded = [&](const std::unique_ptr<PacketRange>& range) {
        // What begins before would lose its beginning.
        if (range->begin(track) < playing.begin(track)) return false;
        if (playing.runsInto(*range)) {
            playing.absorb(*range);
            // What is being read has been read before; go on where the other range ended.
            ++m_generation;
            m_atEnd = false;
            return true;
        }
        return range->end(track) <= playing.end(track);
    };
    m_ranges.erase(std::remove_if(m_ranges.begin(), m_ranges.end() - 1, isNoLongerNeeded),
                   m_ranges.end() - 1);
}

void PacketCache::keepWithinBudget() {
    const auto total = [this] {
        size_t bytes = 0;
        for (const auto& range : m_ranges) bytes += range->byteSize();
        return bytes;
    };
    while (m_ranges.size() > 1 && total() > m_limits.bytes) m_ranges.erase(m_ranges.begin());
    const Slot* leading = leadingSlot();
    if (leading == nullptr || total() <= m_limits.bytes) return;
    // Sound is decoded a little behind the pictures.
    constexpr int64_t kMargin = kSecond;
    m_ranges.back()->dropBefore(leading->segment.track->id, position() - kMargin);
}

PacketCache::Read PacketCache::next(TrackKind kind, uint32_t serial) {
    std::unique_lock<std::mutex> lock(m_mutex);
    Read read{};
    m_changed.wait(lock, [&] { return takeLocked(kind, serial, read); });
    return read;
}

bool PacketCache::tryNext(TrackKind kind, uint32_t serial, Read& read) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return takeLocked(kind, serial, read);
}

bool PacketCache::takeLocked(TrackKind kind, uint32_t serial, Read& read) {
    Slot& slot = slotOf(kind);
    if (m_closed) {
        read.state = Read::State::closed;
        return true;
    }
    if (slot.segment.serial != serial) {
        read.state = Read::State::newSegment;
        read.segment = slot.segment;
        return true;
    }
    if (slot.endTold || !slot.segment.track || m_ranges.empty()) return false;
    if (slot.segment.mode == PlayMode::backwards && kind == TrackKind::video)
        return takeGroupPacket(slot, read);
    const PacketRange& range = *m_ranges.back();
    const uint32_t track = slot.segment.track->id;
    slot.number = std::max(slot.number, range.firstNumber(track));
    read.packet = range.packet(track, slot.number);
    if (read.packet) {
        ++slot.number;
        read.state = Read::State::packet;
        m_changed.notify_all();
        return true;
    }
    if (!range.isFinished()) return false;
    slot.endTold = true;
    read.state = Read::State::end;
    return true;
}

PacketCache::Status PacketCache::status() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Status status;
    status.received = m_received;
    const Slot* leading = leadingSlot();
    if (leading == nullptr || m_ranges.empty()) return status;
    const PacketRange& range = *m_ranges.back();
    status.finished = isBackwards() ? m_groupsDone : range.isFinished();
    status.error = isBackwards() ? m_groupError : range.error();
    status.end = status.finished ? range.lastEnd() : range.end(leading->segment.track->id);
    status.full = !isBackwards() && !wantsMore();
    status.hasGroups = !m_groups.empty();
    return status;
}

std::vector<TimeRange> PacketCache::ranges() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Slot* leading = leadingSlot();
    std::vector<TimeRange> merged;
    if (leading == nullptr) return merged;
    const uint32_t track = leading->segment.track->id;
    std::vector<TimeRange> ranges;
    for (const auto& range : m_ranges) {
        if (range->isEmpty(track)) continue;
        const int64_t end = range->isFinished() ? range->lastEnd() : range->end(track);
        ranges.push_back({std::max<int64_t>(range->begin(track), 0), end});
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const TimeRange& a, const TimeRange& b) { return a.begin < b.begin; });
    for (const TimeRange& range : ranges) {
        if (!merged.empty() && range.begin <= merged.back().end + kMeeting)
            merged.back().end = std::max(merged.back().end, range.end);
        else
            merged.push_back(range);
    }
    return merged;
}

}  // namespace quiravent::desktop
