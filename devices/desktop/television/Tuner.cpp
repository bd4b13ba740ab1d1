#include "television/Tuner.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "support/Clock.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/listening.h"
#include "television/TuneRequest.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

/// How long the end of the process waits for a receiver.
constexpr int64_t kPatience = kSecond;

SignalTroubles troublesFrom(const Configuration::Television& configuration) {
    auto troubles = parseSignalFaults(configuration.faults);
    if (!troubles) throw DeviceError(e_pl_status_invalid_argument, troubles.reason());
    return std::move(*troubles);
}

}  // namespace

Tuner::Tuner(const Configuration::Television& configuration)
    : m_lineUp(configuration.lineUp),
      m_faults(troublesFrom(configuration)),
      m_multiplex(static_cast<size_t>(configuration.replay)) {}

void Tuner::select(const std::string& selector, const std::string& option,
                   pl_dtv_action_callback callback) {
    const std::lock_guard<std::mutex> selecting(m_selecting);
    endSelection();
    uint64_t number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        number = ++m_lastNumber;
        m_selection = Selection{number, callback, selector, option, {}, {}, nullptr};
        m_tellFrom = clock::now() + kUntilListening;
    }
    try {
        startReceiver(number, selector, option);
    } catch (const TunerError& error) {
        refuse(number, error.code(), error.what());
    } catch (const std::exception& error) {
        refuse(number, e_pl_dtv_error_resource_unavailable, error.what());
    }
}

void Tuner::refuse(uint64_t number, e_pl_dtv_error code, const std::string& reason) {
    log::warning("nothing can be tuned: ", reason);
    m_multiplex.end();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_selection->failure = reason;
    }
    report(number, code);
}

void Tuner::startReceiver(uint64_t number, const std::string& selector, const std::string& option) {
    const TuneRequest request = parseSelection(selector, option, m_lineUp);
    const uint64_t selection = m_multiplex.begin();
    auto receiver = std::make_shared<Receiver>(
        Receiver::Wanted{makeSource(request), request.program, selection}, m_multiplex, m_faults,
        [this, number](e_pl_dtv_error outcome) { report(number, outcome); });
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_selection->receiver = std::move(receiver);
}

/// Any thread.
void Tuner::report(uint64_t number, e_pl_dtv_error outcome) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_selection || m_selection->number != number) return;
    m_selection->outcome = outcome;
    const int64_t time = std::max(clock::now(), m_tellFrom);
    m_tellFrom = time;
    m_events.postAt(time, [this, number, outcome](int64_t) { tell(number, outcome); });
}

/// The event thread.
void Tuner::tell(uint64_t number, e_pl_dtv_error outcome) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_selection || m_selection->number != number) return;
    const pl_dtv_action_callback callback = m_selection->callback;
    m_telling = number;
    m_teller = std::this_thread::get_id();
    lock.unlock();
    callback(outcome);
    lock.lock();
    m_telling = 0;
    m_told.notify_all();
}

void Tuner::unselect() {
    {
        const std::lock_guard<std::mutex> selecting(m_selecting);
        endSelection();
    }
    waitUntilTold();
}

void Tuner::endSelection() {
    std::shared_ptr<Receiver> receiver;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_selection) receiver = std::move(m_selection->receiver);
        m_selection.reset();
    }
    m_multiplex.end();
    if (!receiver) return;
    receiver->cancel();
    m_reaper.take(std::move(receiver));
}

/// Until no report is under way that began before this call.
void Tuner::waitUntilTold() {
    std::unique_lock<std::mutex> lock(m_mutex);
    const uint64_t number = m_telling;
    if (number == 0 || m_teller == std::this_thread::get_id()) return;
    m_told.wait(lock, [&] { return m_telling != number; });
}

TunerStatus Tuner::status() const {
    TunerStatus status;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_selection) return status;
    status.isSelected = true;
    status.selector = m_selection->selector;
    status.option = m_selection->option;
    status.outcome = m_selection->outcome;
    status.failure = m_selection->failure;
    if (!m_selection->receiver) return status;
    status.receiver = m_selection->receiver->status();
    status.failure = status.receiver->failure;
    return status;
}

void Tuner::stop() {
    unselect();
    m_events.stop();
    if (!m_reaper.waitUntilIdle(kPatience))
        log::info("a tuner's source is still waiting at the process's end");
}

}  // namespace quiravent::desktop
