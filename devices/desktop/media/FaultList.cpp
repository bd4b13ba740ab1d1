#include "media/FaultList.h"

#include <algorithm>
#include <thread>

#include "media/Av.h"
#include "support/Clock.h"

namespace quiravent::desktop {

namespace {

/// How soon a fault that is switched off, or a player that is unloaded, is noticed.
constexpr int64_t kStep = 10 * kMillisecond;

}  // namespace

bool FaultList::setEnabled(size_t number, bool enabled) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (number >= m_faults.size()) return false;
    m_faults[number].enabled = enabled;
    return true;
}

std::vector<Fault> FaultList::list() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_faults;
}

std::optional<Fault> FaultList::at(int64_t time) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const double second = static_cast<double>(time) / kSecond;
    for (const Fault& fault : m_faults)
        if (fault.enabled && fault.fromSecond <= second && second < fault.toSecond) return fault;
    return std::nullopt;
}

void FaultGate::begin() { m_began = clock::now(); }

MediaError FaultGate::pass(size_t bytes, const std::atomic<bool>& cancelled) {
    const int64_t arrived = clock::now();
    bool charged = false;
    for (int64_t now = arrived; !cancelled; now = clock::now()) {
        const std::optional<Fault> fault = m_faults.at(now - m_began);
        if (!fault) return MediaError::none;
        if (fault->kind == Fault::Kind::dropped) return MediaError::connectionLost;
        if (fault->kind == Fault::Kind::unavailable) return MediaError::serverError;
        if (fault->kind == Fault::Kind::slow) {
            const uint64_t rate = std::max<uint64_t>(fault->bytesPerSecond, 1);
            if (!charged)
                m_slowUntil = std::max(m_slowUntil, now) +
                              static_cast<int64_t>(bytes * static_cast<uint64_t>(kSecond) / rate);
            charged = true;
            if (now >= m_slowUntil) return MediaError::none;
        } else if (now - arrived >= m_timeLimit) {
            return MediaError::timeout;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(kStep));
    }
    return MediaError::none;
}

}  // namespace quiravent::desktop
