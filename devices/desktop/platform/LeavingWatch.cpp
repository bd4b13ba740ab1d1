#include "platform/LeavingWatch.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <exception>

#include "platform/ServiceSelectorPipe.h"
#include "platform/ThreadWait.h"
#include "support/Log.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// An exit is to feel immediate, and a look costs some 20 microseconds.
constexpr std::chrono::milliseconds kInterval{200};

constexpr const char* kReader = "messageIPC";

void wakeReader() {
    try {
        const ServiceSelectorPipe pipe;
        if (pipe.isEmpty()) pipe.write("\n");
    } catch (const std::exception& error) {
        log::debug("the application waits for the end of its message thread: ", error.what());
    }
}

}  // namespace

void LeavingWatch::watchThisThread() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_watched = static_cast<pid_t>(::syscall(SYS_gettid));
    if (!m_thread.joinable() && !m_stopped)
        m_thread = startThread("leaving watch", [this] { run(); });
}

void LeavingWatch::stop() {
    std::thread thread;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopped = true;
        thread.swap(m_thread);
    }
    m_stopping.notify_all();
    if (thread.joinable()) thread.join();
}

void LeavingWatch::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stopping.wait_for(lock, kInterval, [&] { return m_stopped; })) {
        if (waitsForEndOfThread(m_watched, kReader)) wakeReader();
    }
}

}  // namespace quiravent::desktop
