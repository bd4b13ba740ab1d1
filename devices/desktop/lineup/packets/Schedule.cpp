#include "lineup/packets/Schedule.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quiravent::desktop::lineup {

namespace {

/// How much earlier than the delay demands a unit may be sent: at the end of the loop, nothing may
/// be left over.
constexpr Ticks kLead = 100 * kTicksPerMillisecond;

/// A unit is there at least this long before it is decoded.
constexpr Ticks kMargin = 10 * kTicksPerMillisecond;

constexpr std::array<Ticks, 7> kDelays{150, 200, 300, 400, 500, 700, 900};

constexpr uint64_t kPacketBits = TransportPacket::kSize * 8;

/// One stream on its way: its next packet, and until when the unit that it is of must be there.
class Sender {
  public:
    Sender(std::vector<UnitPackets> units, Ticks delay)
        : m_units(std::move(units)), m_delay(delay) {}

    bool isFinished() const { return m_unit == m_units.size(); }
    bool isReady(Ticks now) const { return !isFinished() && deadline() - m_delay - kLead <= now; }
    Ticks deadline() const { return m_units[m_unit].dts + m_delay; }

    const Packet& take() {
        const Packets& packets = m_units[m_unit].packets;
        const Packet& packet = packets[m_packet];
        if (++m_packet == packets.size()) {
            m_packet = 0;
            ++m_unit;
        }
        return packet;
    }

  private:
    std::vector<UnitPackets> m_units;
    Ticks m_delay;
    size_t m_unit = 0;
    size_t m_packet = 0;
};

/// The references of one clock, each due at its time.
struct Clock {
    Pid pid;
    /// Not at 0: the association table comes first, so that who begins there knows what follows.
    Ticks due = 1;
    uint8_t continuity = 0;  ///< of the last packet with payload
    bool isFirst = true;
};

/// Fills the places of the loop one after the other.
class Layout {
  public:
    Layout(const Load& load, size_t packetCount, Ticks delay) : m_load(load), m_count(packetCount) {
        for (const Pid pid : load.clocks) m_clocks.push_back({pid});
        for (const CodedStream& stream : load.streams) {
            m_senders.emplace_back(packetise(stream, delay), delay);
        }
        // Before the first packet with payload, a clock's counter is one less than that one's.
        for (Clock& clock : m_clocks) clock.continuity = kContinuityModulus - 1;
    }

    std::optional<Packets> fill() {
        m_packets.reserve(m_count);
        for (size_t i = 0; i < m_count; ++i) {
            const std::optional<Packet> packet = next(timeOf(i), timeOf(i + 1));
            if (!packet) return std::nullopt;
            m_packets.push_back(*packet);
        }
        const bool isComplete =
            m_nextTable == m_load.tables.size() &&
            std::all_of(m_senders.begin(), m_senders.end(),
                        [](const Sender& sender) { return sender.isFinished(); });
        if (!isComplete) return std::nullopt;
        return std::move(m_packets);
    }

  private:
    Ticks timeOf(size_t number) const {
        return static_cast<Ticks>(static_cast<size_t>(m_load.loop) * number / m_count);
    }

    /// What is sent from `now` until `end`; none when it comes too late.
    std::optional<Packet> next(Ticks now, Ticks end) {
        if (const std::optional<Packet> clock = dueClock(now)) return clock;
        if (isTableDue(now)) return m_load.tables[m_nextTable++].packet;
        Sender* const sender = mostUrgent(now);
        if (sender == nullptr) return nullPacket();
        if (sender->deadline() - kMargin < end) return std::nullopt;
        const Packet& packet = sender->take();
        noteContinuity(packet);
        return packet;
    }

    bool isTableDue(Ticks now) const {
        return m_nextTable < m_load.tables.size() && m_load.tables[m_nextTable].time <= now;
    }

    std::optional<Packet> dueClock(Ticks now) {
        for (Clock& clock : m_clocks) {
            if (clock.due > now) continue;
            clock.due = now + kClockInterval;
            const bool isFirst = std::exchange(clock.isFirst, false);
            return clockPacket(clock.pid, clock.continuity, now, isFirst);
        }
        return std::nullopt;
    }

    Sender* mostUrgent(Ticks now) {
        Sender* found = nullptr;
        for (Sender& sender : m_senders) {
            if (!sender.isReady(now)) continue;
            if (found == nullptr || sender.deadline() < found->deadline()) found = &sender;
        }
        return found;
    }

    void noteContinuity(const Packet& packet) {
        const TransportPacket view(packet.data());
        for (Clock& clock : m_clocks) {
            if (clock.pid == view.pid()) clock.continuity = view.continuity();
        }
    }

    const Load& m_load;
    const size_t m_count;
    std::vector<Clock> m_clocks;
    std::vector<Sender> m_senders;
    size_t m_nextTable = 0;
    Packets m_packets;
};

size_t packetsAt(const Load& load, uint64_t bitRate) {
    const auto loop = static_cast<double>(load.loop) / kPcrRate;
    return static_cast<size_t>(std::llround(static_cast<double>(bitRate) * loop / kPacketBits));
}

std::optional<Packets> withShortestDelay(const Load& load, uint64_t bitRate) {
    for (const Ticks milliseconds : kDelays) {
        std::optional<Packets> packets =
            schedule(load, packetsAt(load, bitRate), milliseconds * kTicksPerMillisecond);
        if (packets) return packets;
    }
    return std::nullopt;
}

uint64_t leastRate(const Load& load) {
    const Ticks clocks = static_cast<Ticks>(load.clocks.size()) * load.loop / kClockInterval;
    const uint64_t bits = (load.packetCount() + static_cast<uint64_t>(clocks)) * kPacketBits;
    return static_cast<uint64_t>(static_cast<double>(bits) * kPcrRate /
                                 static_cast<double>(load.loop));
}

uint64_t roundedUp(uint64_t bitRate) {
    constexpr uint64_t kStep = 50000;
    return (bitRate + kStep - 1) / kStep * kStep;
}

struct Fit {
    uint64_t bitRate;
    Packets packets;
};

Fit lowestRate(const Load& load) {
    uint64_t bitRate = roundedUp(leastRate(load));
    for (;;) {
        std::optional<Packets> packets = withShortestDelay(load, bitRate);
        if (packets) return {bitRate, std::move(*packets)};
        bitRate = roundedUp(bitRate + bitRate / 32);
    }
}

}  // namespace

size_t Load::packetCount() const {
    size_t count = tables.size();
    for (const CodedStream& stream : streams) {
        for (const UnitPackets& unit : packetise(stream, 0)) count += unit.packets.size();
    }
    return count;
}

std::optional<Packets> schedule(const Load& load, size_t packetCount, Ticks delay) {
    return Layout(load, packetCount, delay).fill();
}

Packets layOut(const Load& load, uint64_t bitRate, const Place& place) {
    if (bitRate == 0) return lowestRate(load).packets;
    std::optional<Packets> packets = withShortestDelay(load, bitRate);
    if (packets) return std::move(*packets);
    refuseValue(place, bitRate,
                joined("at least ", lowestRate(load).bitRate, ", which the services need"));
}

}  // namespace quiravent::desktop::lineup
