#include "graphics/RowTeam.h"

#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

// In nanoseconds. Waking a thread takes the waker some microseconds, and the woken tens of them.
constexpr uint64_t kWorthSharing = 10000;
constexpr uint64_t kWorthWaking = 40000;
constexpr uint64_t kBand = 4000;

/// How often the helper looks for more before it sleeps; each time it gives way to other threads.
constexpr int kLooks = 200;

}  // namespace

RowTeam::RowTeam(uint32_t threads, uint32_t processors)
    : m_stopped(std::min(threads, processors) < 2) {
    ::sem_init(&m_wake, 0, 0);
}

RowTeam::~RowTeam() {
    stop();
    ::sem_destroy(&m_wake);
}

void RowTeam::stop() {
    const std::lock_guard<std::mutex> lock(m_joining);
    m_stopped = true;
    if (!m_helper.joinable()) return;
    if (::getpid() != m_process) {
        m_helper.detach();
        return;
    }
    ::sem_post(&m_wake);
    m_helper.join();
}

bool RowTeam::start() {
    const std::lock_guard<std::mutex> lock(m_joining);
    if (m_stopped) return false;
    try {
        m_helper = startThread("qv-drawing", [this] { help(); });
    } catch (const std::system_error&) {
        m_stopped = true;
        return false;
    }
    m_process = ::getpid();
    m_isStarted = true;
    return true;
}

bool RowTeam::isWorthwhile(uint64_t time) {
    if (time < kWorthSharing || m_stopped) return false;
    if (time >= kWorthWaking) return m_isStarted || start();
    return m_isStarted && !m_asleep;
}

void RowTeam::run(size_t rows, uint64_t time, const void* shared, Work work) {
    m_job = {shared, work, rows, static_cast<size_t>(std::min<uint64_t>(rows, time / kBand))};
    m_bandsTaken = 0;
    m_state = State::open;
    if (m_asleep.exchange(false)) ::sem_post(&m_wake);
    doBands(0);
    State expected = State::open;
    if (m_state.compare_exchange_strong(expected, State::idle)) return;
    // No longer than the helper's last band takes.
    while (m_state != State::idle) std::this_thread::yield();
}

/// Until all bands are taken. No more are taken than there are, so those of the two never meet.
void RowTeam::doBands(size_t worker) {
    const Job& job = m_job;
    for (size_t done = 0; m_bandsTaken.fetch_add(1) < job.bands; ++done) {
        const size_t band = worker == 0 ? done : job.bands - 1 - done;
        const size_t first = band * job.rows / job.bands;
        const size_t last = (band + 1) * job.rows / job.bands;
        job.work(job.shared, worker, first, last);
    }
}

void RowTeam::help() {
    int looks = 0;
    while (!m_stopped) {
        State expected = State::open;
        if (m_state.compare_exchange_strong(expected, State::taken)) {
            doBands(1);
            m_state = State::idle;
            looks = 0;
        } else if (++looks < kLooks) {
            std::this_thread::yield();
        } else {
            sleep();
            looks = 0;
        }
    }
}

/// Whoever takes the mark away wakes it; what was opened before the mark was set is seen here.
void RowTeam::sleep() {
    m_asleep = true;
    if (m_state == State::open && m_asleep.exchange(false)) return;
    while (!m_stopped && ::sem_wait(&m_wake) != 0) {
    }
}

}  // namespace quiravent::desktop
