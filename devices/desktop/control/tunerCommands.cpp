#include "control/tunerCommands.h"

#include <array>
#include <string>

#include "support/Clock.h"
#include "support/DeviceError.h"
#include "support/Lasting.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

const std::vector<std::string>& stateNames() {
    static const Lasting<std::vector<std::string>> names({"idle", "searching", "locked", "failed"});
    return *names;
}

const std::string& stateOf(const TunerStatus& status) {
    enum { idle, searching, locked, failed };
    const auto& names = stateNames();
    if (!status.isSelected) return names[idle];
    if (!status.outcome) return names[searching];
    return names[*status.outcome == e_pl_dtv_error_none ? locked : failed];
}

std::string nameOf(e_pl_dtv_error code) {
    static constexpr std::array<const char*, 10> kNames{"none",
                                                        "resource unavailable",
                                                        "operation unavailable",
                                                        "not allowed",
                                                        "not supported",
                                                        "invalid parameter",
                                                        "data unavailable",
                                                        "no signal",
                                                        "service not found",
                                                        "media not found"};
    return code < kNames.size() ? kNames[code] : "no digital television here";
}

OrderedJson shown(const ServiceEvent& event) {
    return {{"id", event.id},
            {"start", event.start},
            {"duration", event.duration},
            {"language", event.language},
            {"title", event.title},
            {"text", event.text}};
}

OrderedJson shown(const ElementaryStream& stream) {
    OrderedJson object{{"pid", stream.pid},
                       {"type", stream.type},
                       {"kind", nameOf(kindOf(stream.codec))},
                       {"codec", nameOf(stream.codec)}};
    if (!stream.language.empty()) object["language"] = stream.language;
    return object;
}

OrderedJson shown(const Service& service) {
    OrderedJson object{{"number", service.number},
                       {"name", service.name},
                       {"provider", service.provider},
                       {"type", service.type},
                       {"mapPid", service.mapPid}};
    if (service.hasMap) {
        object["pcrPid"] = service.pcrPid;
        object["streams"] = OrderedJson::array();
        for (const ElementaryStream& stream : service.streams) {
            object["streams"].push_back(shown(stream));
        }
    }
    if (service.present) object["present"] = shown(*service.present);
    if (service.following) object["following"] = shown(*service.following);
    return object;
}

OrderedJson shown(const SignalQuality& quality) {
    OrderedJson object{{"locked", quality.isLocked}};
    if (quality.strength) object["strength"] = *quality.strength;
    if (quality.ratio) object["ratio"] = *quality.ratio;
    return object;
}

OrderedJson shown(const ReceiverStatus& receiver) {
    const SignalStatistics& statistics = receiver.statistics;
    OrderedJson object{{"bitRate", static_cast<uint64_t>(statistics.bitRate)},
                       {"packets", statistics.packets},
                       {"continuityErrors", statistics.continuityErrors},
                       {"damagedPackets", statistics.damagedPackets},
                       {"scrambledPackets", statistics.scrambledPackets},
                       {"faultySections", statistics.faultySections},
                       {"syncLosses", statistics.syncLosses},
                       {"pids", OrderedJson::array()}};
    if (receiver.quality) object["quality"] = shown(*receiver.quality);
    for (size_t pid = 0; pid < statistics.pids.size(); ++pid) {
        const SignalStatistics::OfPid& ofPid = statistics.pids[pid];
        if (ofPid.packets == 0) continue;
        object["pids"].push_back({{"pid", pid},
                                  {"packets", ofPid.packets},
                                  {"continuityErrors", ofPid.continuityErrors}});
    }
    return object;
}

void addDescription(OrderedJson& object, const MultiplexDescription& description) {
    object["transportStream"] = description.transportStreamId;
    object["network"] = {{"id", description.networkId}, {"name", description.networkName}};
    object["services"] = OrderedJson::array();
    for (const Service& service : description.services) {
        object["services"].push_back(shown(service));
    }
}

OrderedJson shown(Tuner& tuner) {
    const TunerStatus status = tuner.status();
    OrderedJson object{{"state", stateOf(status)}};
    if (!status.isSelected) return object;
    object["selector"] = status.selector;
    object["option"] = status.option;
    if (status.outcome.value_or(e_pl_dtv_error_none) != e_pl_dtv_error_none) {
        object["error"] = *status.outcome;
        object["reason"] = status.failure.empty() ? nameOf(*status.outcome) : status.failure;
    }
    const MultiplexRef description = tuner.multiplex().description();
    if (description) addDescription(object, *description);
    if (status.receiver) object["signal"] = shown(*status.receiver);
    return object;
}

OrderedJson shown(const SignalTroubles& troubles) {
    auto list = OrderedJson::array();
    for (const SignalFault& fault : troubles.faults) {
        const bool isLoss = fault.kind == SignalFault::Kind::lost;
        OrderedJson object{{"fault", list.size() + 1},
                           {"kind", isLoss ? "lost" : "errors"},
                           {"from", fault.fromSecond},
                           {"to", fault.toSecond}};
        if (!isLoss) object["errorRate"] = fault.errorRate;
        object["on"] = fault.enabled;
        list.push_back(object);
    }
    return {{"lost", troubles.isLost},
            {"errorRate", troubles.errorRate},
            {"delay", troubles.lockDelay / kMillisecond},
            {"seed", troubles.seed},
            {"faults", list}};
}

void switchFault(const Request& request, SignalFaults& faults) {
    const uint64_t number = request.number("fault", UINT32_MAX);
    if (faults.setEnabled(number - 1, request.flag("on"))) return;
    throw DeviceError(e_pl_status_not_found,
                      joined("there is no fault ", number, "; television.faults has ",
                             faults.get().faults.size(), ", counted from 1"));
}

}  // namespace

Work tuner(const Request&, ControlSession& session) {
    return finished({{"tuner", shown(session.target.tuner)}});
}

Work waitTuner(const Request& request, ControlSession& session) {
    constexpr int64_t kInterval = 5 * kMillisecond;
    const std::string wanted = stateNames().at(request.choice("state", stateNames()));
    const uint64_t timeout = request.number("timeout", kMaxTimeout, 5000);
    const int64_t deadline = clock::now() + static_cast<int64_t>(timeout) * kMillisecond;
    Tuner& tuner = session.target.tuner;
    return [&tuner, wanted, timeout, deadline](int64_t now) -> Progress {
        const std::string state = stateOf(tuner.status());
        if (state == wanted) return {OrderedJson{{"tuner", shown(tuner)}}};
        if (now < deadline) return {std::nullopt, std::min(deadline, now + kInterval)};
        throw DeviceError(e_pl_status_unavailable, joined("the tuner isn't ", wanted, " after ",
                                                          timeout, " ms: it is ", state));
    };
}

Work signalTroubles(const Request& request, ControlSession& session) {
    SignalFaults& faults = session.target.tuner.faults();
    // All is read before anything is changed.
    const auto real = [&](const char* name) { return request.real(name, 0, kMostErrors); };
    const auto number = [&](const char* name, uint64_t most) {
        return request.has(name) ? std::optional(request.number(name, most)) : std::nullopt;
    };
    const auto isLost = request.has("lost") ? std::optional(request.flag("lost")) : std::nullopt;
    const auto rate = request.has("errorRate") ? std::optional(real("errorRate")) : std::nullopt;
    const auto delay = number("delay", kMaxTimeout);
    const auto seed = number("seed", UINT64_MAX);
    if (request.has("fault") || request.has("on")) switchFault(request, faults);
    if (isLost) faults.setLost(*isLost);
    if (rate) faults.setErrorRate(*rate);
    if (delay) faults.setLockDelay(static_cast<int64_t>(*delay) * kMillisecond);
    if (seed) faults.setSeed(*seed);
    return finished({{"signal", shown(faults.get())}});
}

}  // namespace quiravent::desktop
