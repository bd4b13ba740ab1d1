#include "media/Demuxer.h"

#include <utility>

#include "support/NamedThread.h"

namespace quiravent::desktop {

Demuxer::Demuxer(std::string location, const InputLimits& limits, const FaultList& faults,
                 PacketCache& cache, Wakeup& wakeup)
    : m_location(std::move(location)),
      m_cache(cache),
      m_wakeup(wakeup),
      m_faults(faults, limits.timeLimit),
      m_input(limits, m_cancelled),
      m_thread(startThread("media-read", [this] { run(); })) {}

Demuxer::~Demuxer() {
    cancel();
    m_cache.close();
    m_thread.join();
}

void Demuxer::run() {
    const bool opened = open();
    m_state = opened ? State::open : State::failed;
    m_wakeup.signal();
    if (!opened) return;
    while (true) {
        const PacketCache::Task task = m_cache.awaitTask();
        switch (task.kind) {
            case PacketCache::Task::Kind::close:
                return;
            case PacketCache::Task::Kind::seek:
                seek(task);
                break;
            case PacketCache::Task::Kind::read:
                read(task.generation);
                break;
            case PacketCache::Task::Kind::group:
                readGroup(task);
                break;
        }
    }
}

bool Demuxer::open() {
    m_faults.begin();
    m_error = m_faults.pass(0, m_cancelled);
    if (m_error == MediaError::none) m_error = m_input.open(m_location);
    return m_error == MediaError::none;
}

PacketRef Demuxer::take(MediaError& error) {
    PacketRef packet = m_input.read(error);
    if (!packet) return nullptr;
    error = m_faults.pass(packet->byteSize(), m_cancelled);
    return error == MediaError::none ? packet : nullptr;
}

void Demuxer::read(uint32_t generation) {
    MediaError error = MediaError::none;
    PacketRef packet = take(error);
    if (packet)
        m_cache.append(std::move(packet), generation);
    else
        m_cache.finish(error, generation);
}

void Demuxer::seek(const PacketCache::Task& task) {
    const MediaError error = m_input.seekToKey(task.time, task.leading);
    m_cache.sought(task.generation);
    if (error != MediaError::none) m_cache.finish(error, task.generation);
}

void Demuxer::readGroup(const PacketCache::Task& task) {
    MediaError error = m_input.seekToKey(task.time - 1, task.leading);
    std::vector<PacketRef> group;
    while (error == MediaError::none) {
        PacketRef packet = take(error);
        if (!packet || packet->track != task.leading) {
            if (!packet) break;
            continue;
        }
        if (packet->key && packet->pts >= task.time) break;
        if (packet->key) group.clear();
        if (packet->key || !group.empty()) group.push_back(std::move(packet));
    }
    if (error != MediaError::none && !m_cancelled)
        m_cache.finish(error, task.generation);
    else
        m_cache.appendGroup(std::move(group), task.generation);
}

}  // namespace quiravent::desktop
