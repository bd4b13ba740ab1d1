#include "television/Descriptors.h"
#include "television/ServiceTables.h"

namespace quiravent::desktop {

namespace {

std::string decoded(const std::vector<uint8_t>& text, TextCoding coding) {
    return broadcastText({text.data(), text.size()}, coding);
}

}  // namespace

MultiplexDescription ServiceTables::describe() const {
    MultiplexDescription description;
    description.transportStreamId = m_transportStreamId;
    description.networkId = m_networkId;
    description.networkName = decoded(m_networkName, coding());
    for (const uint16_t number : m_order) {
        description.services.push_back(describe(m_programs.at(number)));
    }
    return description;
}

Service ServiceTables::describe(const Program& program) const {
    Service service;
    service.number = program.number;
    service.mapPid = program.mapPid;
    service.hasMap = program.map.has_value();
    if (program.map) {
        service.pcrPid = program.map->pcrPid;
        service.streams = program.map->streams;
    }
    const auto named = m_services.find(program.number);
    if (named != m_services.end()) {
        service.type = named->second.type;
        service.name = decoded(named->second.name, coding());
        service.provider = decoded(named->second.provider, coding());
    }
    const auto schedule = m_schedules.find(program.number);
    if (schedule != m_schedules.end()) {
        service.present = describe(schedule->second.events[0]);
        service.following = describe(schedule->second.events[1]);
    }
    return service;
}

std::optional<ServiceEvent> ServiceTables::describe(const std::optional<Event>& event) const {
    if (!event) return std::nullopt;
    ServiceEvent described = event->event;
    described.title = decoded(event->title, coding());
    described.text = decoded(event->text, coding());
    return described;
}

}  // namespace quiravent::desktop
