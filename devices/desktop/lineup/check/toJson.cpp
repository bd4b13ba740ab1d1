#include "lineup/check/toJson.h"

#include <cmath>

namespace quiravent::desktop::lineup {

namespace {

using nlohmann::ordered_json;

/// Milliseconds with one decimal place.
double roundedMilliseconds(Ticks ticks) {
    return std::round(static_cast<double>(ticks) * 10 / kTicksPerMillisecond) / 10;
}

ordered_json toJson(const ServiceEvent& event) {
    return {{"id", event.id},       {"name", event.title},
            {"text", event.text},   {"language", event.language},
            {"start", event.start}, {"duration", event.duration}};
}

ordered_json toJson(const ElementaryStream& stream, const Inspection& inspection) {
    ordered_json json{{"pid", stream.pid}, {"codec", nameOf(stream.codec)}};
    if (!stream.language.empty()) json["language"] = stream.language;
    const auto found = inspection.streams.find(stream.pid);
    if (found == inspection.streams.end()) return json;
    json["units"] = found->second.units;
    json["packets"] = found->second.packets;
    if (found->second.hasLead) {
        json["shortestLeadMs"] = roundedMilliseconds(found->second.shortestLead);
    }
    return json;
}

ordered_json toJson(const desktop::Service& service, const Inspection& inspection) {
    ordered_json json{{"id", service.number},         {"name", service.name},
                      {"provider", service.provider}, {"type", service.type},
                      {"mapPid", service.mapPid},     {"pcrPid", service.pcrPid}};
    const auto clock = inspection.clocks.find(service.pcrPid);
    if (clock != inspection.clocks.end()) {
        json["longestClockIntervalMs"] = roundedMilliseconds(clock->second.longestInterval);
    }
    json["streams"] = ordered_json::array();
    for (const ElementaryStream& stream : service.streams) {
        json["streams"].push_back(toJson(stream, inspection));
    }
    if (service.present) json["present"] = toJson(*service.present);
    if (service.following) json["following"] = toJson(*service.following);
    return json;
}

}  // namespace

ordered_json toJson(const Inspection& inspection) {
    const MultiplexDescription& description = inspection.description;
    ordered_json json{{"ok", inspection.problems.empty()},
                      {"transportStreamId", description.transportStreamId},
                      {"networkId", description.networkId},
                      {"networkName", description.networkName},
                      {"packets", inspection.packets},
                      {"nullPackets", inspection.nullPackets},
                      {"bitRate", std::llround(inspection.bitRate)},
                      {"durationMs", roundedMilliseconds(inspection.duration)},
                      {"services", ordered_json::array()},
                      {"problems", inspection.problems}};
    for (const desktop::Service& service : description.services) {
        json["services"].push_back(toJson(service, inspection));
    }
    return json;
}

}  // namespace quiravent::desktop::lineup
