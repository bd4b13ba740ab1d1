#include "lineup/makeMultiplex.h"

#include <algorithm>
#include <set>

#include "lineup/packets/Schedule.h"
#include "lineup/streams/serviceStreams.h"
#include "television/tableIds.h"

namespace quiravent::desktop::lineup {

namespace {

/// How far apart a table may come (TR 101 290, EN 300 468 and receivers that zap).
constexpr Ticks kProgramInterval = 100 * kTicksPerMillisecond;
constexpr Ticks kServiceInterval = 1000 * kTicksPerMillisecond;
constexpr Ticks kNetworkInterval = 5000 * kTicksPerMillisecond;

class TableCollector {
  public:
    explicit TableCollector(Ticks loop) : m_loop(loop) {}

    void add(Pid pid, Ticks interval, const Sections& sections) {
        addChanging(pid, interval, [&sections](Ticks) { return sections; });
    }
    void addChanging(Pid pid, Ticks interval, const std::function<Sections(Ticks)>& tables) {
        for (const TimedPacket& packet : carousel(pid, interval, m_loop, tables)) {
            m_packets.push_back(packet);
        }
    }

    std::vector<TimedPacket> inOrder() {
        std::stable_sort(
            m_packets.begin(), m_packets.end(),
            [](const TimedPacket& a, const TimedPacket& b) { return a.time < b.time; });
        return std::move(m_packets);
    }

  private:
    const Ticks m_loop;
    std::vector<TimedPacket> m_packets;
};

std::vector<TimedPacket> tablesOf(const Lineup& lineup, Ticks loop) {
    TableCollector tables(loop);
    tables.add(kPatPid, kProgramInterval, associationTable(lineup));
    for (const Service& service : lineup.services) {
        tables.add(service.mapPid, kProgramInterval, mapTable(service));
    }
    tables.add(kSdtPid, kServiceInterval, descriptionTable(lineup));
    const Sections events = eventTable(lineup);
    if (!events.empty()) tables.add(kEitPid, kServiceInterval, events);
    if (hasNetworkTable(lineup)) tables.add(kNitPid, kNetworkInterval, networkTable(lineup));
    if (lineup.startTime) {
        tables.addChanging(kTdtPid, kNetworkInterval, [&lineup](Ticks time) {
            return timeTable(lineup.standard, *lineup.startTime + time / kPcrRate);
        });
    }
    return tables.inOrder();
}

std::vector<Pid> clocksOf(const Lineup& lineup) {
    std::set<Pid> clocks;
    for (const Service& service : lineup.services) clocks.insert(service.pcrPid);
    return {clocks.begin(), clocks.end()};
}

}  // namespace

std::vector<uint8_t> makeMultiplex(const Lineup& lineup, const std::string& file) {
    Load load;
    load.loop = loopDuration(lineup);
    load.clocks = clocksOf(lineup);
    load.tables = tablesOf(lineup, load.loop);
    for (size_t i = 0; i < lineup.services.size(); ++i) {
        const Place place = Place(file).at("services").at(i);
        for (CodedStream& stream : serviceStreams(lineup, lineup.services[i], place)) {
            load.streams.push_back(std::move(stream));
        }
    }
    std::vector<uint8_t> bytes;
    for (const Packet& packet : layOut(load, lineup.bitRate, Place(file).at("bitRate"))) {
        bytes.insert(bytes.end(), packet.begin(), packet.end());
    }
    return bytes;
}

}  // namespace quiravent::desktop::lineup
