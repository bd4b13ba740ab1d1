#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "lineup/check/Inspection.h"
#include "lineup/check/UnitHead.h"
#include "lineup/check/findProblems.h"
#include "television/ContinuityCheck.h"
#include "television/PacketSync.h"
#include "television/ServiceTables.h"

namespace quiravent::desktop::lineup {

namespace {

/// A clock reference, and the number of its packet.
struct Reference {
    uint64_t packet;
    Ticks clock;
};

/// The end of a unit's arrival, and its decoding.
struct Arrival {
    Pid pid;
    uint64_t lastPacket;
    Ticks decoding;
};

/// Reads the packets of a file one after the other.
class Reader {
  public:
    void read(ByteView bytes, Inspection& inspection) {
        PacketSync sync;
        sync.add(bytes, [&](const TransportPacket& packet, uint64_t) { take(packet, inspection); });
        inspection.syncLosses = sync.losses();
        for (const auto& [pid, arrival] : m_arriving) m_arrivals.push_back(arrival);
        closeCounters(inspection);
        inspection.description = m_tables.describe();
        inspection.faultySections = m_tables.faultySections();
        useClocks(inspection);
    }

  private:
    struct Counters {
        std::optional<uint8_t> first;  ///< of the packets with payload
        uint8_t last = 0;
    };

    void take(const TransportPacket& packet, Inspection& inspection) {
        const uint64_t number = inspection.packets++;
        if (packet.pid() == kNullPid) {
            ++inspection.nullPackets;
            return;
        }
        StreamFacts& facts = inspection.streams[packet.pid()];
        ++facts.packets;
        const bool isGap = m_continuity.check(packet) == ContinuityCheck::Verdict::gap;
        if (isGap) ++facts.gaps;
        if (packet.startsUnit()) ++facts.units;
        m_tables.add(packet, isGap);
        noteCounter(packet);
        noteClock(packet, number);
        noteArrival(packet, number);
    }

    void noteCounter(const TransportPacket& packet) {
        if (!packet.hasPayload()) return;
        Counters& counters = m_counters[packet.pid()];
        if (!counters.first) counters.first = packet.continuity();
        counters.last = packet.continuity();
    }

    void noteClock(const TransportPacket& packet, uint64_t number) {
        const std::optional<int64_t> clock = packet.clockReference();
        if (clock) m_references[packet.pid()].push_back({number, *clock});
    }

    void noteArrival(const TransportPacket& packet, uint64_t number) {
        if (!packet.hasPayload()) return;
        const auto before = m_arriving.find(packet.pid());
        if (packet.startsUnit()) {
            if (before != m_arriving.end()) m_arrivals.push_back(before->second);
            m_arriving.erase(packet.pid());
            const auto time = decodingTime({packet.payload(), packet.payloadSize()});
            if (time) m_arriving[packet.pid()] = {packet.pid(), number, *time};
        } else if (before != m_arriving.end()) {
            before->second.lastPacket = number;
        }
    }

    /// The first packets follow the last ones where the file begins again.
    void closeCounters(Inspection& inspection) const {
        for (const auto& [pid, counters] : m_counters) {
            const bool goesRound = *counters.first == (counters.last + 1) % 16;
            if (!goesRound) ++inspection.streams[pid].gaps;
        }
    }

    void useClocks(Inspection& inspection) {
        for (const auto& [pid, references] : m_references) {
            useClock(references, inspection.clocks[pid], inspection);
        }
        for (const desktop::Service& service : inspection.description.services) {
            const auto clock = m_references.find(service.pcrPid);
            if (clock == m_references.end()) continue;
            for (const ElementaryStream& stream : service.streams) {
                useArrivals(stream.pid, clock->second, inspection);
            }
        }
    }

    /// Ticks per packet between the first and the last reference.
    static double paceOf(const std::vector<Reference>& references) {
        const Reference& first = references.front();
        const Reference& last = references.back();
        if (last.packet == first.packet) return 0;
        return static_cast<double>(pcrDifference(first.clock, last.clock)) /
               static_cast<double>(last.packet - first.packet);
    }

    static void useClock(const std::vector<Reference>& references, ClockFacts& facts,
                         Inspection& inspection) {
        const double pace = paceOf(references);
        const Reference& first = references.front();
        facts.references = references.size();
        for (size_t i = 0; i < references.size(); ++i) {
            const Reference& one = references[i];
            const auto expected = static_cast<Ticks>(
                std::llround(pace * static_cast<double>(one.packet - first.packet)));
            const Ticks deviation = pcrDifference(first.clock, one.clock) - expected;
            facts.largestDeviation = std::max(facts.largestDeviation, std::abs(deviation));
            if (i == 0) continue;
            facts.longestInterval =
                std::max(facts.longestInterval, pcrDifference(references[i - 1].clock, one.clock));
        }
        if (pace <= 0) return;
        const auto wrap =
            static_cast<double>(inspection.packets - references.back().packet + first.packet);
        facts.longestInterval =
            std::max(facts.longestInterval, static_cast<Ticks>(std::llround(pace * wrap)));
        inspection.bitRate = TransportPacket::kSize * 8 * static_cast<double>(kPcrRate) / pace;
        inspection.duration =
            static_cast<Ticks>(std::llround(pace * static_cast<double>(inspection.packets)));
    }

    void useArrivals(Pid pid, const std::vector<Reference>& references,
                     Inspection& inspection) const {
        const double pace = paceOf(references);
        if (pace <= 0) return;
        StreamFacts& facts = inspection.streams[pid];
        const Reference& first = references.front();
        for (const Arrival& arrival : m_arrivals) {
            if (arrival.pid != pid) continue;
            const double packets =
                static_cast<double>(arrival.lastPacket + 1) - static_cast<double>(first.packet);
            const Ticks now = first.clock + static_cast<Ticks>(std::llround(pace * packets));
            const Ticks lead = pcrDifference(now, arrival.decoding);
            facts.shortestLead = facts.hasLead ? std::min(facts.shortestLead, lead) : lead;
            facts.hasLead = true;
        }
    }

    ContinuityCheck m_continuity;
    ServiceTables m_tables;
    std::map<Pid, Counters> m_counters;
    std::map<Pid, std::vector<Reference>> m_references;
    std::map<Pid, Arrival> m_arriving;
    std::vector<Arrival> m_arrivals;
};

}  // namespace

Inspection inspect(ByteView bytes) {
    Inspection inspection;
    Reader().read(bytes, inspection);
    inspection.problems = findProblems(inspection);
    return inspection;
}

}  // namespace quiravent::desktop::lineup
