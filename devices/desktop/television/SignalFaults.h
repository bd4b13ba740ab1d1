#pragma once

#include <cstdint>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "support/Result.h"

namespace quiravent::desktop {

/// Something that goes wrong with the signal for a while, for development.
struct SignalFault {
    enum class Kind {
        lost,    ///< there is none
        errors,  ///< bits are wrong
    };
    Kind kind = Kind::lost;
    double fromSecond = 0;  ///< since the selection
    double toSecond = 0;    ///< excluded
    double errorRate = 0;   ///< part of the bits, 0 to kMostErrors
    bool enabled = true;
};

/// What goes wrong with the signals of all selections.
struct SignalTroubles {
    std::vector<SignalFault> faults;
    bool isLost = false;    ///< whatever the faults say
    double errorRate = 0;   ///< besides the faults
    int64_t lockDelay = 0;  ///< microseconds by which a signal that begins comes later
    uint64_t seed = 1;      ///< of the errors; the same one gives the same errors
};

constexpr double kMostErrors = 0.5;
inline bool isErrorRate(double rate) { return rate >= 0 && rate <= kMostErrors; }

/// Reads a list as "lost 5-8; errors 10-20 1e-5 off; delay 0.7; seed 3": faults as parseFaults()
/// has them, and the delay in seconds.
Result<SignalTroubles> parseSignalFaults(const std::string& text);

/// The troubles at present, which may change while signals are received. Thread-safe.
class SignalFaults {
  public:
    SignalFaults() = default;
    explicit SignalFaults(SignalTroubles troubles) : m_troubles(std::move(troubles)) {}

    SignalTroubles get() const;
    void setLost(bool isLost);
    void setErrorRate(double rate);
    void setLockDelay(int64_t delay);
    /// Holds from the next selection on.
    void setSeed(uint64_t seed);
    /// False when there is no fault of that number.
    bool setEnabled(size_t number, bool enabled);

    /// At a time since the selection.
    bool isLostAt(int64_t time) const;
    double errorRateAt(int64_t time) const;
    int64_t lockDelay() const { return get().lockDelay; }

  private:
    mutable std::mutex m_mutex;
    SignalTroubles m_troubles;
};

/// The way of one selection's signal, on which it meets the troubles. For one thread; times are
/// those of Clock.h.
class FaultyPath {
  public:
    /// faults outlives the path. The selection begins.
    FaultyPath(const SignalFaults& faults, int64_t now);

    /// Whether what comes now gets through.
    bool isOpen(int64_t now);

    /// Puts errors into the bytes of a packet that gets through.
    void damage(uint8_t* bytes, int64_t now);

  private:
    void drawNextError();

    const SignalFaults& m_faults;
    const int64_t m_began;
    int64_t m_presentSince = INT64_MAX;  ///< INT64_MAX: there is no signal
    std::mt19937_64 m_random;
    double m_rate = 0;
    uint64_t m_bitsToError = 0;  ///< from the beginning of the packet
    uint64_t m_passedBits = 0;   ///< of the packet
};

}  // namespace quiravent::desktop
