#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace quiravent::desktop {

/// Destroys what has threads that may hang for a while, on a thread of its own, so that nobody
/// else waits for them, and gives the memory that they had back to the system. Thread-safe.
class Reaper {
  public:
    /// name: of the thread, at most 15 characters.
    explicit Reaper(const char* name);
    /// Waits until all is destroyed.
    ~Reaper();
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

    /// Takes the object over; nobody else may hold it.
    void take(std::shared_ptr<void> object);

    /// Has the reaper take an object when its last holder lets go of it, who may be a thread of the
    /// object's own or one that must not wait. Holders let go before the reaper is gone.
    template <class Object>
    std::shared_ptr<Object> buried(std::unique_ptr<Object> object) {
        return {object.release(), [this](Object* dead) { take(std::shared_ptr<Object>(dead)); }};
    }

    /// Waits until all that was taken is destroyed, or for so many microseconds. False when some
    /// of it is left.
    bool waitUntilIdle(int64_t atMost = 60000000);

  private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<void>> m_objects;
    bool m_busy = false;
    bool m_closed = false;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
