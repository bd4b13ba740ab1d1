#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "television/MultiplexDescription.h"
#include "television/ProgramMap.h"
#include "television/SectionAssembler.h"
#include "television/TableVersion.h"
#include "television/text/broadcastText.h"

namespace quiravent::desktop {

/// Reads the tables of a multiplex: the association table and the program maps (ISO/IEC 13818-1),
/// and of ETSI EN 300 468 and ARIB STD-B10 the services' and the network's names, and what is on
/// and on next. For one thread.
class ServiceTables {
  public:
    /// What a packet has changed.
    enum class Change {
        none,
        details,      ///< names and events
        association,  ///< which streams there are
    };

    ServiceTables();

    /// Takes a packet of the multiplex, whatever it carries. isDiscontinuous: packets of its
    /// identifier are missing before it.
    Change add(const TransportPacket& packet, bool isDiscontinuous);

    /// The association table is there, and the map of one program that it names, if it names any.
    bool isLocked() const;
    /// The association table is there as a whole.
    bool hasAssociation() const { return m_associationVersion.isComplete(); }
    bool hasProgram(uint16_t number) const { return m_programs.count(number) != 0; }
    bool hasMapOf(uint16_t number) const;

    MultiplexDescription describe() const;

    /// How many sections had a wrong checksum or length.
    uint64_t faultySections() const { return m_faultySections; }

  private:
    using Texts = std::vector<uint8_t>;

    struct Program {
        uint16_t number;
        Pid mapPid;
        TableVersion version;
        std::optional<ProgramMap> map;
    };
    struct NamedService {
        uint8_t type = 0;
        Texts provider;
        Texts name;
    };
    struct Event {
        ServiceEvent event;  ///< without the texts
        Texts title;
        Texts text;
    };
    struct Schedule {
        TableVersion version;
        std::array<std::optional<Event>, 2> events;  ///< present and following
    };

    void expectFixedTables();
    void expectSections(Pid pid);
    Change use(Pid pid, const Section& section);
    Change useAssociation(const Section& section);
    Change useProgramMap(Pid pid, const Section& section);
    Change useServices(const Section& section);
    Change useNetwork(const Section& section);
    Change useEvents(const Section& section);
    static std::optional<Event> readEvent(ByteView body);
    TextCoding coding() const;
    Service describe(const Program& program) const;
    std::optional<ServiceEvent> describe(const std::optional<Event>& event) const;

    std::vector<std::optional<SectionAssembler>> m_assemblers;  ///< by PID
    uint64_t m_faultySections = 0;

    TableVersion m_associationVersion;
    uint16_t m_transportStreamId = 0;
    Pid m_networkPid = kNitPid;
    std::map<uint16_t, Program> m_programs;
    std::vector<uint16_t> m_order;  ///< of the programs in the association table

    TableVersion m_servicesVersion;
    std::map<uint16_t, NamedService> m_services;

    TableVersion m_networkVersion;
    uint16_t m_networkId = 0;
    uint16_t m_originalNetwork = 0;
    bool m_isIsdb = false;
    Texts m_networkName;

    std::map<uint16_t, Schedule> m_schedules;
};

}  // namespace quiravent::desktop
