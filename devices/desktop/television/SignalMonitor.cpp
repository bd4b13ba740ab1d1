#include "television/SignalMonitor.h"

#include <algorithm>

namespace quiravent::desktop {

namespace {

/// Fewer than that may be found in noise by chance.
constexpr uint64_t kFewPackets = 10;

}  // namespace

void SignalMonitor::begin(int64_t now) {
    m_lastPacket = now;
    m_packets = 0;
    m_outcome.reset();
}

void SignalMonitor::onPacket(int64_t now) {
    if (m_packets++ == 0) m_firstPacket = now;
    m_lastPacket = now;
}

std::optional<e_pl_dtv_error> SignalMonitor::check(int64_t now) {
    if (now - m_lastPacket >= kPatience) {
        // What couldn't be received in the first place stays the reason.
        const bool isReasonKnown = m_packets == 0 && m_outcome;
        if (!isReasonKnown) m_outcome = e_pl_dtv_error_no_signal;
        m_packets = 0;
    } else if (!m_outcome && m_packets != 0 && now - m_firstPacket >= kPatience) {
        m_outcome =
            m_packets < kFewPackets ? e_pl_dtv_error_no_signal : e_pl_dtv_error_data_unavailable;
    }
    if (m_outcome == m_told) return std::nullopt;
    m_told = m_outcome;
    return m_outcome;
}

int64_t SignalMonitor::nextCheck() const {
    if (m_packets == 0) return m_outcome ? INT64_MAX : m_lastPacket + kPatience;
    const int64_t ofSilence = m_lastPacket + kPatience;
    return m_outcome ? ofSilence : std::min(ofSilence, m_firstPacket + kPatience);
}

}  // namespace quiravent::desktop
