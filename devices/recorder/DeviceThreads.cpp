#include "DeviceThreads.h"

#include <thread>
#include <utility>

#include "Recorder.h"
#include "ThreadKind.h"

namespace quiravent::recorder {

DeviceThreads& DeviceThreads::instance() {
    static DeviceThreads& threads = *std::make_unique<DeviceThreads>().release();
    return threads;
}

uint64_t DeviceThreads::fire(const std::string& thread, std::vector<Event> events) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Burst burst{++m_lastBurst, std::move(events)};
    if (thread.empty()) {
        std::thread([this, burst] {
            becomeDeviceThread();
            run(burst);
        }).detach();
        return burst.id;
    }
    std::unique_ptr<Queue>& queue = m_queues[thread];
    if (!queue) {
        queue = std::make_unique<Queue>();
        std::thread([this, &kept = *queue] { serve(kept); }).detach();
    }
    const std::lock_guard<std::mutex> queueLock(queue->mutex);
    queue->bursts.push_back(std::move(burst));
    queue->filled.notify_one();
    return m_lastBurst;
}

std::optional<uint32_t> DeviceThreads::delivered(uint64_t burst) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_delivered.find(burst);
    return found == m_delivered.end() ? std::nullopt : std::optional<uint32_t>(found->second);
}

void DeviceThreads::serve(Queue& queue) {
    becomeDeviceThread();
    for (;;) {
        std::unique_lock<std::mutex> lock(queue.mutex);
        queue.filled.wait(lock, [&] { return !queue.bursts.empty(); });
        const Burst burst = std::move(queue.bursts.front());
        queue.bursts.pop_front();
        lock.unlock();
        run(burst);
    }
}

void DeviceThreads::run(const Burst& burst) {
    uint32_t count = 0;
    for (const Event& event : burst.events) count += deliver(event);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_delivered[burst.id] = count;
    }
    Recorder::instance().notifyChange();
}

}  // namespace quiravent::recorder
