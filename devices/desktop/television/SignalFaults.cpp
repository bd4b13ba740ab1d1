#include "television/SignalFaults.h"

#include <algorithm>
#include <cmath>

#include "support/Clock.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop {

namespace {

bool isAt(const SignalFault& fault, SignalFault::Kind kind, int64_t time) {
    const double second = static_cast<double>(time) / kSecond;
    return fault.enabled && fault.kind == kind && fault.fromSecond <= second &&
           second < fault.toSecond;
}

}  // namespace

SignalTroubles SignalFaults::get() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_troubles;
}

void SignalFaults::setLost(bool isLost) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_troubles.isLost = isLost;
}

void SignalFaults::setErrorRate(double rate) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_troubles.errorRate = rate;
}

void SignalFaults::setLockDelay(int64_t delay) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_troubles.lockDelay = delay;
}

void SignalFaults::setSeed(uint64_t seed) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_troubles.seed = seed;
}

bool SignalFaults::setEnabled(size_t number, bool enabled) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (number >= m_troubles.faults.size()) return false;
    m_troubles.faults[number].enabled = enabled;
    return true;
}

bool SignalFaults::isLostAt(int64_t time) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_troubles.isLost || std::any_of(m_troubles.faults.begin(), m_troubles.faults.end(),
                                            [&](const SignalFault& fault) {
                                                return isAt(fault, SignalFault::Kind::lost, time);
                                            });
}

double SignalFaults::errorRateAt(int64_t time) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    double rate = m_troubles.errorRate;
    for (const SignalFault& fault : m_troubles.faults) {
        if (isAt(fault, SignalFault::Kind::errors, time)) rate = std::max(rate, fault.errorRate);
    }
    return rate;
}

FaultyPath::FaultyPath(const SignalFaults& faults, int64_t now)
    : m_faults(faults), m_began(now), m_random(faults.get().seed) {}

bool FaultyPath::isOpen(int64_t now) {
    if (m_faults.isLostAt(now - m_began)) {
        m_presentSince = INT64_MAX;
        return false;
    }
    if (m_presentSince == INT64_MAX) m_presentSince = now;
    return now - m_presentSince >= m_faults.lockDelay();
}

void FaultyPath::damage(uint8_t* bytes, int64_t now) {
    const double rate = m_faults.errorRateAt(now - m_began);
    if (rate != m_rate) {
        m_rate = rate;
        drawNextError();
    }
    if (m_rate <= 0) return;
    constexpr uint64_t kBits = uint64_t{8} * TransportPacket::kSize;
    for (; m_bitsToError < kBits; drawNextError()) {
        bytes[m_bitsToError / 8] ^= static_cast<uint8_t>(0x80 >> m_bitsToError % 8);
        m_passedBits = m_bitsToError + 1;
    }
    m_bitsToError -= kBits;
    m_passedBits = 0;
}

/// The errors are independent, so the bits between two of them are distributed geometrically.
void FaultyPath::drawNextError() {
    if (m_rate <= 0) return;
    m_bitsToError = m_passedBits + std::geometric_distribution<uint64_t>(m_rate)(m_random);
}

}  // namespace quiravent::desktop
