#pragma once

#include <semaphore.h>
#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <thread>

namespace quiravent::desktop {

/// The rows of a drawing operation that has much to work out, shared between the thread that draws
/// and one helper. The one begins at the first row and the other at the last, until they meet. The
/// drawing thread never waits for the helper to begin: what that doesn't come to in time it does
/// itself.
///
/// Filling and copying isn't worth sharing: it takes half as long alone, but leaves half of the
/// pixels in the cache of the helper's processor, from where whatever is drawn or shown next has to
/// get them, which takes longer than was won.
///
/// The helper is started by the first operation that is long enough. It watches out for more for
/// some microseconds after each one, then sleeps. In a process that was forked from one with a
/// helper there is none, and nothing hangs.
class RowTeam {
  public:
    /// threads: 1 for none but the caller's, 2 for a helper, which is there only if the machine has
    /// as many processors.
    explicit RowTeam(uint32_t threads, uint32_t processors = std::thread::hardware_concurrency());
    ~RowTeam();
    RowTeam(const RowTeam&) = delete;
    RowTeam& operator=(const RowTeam&) = delete;

    /// Calls work(worker, first, last) for ranges of rows that together are those from 0 up to,
    /// without, `rows`; returns when all are done. worker: 0 for the caller and 1 for the helper,
    /// so that each has working memory of its own. rowTime: an estimate for one row, in
    /// nanoseconds. The work must not throw, and no other thread may call this meanwhile.
    template <class Work>
    void share(size_t rows, uint64_t rowTime, const Work& work) {
        const uint64_t total = rows * rowTime;
        if (!isWorthwhile(total)) {
            work(size_t{0}, size_t{0}, rows);
            return;
        }
        run(rows, total, &work, [](const void* shared, size_t worker, size_t first, size_t last) {
            (*static_cast<const Work*>(shared))(worker, first, last);
        });
    }

    /// Ends the helper, when it has done what it is at; share() goes on without it. At any time,
    /// on any thread, and again.
    void stop();

  private:
    enum class State : uint32_t {
        idle,   ///< there is nothing to help with
        open,   ///< the helper may join
        taken,  ///< it has joined, and says when it has finished by going back to idle
    };
    using Work = void (*)(const void* shared, size_t worker, size_t first, size_t last);

    struct Job {
        const void* shared;
        Work work;
        size_t rows;
        size_t bands;
    };

    bool isWorthwhile(uint64_t time);
    bool start();
    void run(size_t rows, uint64_t time, const void* shared, Work work);
    void doBands(size_t worker);
    void help();
    void sleep();

    Job m_job{};  // written while idle, read while open or taken
    std::atomic<State> m_state{State::idle};
    std::atomic<size_t> m_bandsTaken{0};
    std::atomic<bool> m_asleep{false};
    std::atomic<bool> m_stopped;
    sem_t m_wake{};

    bool m_isStarted = false;  // known to the drawing thread

    std::mutex m_joining;  ///< guards what follows
    std::thread m_helper;
    pid_t m_process = 0;  ///< that the helper belongs to
};

}  // namespace quiravent::desktop
