#include "support/EventThread.h"

#include <utility>

#include "support/Clock.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

EventThread::EventThread(const char* name)
    : m_thread(startThread(name, [this] { run(); })), m_id(m_thread.get_id()) {}

void EventThread::post(Task task) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // The time is taken with the lock held, so that the order of times is that of the calls.
        m_tasks.emplace(clock::now(), std::move(task));
    }
    m_changed.notify_one();
}

void EventThread::postAt(int64_t time, Task task) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.emplace(time, std::move(task));
    }
    m_changed.notify_one();
}

void EventThread::stop() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopped = true;
    }
    m_changed.notify_one();
    if (std::this_thread::get_id() == m_id) return;
    const std::lock_guard<std::mutex> lock(m_joining);
    if (m_thread.joinable()) m_thread.join();
}

void EventThread::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stopped) {
        const auto first = m_tasks.begin();
        if (first == m_tasks.end()) {
            m_changed.wait(lock);
        } else if (first->first > clock::now()) {
            m_changed.wait_until(lock, clock::timePoint(first->first));
        } else {
            const auto node = m_tasks.extract(first);
            lock.unlock();
            node.mapped()(node.key());
            lock.lock();
        }
    }
}

}  // namespace quiravent::desktop
