#include "Event.h"

#include <map>

#include "FakeDevice.h"

namespace quiravent::recorder {
namespace {

/// The event's argument with that index as the type asked for; 0 where it is missing.
template <class Type>
Type argument(const Event& event, size_t index) {
    return static_cast<Type>(index < event.args.size() ? event.args[index] : 0);
}

/// Calls a callback that takes one value of an enumeration.
template <class Enumeration>
bool deliverTo(void (*callback)(Enumeration), const Event& event) {
    if (!callback) return false;
    callback(argument<Enumeration>(event, 0));
    return true;
}

bool deliverTo(const std::map<uint32_t, pl_media_event_callback>& players, const Event& event) {
    const auto player = argument<uint32_t>(event, 0);
    const auto found = players.find(player);
    if (found == players.end() || !found->second) return false;
    found->second(player, argument<e_pl_media_event>(event, 1), argument<unsigned char>(event, 2));
    return true;
}

bool deliverOnce(const Event& event) {
    const FakeDevice::Callbacks callbacks = FakeDevice::instance().callbacks();
    if (event.callback == "keyPress") return deliverTo(callbacks.keyPress, event);
    if (event.callback == "keyRelease") return deliverTo(callbacks.keyRelease, event);
    if (event.callback == "dtv") return deliverTo(callbacks.dtv, event);
    if (event.callback == "runtimeState") return deliverTo(callbacks.runtimeState, event);
    if (event.callback == "media") return deliverTo(callbacks.media, event);
    if (event.callback == "ad") return deliverTo(callbacks.ad, event);
    return false;
}

}  // namespace

uint32_t deliver(Event event) {
    uint32_t count = 0;
    for (uint32_t call = 0; call < event.times; ++call) {
        if (deliverOnce(event)) ++count;
        if (!event.args.empty()) ++event.args.back();
    }
    return count;
}

}  // namespace quiravent::recorder
