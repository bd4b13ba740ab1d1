#include "live/StreamIntake.h"

#include <utility>

namespace quiravent::desktop {

namespace {

/// A player's thread that is so far behind will not catch up.
constexpr size_t kMaxWaitingBytes = 32U << 20;

}  // namespace

void StreamIntake::begin() {
    m_clock = ProgramClock();
    m_assemblers.clear();
    for (const Pid pid : {m_streams.video, m_streams.audio, m_streams.subtitle})
        if (pid != kNullPid) m_assemblers.emplace(pid, PesAssembler(pid));
}

void StreamIntake::reset(const LiveStreams& streams) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_streams = streams;
    m_items.clear();
    m_bytes = 0;
    begin();
}

void StreamIntake::setSubtitle(Pid pid) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Pid old = m_streams.subtitle;
    if (old == pid) return;
    if (old != kNullPid && old != m_streams.video && old != m_streams.audio)
        m_assemblers.erase(old);
    m_streams.subtitle = pid;
    if (pid != kNullPid) m_assemblers.emplace(pid, PesAssembler(pid));
}

std::vector<StreamIntake::Item> StreamIntake::take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bytes = 0;
    return std::exchange(m_items, {});
}

void StreamIntake::add(Item::Kind kind) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_items.push_back({kind, {}});
    }
    m_wakeup.signal();
}

void StreamIntake::note(Item::Kind kind) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        begin();
    }
    add(kind);
}

void StreamIntake::onPacket(const StreamPacket& packet) {
    const Pid pid = packet.packet.pid();
    bool hasUnits = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto reference =
            pid == m_streams.clock ? packet.packet.clockReference() : std::nullopt;
        if (reference && !packet.packet.isDamaged())
            m_clock.observe(*reference, packet.arrival,
                            packet.isDiscontinuous || packet.packet.announcesDiscontinuity());
        const auto assembler = m_assemblers.find(pid);
        if (assembler == m_assemblers.end()) return;
        assembler->second.accept(packet, m_clock.mapping(), m_units);
        for (PesUnit& unit : m_units) {
            m_bytes += unit.data.size();
            if (m_bytes > kMaxWaitingBytes) break;
            m_items.push_back({Item::Kind::unit, std::move(unit)});
            hasUnits = true;
        }
        m_units.clear();
    }
    if (hasUnits) m_wakeup.signal();
}

}  // namespace quiravent::desktop
