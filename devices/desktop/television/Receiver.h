#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "porting/pl_dtv.h"
#include "support/WakeSignal.h"
#include "television/ContinuityCheck.h"
#include "television/Multiplex.h"
#include "television/ServiceTables.h"
#include "television/SignalFaults.h"
#include "television/SignalMonitor.h"
#include "television/SignalStatistics.h"
#include "television/TransportSource.h"

namespace quiravent::desktop {

/// What a receiver knows of its signal.
struct ReceiverStatus {
    SignalStatistics statistics;
    std::optional<SignalQuality> quality;
    std::string failure;  ///< why the source can't be read; empty while it can
};

/// Receives one selection on a thread of its own: reads the source, again and again where it can't
/// be read, follows tables and signal, and hands on what comes.
class Receiver : private PacketSink {
  public:
    /// Called by the receiver's thread with each outcome that differs from the one before.
    using Report = std::function<void(e_pl_dtv_error outcome)>;

    struct Wanted {
        std::unique_ptr<TransportSource> source;
        std::optional<uint16_t> program;  ///< that has to be in the multiplex
        uint64_t selection;               ///< its number with the multiplex
    };

    /// The multiplex and the faults outlive the receiver.
    Receiver(Wanted wanted, Multiplex& multiplex, const SignalFaults& faults, Report report);
    /// Waits for the thread, which may hang for a while in the file system or a driver.
    ~Receiver() override;
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    /// Has the thread end as soon as it can. Doesn't wait; any thread.
    void cancel();

    /// Any thread.
    std::unique_ptr<const ReceiverStatus> status() const;

  private:
    static constexpr size_t kBatch = 512;  ///< packets

    void run();
    void receive();
    void wait() const;
    void tryToOpen(int64_t now);
    void readSource(int64_t now);
    void fail(e_pl_dtv_error code, const std::string& reason, int64_t now);
    void onPacket(const TransportPacket& packet, int64_t arrival) override;
    void onRestart() override;
    void take(const TransportPacket& packet, int64_t arrival);
    void flush();
    void publish();
    void followSignal(int64_t now);
    void measure(int64_t now);
    void forgetSignal();

    Wanted m_wanted;
    Multiplex& m_multiplex;
    const Report m_report;
    std::atomic<bool> m_cancelled{false};
    const WakeSignal m_wake;

    // For the receiver's thread.
    const int64_t m_began;
    FaultyPath m_path;
    SignalMonitor m_monitor;
    bool m_isOpen = false;
    int64_t m_openAgain = 0;
    int64_t m_now = 0;  ///< of the present reading
    ContinuityCheck m_continuity;
    std::unique_ptr<ServiceTables> m_tables = std::make_unique<ServiceTables>();
    ServiceTables::Change m_change = ServiceTables::Change::none;
    bool m_isAfterGap = false;  ///< packets were kept back
    std::vector<std::array<uint8_t, TransportPacket::kSize>> m_bytes;
    std::vector<StreamPacket> m_packets;  ///< whose bytes those are
    int64_t m_measureFrom = 0;
    uint64_t m_measuredPackets = 0;

    mutable std::mutex m_statusMutex;  ///< guards the status
    ReceiverStatus m_status;

    std::thread m_thread;
};

}  // namespace quiravent::desktop
