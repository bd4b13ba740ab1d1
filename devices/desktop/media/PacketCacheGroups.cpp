#include <algorithm>
#include <utility>

#include "media/PacketCache.h"

// Playing backwards: groups of pictures, the last one first.
namespace quiravent::desktop {

namespace {

constexpr size_t kGroupsAhead = 2;

}  // namespace

bool PacketCache::nextGroupTask(Task& task) {
    takeCachedGroups();
    if (m_groupsDone || m_groupCount >= kGroupsAhead) return false;
    task.kind = Task::Kind::group;
    task.time = m_groupBefore;
    return true;
}

void PacketCache::takeCachedGroups() {
    while (!m_groupsDone && m_groupCount < kGroupsAhead && takeCachedGroup()) {
    }
}

bool PacketCache::takeCachedGroup() {
    const uint32_t track = leadingSlot()->segment.track->id;
    for (const auto& range : m_ranges) {
        const bool holds = !range->isEmpty(track) && range->begin(track) < m_groupBefore &&
                           m_groupBefore <= range->end(track);
        if (!holds) continue;
        uint64_t number = range->decodeStart(track, m_groupBefore - 1);
        const PacketRef first = range->packet(track, number);
        if (!first->key || first->pts >= m_groupBefore) continue;
        std::vector<PacketRef> group{first};
        for (PacketRef packet = range->packet(track, ++number);
             packet && !(packet->key && packet->pts >= m_groupBefore);
             packet = range->packet(track, ++number))
            group.push_back(std::move(packet));
        pushGroup(std::move(group));
        return true;
    }
    return false;
}

void PacketCache::pushGroup(std::vector<PacketRef> group) {
    const int64_t begin = group.front()->pts;
    m_groupsDone = begin <= 0;
    m_groupBefore = begin;
    ++m_groupCount;
    for (PacketRef& packet : group) m_groups.push_back({std::move(packet), false});
    m_groups.back().last = true;
    m_changed.notify_all();
}

void PacketCache::appendGroup(std::vector<PacketRef> group, uint32_t generation) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (generation != m_generation) return;
        m_received += group.size();
        if (group.empty() || group.front()->pts >= m_groupBefore)
            m_groupsDone = true;
        else
            pushGroup(std::move(group));
        m_changed.notify_all();
    }
    m_wakeup.signal();
}

bool PacketCache::takeGroupPacket(Slot& slot, Read& read) {
    takeCachedGroups();
    if (m_groups.empty()) {
        if (!m_groupsDone) return false;
        slot.endTold = true;
        read.state = Read::State::end;
        return true;
    }
    read.state = Read::State::packet;
    read.packet = std::move(m_groups.front().packet);
    read.groupEnd = m_groups.front().last;
    m_groups.pop_front();
    if (read.groupEnd) {
        --m_groupCount;
        m_changed.notify_all();
    }
    return true;
}

}  // namespace quiravent::desktop
