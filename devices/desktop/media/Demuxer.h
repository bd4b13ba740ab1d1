#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include "media/FaultList.h"
#include "media/MediaInput.h"
#include "media/PacketCache.h"
#include "media/Wakeup.h"

namespace quiravent::desktop {

/// Reads a medium into a cache, on a thread of its own, as the cache asks for it.
class Demuxer {
  public:
    enum class State { opening, open, failed };

    /// All references outlive the demuxer. wakeup is signalled when the state has changed.
    Demuxer(std::string location, const InputLimits& limits, const FaultList& faults,
            PacketCache& cache, Wakeup& wakeup);
    /// Waits for the thread, which may hang in the resolution of a host name.
    ~Demuxer();
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    /// Makes what is under way fail soon. The cache must be closed too.
    void cancel() { m_cancelled = true; }

    State state() const { return m_state; }
    /// Once the state is `failed`.
    MediaError error() const { return m_error; }
    /// Once the state is `open`.
    const MediaInfo& info() const { return m_input.info(); }

  private:
    void run();
    bool open();
    void seek(const PacketCache::Task& task);
    void read(uint32_t generation);
    void readGroup(const PacketCache::Task& task);
    PacketRef take(MediaError& error);

    const std::string m_location;
    PacketCache& m_cache;
    Wakeup& m_wakeup;
    std::atomic<bool> m_cancelled{false};
    std::atomic<State> m_state{State::opening};
    MediaError m_error = MediaError::none;  ///< written before m_state
    FaultGate m_faults;
    MediaInput m_input;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
