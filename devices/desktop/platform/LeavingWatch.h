#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace quiravent::desktop {

/// Lets an application leave by itself. Its "exit" waits for the thread that reads the service
/// selector pipe, which ends with the next byte; on a set-top box that byte comes from another
/// process, and here it comes from this watch: a lone line feed, which is a message that does
/// nothing, in front of or behind another one as well.
///
/// The device isn't told that the application leaves before that wait is over, so the watch looks
/// at what the script thread waits in, and writes only when it is the end of that very thread.
/// Each line feed wakes every process that reads the pipe, which is why they aren't written just
/// now and then. One that another process took is written again.
class LeavingWatch {
  public:
    LeavingWatch() = default;
    ~LeavingWatch() { stop(); }
    LeavingWatch(const LeavingWatch&) = delete;
    LeavingWatch& operator=(const LeavingWatch&) = delete;

    /// Watches the thread that calls, instead of the one before.
    void watchThisThread();

    void stop();

  private:
    void run();

    std::mutex m_mutex;  ///< guards all
    std::condition_variable m_stopping;
    bool m_stopped = false;
    pid_t m_watched = 0;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
