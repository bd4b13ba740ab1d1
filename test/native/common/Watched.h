#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace quiravent::test {

/// A value that threads change, and that a test waits for. Thread-safe.
template <class Value>
class Watched {
  public:
    /// Calls change(value), and wakes those who wait.
    template <class Change>
    void change(Change change) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change(m_value);
        m_changed.notify_all();
    }

    Value get() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_value;
    }

    /// Waits until isSo(value); false when it isn't within the patience.
    template <class Condition>
    bool waitUntil(Condition isSo, std::chrono::seconds patience = std::chrono::seconds(10)) const {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, patience, [&] { return isSo(std::as_const(m_value)); });
    }

  private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    Value m_value{};
};

}  // namespace quiravent::test
