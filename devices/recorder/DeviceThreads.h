#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Event.h"

namespace quiravent::recorder {

/// The threads on which the fake device reports, and the bursts of events given to them. May be
/// used by any thread.
class __attribute__((visibility("default"))) DeviceThreads {
  public:
    /// Never destroyed, since its threads may outlive main.
    static DeviceThreads& instance();

    /// Delivers events one after the other on the thread of that name, which is made at its first
    /// use and kept; an empty name means a fresh thread that ends with the burst. Returns at once,
    /// with a number for the burst.
    uint64_t fire(const std::string& thread, std::vector<Event> events);

    /// How many events of the burst found a callback, once all are delivered; nothing until then.
    std::optional<uint32_t> delivered(uint64_t burst) const;

  private:
    struct Burst {
        uint64_t id;
        std::vector<Event> events;
    };
    struct Queue {
        std::mutex mutex;
        std::condition_variable filled;
        std::deque<Burst> bursts;
    };

    void serve(Queue& queue);
    void run(const Burst& burst);

    mutable std::mutex m_mutex;
    uint64_t m_lastBurst = 0;
    std::map<std::string, std::unique_ptr<Queue>> m_queues;
    std::map<uint64_t, uint32_t> m_delivered;
};

}  // namespace quiravent::recorder
