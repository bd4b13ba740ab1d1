#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "config/Configuration.h"
#include "porting/pl_dtv.h"
#include "support/EventThread.h"
#include "support/Reaper.h"
#include "television/Multiplex.h"
#include "television/Receiver.h"
#include "television/SignalFaults.h"

namespace quiravent::desktop {

/// What is selected at present, and how it fares.
struct TunerStatus {
    bool isSelected = false;
    std::string selector;
    std::string option;
    /// The last outcome that was reported, or is about to be; none before the first.
    std::optional<e_pl_dtv_error> outcome;
    std::string failure;  ///< why nothing is received, in a line for people; empty where unknown
    /// Of the signal; null when nothing is received at all, as with a wrong selector.
    std::unique_ptr<const ReceiverStatus> receiver;
};

/// The one tuner of the device. Its reports are told by a thread of its own: not from within a
/// function of this class, and with no lock held. Thread-safe.
class Tuner {
  public:
    explicit Tuner(const Configuration::Television& configuration);
    ~Tuner() { stop(); }
    Tuner(const Tuner&) = delete;
    Tuner& operator=(const Tuner&) = delete;

    /// Selects what the two texts mean, in the place of what was selected; what is wrong with them
    /// is told by a report as well. The callback is told the outcome and each change of it until
    /// the selection ends. Doesn't wait for a network.
    void select(const std::string& selector, const std::string& option,
                pl_dtv_action_callback callback);

    /// Ends the selection. After the return no report of it begins, and none is under way, unless
    /// it is the one that calls this. Doesn't wait for a network.
    void unselect();

    TunerStatus status() const;

    Multiplex& multiplex() { return m_multiplex; }
    SignalFaults& faults() { return m_faults; }

    /// The process ends: nothing is told any more, and what can end soon has ended.
    void stop();

  private:
    struct Selection {
        uint64_t number;
        pl_dtv_action_callback callback;
        std::string selector;
        std::string option;
        std::optional<e_pl_dtv_error> outcome;
        std::string failure;
        std::shared_ptr<Receiver> receiver;
    };

    void startReceiver(uint64_t number, const std::string& selector, const std::string& option);
    void refuse(uint64_t number, e_pl_dtv_error code, const std::string& reason);
    void report(uint64_t number, e_pl_dtv_error outcome);
    void tell(uint64_t number, e_pl_dtv_error outcome);
    void endSelection();
    void waitUntilTold();

    const std::string m_lineUp;
    SignalFaults m_faults;
    Multiplex m_multiplex;

    std::mutex m_selecting;  ///< one selection or end of one at a time; taken before the next

    mutable std::mutex m_mutex;  ///< guards what follows, up to the blank line
    std::condition_variable m_told;
    std::optional<Selection> m_selection;
    uint64_t m_lastNumber = 0;
    int64_t m_tellFrom = 0;    ///< no report of the selection is told before
    uint64_t m_telling = 0;    ///< of which selection a report is being told; 0: of none
    std::thread::id m_teller;  ///< who does that

    Reaper m_reaper{"tuner reaper"};
    EventThread m_events{"tuner"};
};

}  // namespace quiravent::desktop
