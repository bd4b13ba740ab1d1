#include "support/Reaper.h"

#include <malloc.h>

#include <utility>

#include "support/Clock.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// Each thread takes its memory from one of several heaps, which keep what is freed for whoever
/// shares the heap. What is reaped has used many threads, the next of its kind is served by other
/// heaps, and so the pictures of one film would be kept several times over.
void giveMemoryBack() { malloc_trim(0); }

}  // namespace

Reaper::Reaper(const char* name) : m_thread(startThread(name, [this] { run(); })) {}

Reaper::~Reaper() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        m_changed.notify_all();
    }
    m_thread.join();
}

void Reaper::take(std::shared_ptr<void> object) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_objects.push_back(std::move(object));
    m_changed.notify_all();
}

bool Reaper::waitUntilIdle(int64_t atMost) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_until(lock, clock::timePoint(clock::now() + atMost),
                                [this] { return m_objects.empty() && !m_busy; });
}

void Reaper::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_closed || !m_objects.empty(); });
        if (m_objects.empty()) return;
        std::shared_ptr<void> object = std::move(m_objects.front());
        m_objects.pop_front();
        m_busy = true;
        lock.unlock();
        object.reset();
        giveMemoryBack();
        lock.lock();
        m_busy = false;
        m_changed.notify_all();
    }
}

}  // namespace quiravent::desktop
