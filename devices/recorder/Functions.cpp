// The interface as the loader sees it: every function logs its call, waits where a test wants it
// to, and answers as prepared or as the fake device does.

#include <tuple>
#include <type_traits>
#include <utility>

#include "Encode.h"
#include "FakeDevice.h"
#include "Fulfil.h"
#include "porting/pl_events.h"

namespace quiravent::recorder {
namespace {

/// An array that the caller lends is logged with its length, which goes in as well as out.
template <class Element>
List describe(uint32_t handle, Element** array, uint32_t* count) {
    return {encode(handle), encode(array), encode(*count)};
}

List describe(uint32_t handle, e_pl_media_component_type type, s_pl_media_track_info** array,
              uint32_t* count) {
    return {encode(handle), encode(type), encode(array), encode(*count)};
}

template <class... Arguments>
List describe(const Arguments&... arguments) {
    return {encode(arguments)...};
}

template <auto function, class... Arguments>
int32_t answerCall(Fn<function> fn, const char* name, const std::tuple<Arguments&...>& arguments) {
    const Behaviour behaviour = Recorder::instance().enter(
        name, std::apply([](auto&... each) { return describe(each...); }, arguments));
    Answer answer(behaviour);
    if constexpr (std::is_invocable_v<Fulfil, Fn<function>, Answer&, Arguments&...>) {
        std::apply([&](auto&... each) { Fulfil()(fn, answer, each...); }, arguments);
    }
    for (const Event& event : behaviour.inside) deliver(event);
    return answer.status();
}

}  // namespace
}  // namespace quiravent::recorder

// NOLINTBEGIN(bugprone-macro-parentheses): the lists bring their own.
#define PL_FUNCTION(result, name, parameters, arguments)                                \
    result name parameters {                                                            \
        return static_cast<result>(quiravent::recorder::answerCall(                     \
            quiravent::recorder::Fn<&name>(), #name, std::forward_as_tuple arguments)); \
    }
// NOLINTEND(bugprone-macro-parentheses)
#include "porting/pl_functions.def"

void pl_EnableDTVEvents() {
    quiravent::recorder::Recorder::instance().enter("PlatformServices::EnableDTVEvents", {});
}
