#include "television/ServiceTables.h"

#include <algorithm>
#include <utility>

#include "television/Descriptors.h"
#include "television/tableIds.h"

namespace quiravent::desktop {

namespace {

// ISDB's events for mobile receivers.
constexpr Pid kMobileEitPid = 0x0026;
constexpr Pid kPartialReceptionEitPid = 0x0027;

/// Those below are for tables of their own.
constexpr Pid kFirstFreePid = 0x0010;

constexpr int kSecondsPerDay = 24 * 60 * 60;

std::vector<uint8_t> copied(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

unsigned fromDecimal(uint8_t byte) { return (byte >> 4U) * 10U + (byte & 0x0FU); }

uint32_t takeTimeOfDay(ByteReader& reader) {
    const unsigned hours = fromDecimal(reader.byte());
    const unsigned minutes = fromDecimal(reader.byte());
    return (hours * 60 + minutes) * 60 + fromDecimal(reader.byte());
}

/// Seconds since the beginning of 1970, of a modified Julian date with a time of day.
int64_t takeTime(ByteReader& reader) {
    constexpr uint16_t kUndefined = 0xFFFF;
    constexpr int kFirstOf1970 = 40587;
    const uint16_t day = reader.word();
    const uint32_t timeOfDay = takeTimeOfDay(reader);
    if (day == kUndefined) return 0;
    return int64_t{day - kFirstOf1970} * kSecondsPerDay + timeOfDay;
}

/// Whether one of the descriptors of a stream in the network table is ISDB's.
bool tellsIsdb(ByteView descriptors) {
    for (const uint8_t tag : {descriptor::kSatelliteDelivery, descriptor::kCableDelivery,
                              descriptor::kTerrestrialDelivery})
        if (findDescriptor(descriptors, tag)) return false;
    return findDescriptor(descriptors, descriptor::kIsdbTerrestrialDelivery).has_value();
}

/// The broadcasters of Japan, as ARIB STD-B10 and TR-B14 number them.
bool isJapanese(uint16_t originalNetwork) {
    return (originalNetwork >= 0x7880 && originalNetwork <= 0x7FEF) || originalNetwork == 0x0004 ||
           originalNetwork == 0x0006 || originalNetwork == 0x0007 || originalNetwork == 0x000A;
}

}  // namespace

ServiceTables::ServiceTables() : m_assemblers(kPidCount) { expectFixedTables(); }

void ServiceTables::expectFixedTables() {
    for (const Pid pid :
         {kPatPid, kNitPid, kSdtPid, kEitPid, kMobileEitPid, kPartialReceptionEitPid}) {
        expectSections(pid);
    }
}

ServiceTables::Change ServiceTables::add(const TransportPacket& packet, bool isDiscontinuous) {
    const Pid pid = packet.pid();
    auto& assembler = m_assemblers.at(pid);
    if (!assembler) return Change::none;
    const uint64_t faulty = assembler->faulty();
    Change change = Change::none;
    assembler->add(packet, isDiscontinuous, [&](const Section& section) {
        if (section.isCurrent) change = std::max(change, use(pid, section));
    });
    m_faultySections += assembler->faulty() - faulty;
    return change;
}

void ServiceTables::expectSections(Pid pid) {
    auto& assembler = m_assemblers.at(pid);
    if (!assembler) assembler.emplace();
}

ServiceTables::Change ServiceTables::use(Pid pid, const Section& section) {
    if (pid == kPatPid) {
        return section.tableId == table::kPat ? useAssociation(section) : Change::none;
    }
    switch (section.tableId) {
        case table::kPmt:
            return useProgramMap(pid, section);
        case table::kNitActual:
            return pid == m_networkPid ? useNetwork(section) : Change::none;
        case table::kSdtActual:
            return pid == kSdtPid ? useServices(section) : Change::none;
        case table::kEitActualPresentFollowing:
            return useEvents(section);
        default:
            return Change::none;
    }
}

ServiceTables::Change ServiceTables::useAssociation(const Section& section) {
    const TableVersion::News news = m_associationVersion.add(section);
    if (news == TableVersion::News::none) return Change::none;
    std::map<uint16_t, Program> before;
    if (news == TableVersion::News::newTable) {
        before.swap(m_programs);
        m_order.clear();
        for (const auto& [number, program] : before) m_assemblers.at(program.mapPid).reset();
        expectFixedTables();
    }
    m_transportStreamId = section.extension;
    for (ByteReader reader(section.body); !reader.isAtEnd();) {
        const uint16_t number = reader.word();
        const Pid pid = reader.pid();
        if (pid == kNullPid || pid < kFirstFreePid) continue;
        if (number == 0) {
            m_networkPid = pid;
            expectSections(pid);
            continue;
        }
        expectSections(pid);
        const auto known = before.find(number);
        const bool isSame = known != before.end() && known->second.mapPid == pid;
        Program program = isSame ? std::move(known->second) : Program{number, pid, {}, {}};
        if (m_programs.insert_or_assign(number, std::move(program)).second) {
            m_order.push_back(number);
        }
    }
    return Change::association;
}

ServiceTables::Change ServiceTables::useProgramMap(Pid pid, const Section& section) {
    const auto found = m_programs.find(section.extension);
    if (found == m_programs.end() || found->second.mapPid != pid) return Change::none;
    Program& program = found->second;
    if (program.version.add(section) == TableVersion::News::none) return Change::none;
    program.map = parseProgramMap(section);
    return Change::association;
}

ServiceTables::Change ServiceTables::useServices(const Section& section) {
    const TableVersion::News news = m_servicesVersion.add(section);
    if (news == TableVersion::News::none) return Change::none;
    if (news == TableVersion::News::newTable) m_services.clear();
    ByteReader reader(section.body);
    m_originalNetwork = reader.word();
    reader.byte();
    while (!reader.isAtEnd()) {
        const uint16_t number = reader.word();
        reader.byte();
        const auto content = findDescriptor(reader.take(reader.length()), descriptor::kService);
        if (!content) continue;
        ByteReader names(*content);
        NamedService& service = m_services[number];
        service.type = names.byte();
        service.provider = copied(names.takeCounted());
        service.name = copied(names.takeCounted());
    }
    return Change::details;
}

ServiceTables::Change ServiceTables::useNetwork(const Section& section) {
    const TableVersion::News news = m_networkVersion.add(section);
    if (news == TableVersion::News::none) return Change::none;
    if (news == TableVersion::News::newTable) m_isIsdb = false;
    m_networkId = section.extension;
    ByteReader reader(section.body);
    const auto name = findDescriptor(reader.take(reader.length()), descriptor::kNetworkName);
    if (name) m_networkName = copied(*name);
    for (ByteReader streams(reader.take(reader.length())); !streams.isAtEnd();) {
        streams.word();
        m_originalNetwork = streams.word();
        if (tellsIsdb(streams.take(streams.length()))) m_isIsdb = true;
    }
    return Change::details;
}

ServiceTables::Change ServiceTables::useEvents(const Section& section) {
    Schedule& schedule = m_schedules[section.extension];
    const TableVersion::News news = schedule.version.add(section);
    if (news == TableVersion::News::none || section.number > 1) return Change::none;
    if (news == TableVersion::News::newTable) schedule.events = {};
    ByteReader reader(section.body);
    reader.skip(6);
    schedule.events.at(section.number) = readEvent(reader.take(reader.left()));
    return Change::details;
}

std::optional<ServiceTables::Event> ServiceTables::readEvent(ByteView body) {
    constexpr size_t kLetters = 3;
    if (body.empty()) return std::nullopt;
    ByteReader reader(body);
    Event event;
    event.event.id = reader.word();
    event.event.start = takeTime(reader);
    event.event.duration = takeTimeOfDay(reader);
    const auto content = findDescriptor(reader.take(reader.length()), descriptor::kShortEvent);
    if (content) {
        ByteReader texts(*content);
        const ByteView language = texts.take(kLetters);
        event.event.language.assign(language.begin(), language.end());
        event.title = copied(texts.takeCounted());
        event.text = copied(texts.takeCounted());
    }
    return event;
}

bool ServiceTables::hasMapOf(uint16_t number) const {
    const auto found = m_programs.find(number);
    return found != m_programs.end() && found->second.map;
}

bool ServiceTables::isLocked() const {
    if (!hasAssociation()) return false;
    return m_programs.empty() ||
           std::any_of(m_programs.begin(), m_programs.end(),
                       [](const auto& one) { return one.second.map.has_value(); });
}

TextCoding ServiceTables::coding() const {
    if (isJapanese(m_originalNetwork)) return TextCoding::isdbJapanese;
    return m_isIsdb ? TextCoding::isdbLatin : TextCoding::dvb;
}

}  // namespace quiravent::desktop
