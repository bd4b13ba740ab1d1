#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace quiravent::desktop {

/// A thread of the device that tells the application of events: it runs tasks one at a time, in
/// the order of their times, those of the same time in the order in which they were posted, and
/// with no lock held. A task that is late runs as if it were not: it is given the time at which it
/// was due. Times are those of Clock.h. Thread-safe.
class EventThread {
  public:
    using Task = std::function<void(int64_t due)>;

    /// name: what debuggers show, at most 15 characters.
    explicit EventThread(const char* name);
    ~EventThread() { stop(); }
    EventThread(const EventThread&) = delete;
    EventThread& operator=(const EventThread&) = delete;

    /// Posts a task for the present.
    void post(Task task);
    void postAt(int64_t time, Task task);

    /// Drops what hasn't been run. No task runs once this has returned, except the one that calls
    /// it. May be called again.
    void stop();

  private:
    void run();

    std::mutex m_mutex;  ///< guards what follows but the thread
    std::condition_variable m_changed;
    std::multimap<int64_t, Task> m_tasks;
    bool m_stopped = false;

    std::mutex m_joining;  ///< guards the thread object
    std::thread m_thread;
    const std::thread::id m_id;
};

}  // namespace quiravent::desktop
