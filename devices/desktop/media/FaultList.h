#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "media/MediaErrors.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// Something that goes wrong with the reading of every medium, for development.
struct Fault {
    enum class Kind {
        slow,         ///< reading is limited to bytesPerSecond
        stalled,      ///< nothing comes
        dropped,      ///< the connection breaks
        unavailable,  ///< the server answers 503
    };
    Kind kind = Kind::stalled;
    double fromSecond = 0;  ///< since the player began to read
    double toSecond = 0;    ///< excluded
    uint64_t bytesPerSecond = 0;
    bool enabled = true;
};

/// The name of a kind of fault, as in a list.
const char* nameOf(Fault::Kind kind);

/// Reads a list as "slow 2-10 50000; stalled 12-20 off; dropped 30-31": for each fault its kind,
/// its seconds, for "slow" the bytes per second, and "off" for one that has to be switched on.
Result<std::vector<Fault>> parseFaults(const std::string& text);

/// The faults that are configured. Each can be switched on and off while players read.
/// Thread-safe.
class FaultList {
  public:
    FaultList() = default;
    explicit FaultList(std::vector<Fault> faults) : m_faults(std::move(faults)) {}

    /// False when there is no fault of that number.
    bool setEnabled(size_t number, bool enabled);
    /// As they are now.
    std::vector<Fault> list() const;

    /// The first enabled fault at a time, in microseconds since the player began to read.
    std::optional<Fault> at(int64_t time) const;

  private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

/// Applies faults to the reading of one player, between packets. For one thread, but for cancel().
class FaultGate {
  public:
    FaultGate(const FaultList& faults, int64_t timeLimit)
        : m_faults(faults), m_timeLimit(timeLimit) {}

    /// The time of the faults begins.
    void begin();

    /// Comes back when `bytes` more may have been read, or with the error with which reading
    /// fails; a cancelled gate opens at once.
    MediaError pass(size_t bytes, const std::atomic<bool>& cancelled);

  private:
    const FaultList& m_faults;
    const int64_t m_timeLimit;
    int64_t m_began = 0;
    int64_t m_slowUntil = 0;  ///< when the bytes let through so far have "arrived"
};

}  // namespace quiravent::desktop
