#pragma once

#include <string>
#include <utility>

#include "EventWorker.h"
#include "porting/pl_dtv.h"

/// The event worker of the tuner: its life is the selection of a transport stream. The stream is
/// selected when a pool thread takes the worker and unselected when it is closed; in between every
/// report of the device becomes a "tunerlock" event.
class TunerWorker : public quiravent::EventWorker<std::pair<bool, e_pl_dtv_error>> {
  public:
    /// \param option the device gets null for an empty one
    TunerWorker(const quiravent::Listeners& listeners, std::string selector, std::string option)
        : EventWorker(listeners),
          m_streamSelector(std::move(selector)),
          m_streamOption(std::move(option)) {}

    /// Queues one report; device threads.
    void onDtvActionCallback(bool locked, e_pl_dtv_error error) { AddReport({locked, error}); }

    /// What is still queued is dropped.
    void close() override;

    /// The text of an error, in Portuguese, as UTF-8; empty for none.
    static std::string err_to_str(e_pl_dtv_error error);

  private:
    void Attach() override;
    void Detach() override;
    bool DrainsWhenClosed() const override { return false; }
    quiravent::Message MessageOf(std::pair<bool, e_pl_dtv_error> report) override;

    std::string m_streamSelector;
    std::string m_streamOption;
};

/// The current worker.
extern quiravent::WorkerSlot<TunerWorker> g_tuner_worker;
