#include "porting/pl_platform.h"

#include "boundary.h"
#include "porting/pl_events.h"
#include "support/WallClock.h"

using quiravent::desktop::answer;
using quiravent::desktop::Device;
using quiravent::desktop::Required;
using quiravent::desktop::RuntimeState;

int32_t pl_platform_InitProperties(s_pl_platform_properties* properties) {
    return answer(__func__, Required(properties), [&](Device& device) {
        *properties = device.platform().properties();
        return e_pl_status_ok;
    });
}

int32_t pl_platform_GetRuntimeState(e_pl_platform_runtime_state* state) {
    return answer(__func__, Required(state), [&](Device& device) {
        *state = device.platform().runtimeState().get();
        return e_pl_status_ok;
    });
}

int32_t pl_platform_SetRuntimeState(e_pl_platform_runtime_state state) {
    return answer(__func__, Required(), [&](Device& device) {
        if (state >= RuntimeState::names().size()) return e_pl_status_invalid_argument;
        device.platform().runtimeState().set(state);
        return e_pl_status_ok;
    });
}

int32_t pl_platform_SetCallback_RuntimeStateChange(pl_platform_runtime_state_callback callback) {
    return answer(__func__, Required(callback), [&](Device& device) {
        device.platform().runtimeState().setCallback(callback);
        return e_pl_status_ok;
    });
}

int32_t pl_platform_Exit() {
    return answer(__func__, Required(), [](Device& device) -> e_pl_status { device.leave(); });
}

int32_t pl_platform_Restart() {
    return answer(__func__, Required(), [](Device& device) -> e_pl_status { device.restart(); });
}

int32_t pl_platform_ToggleLiveDTV(bool on) {
    return answer(__func__, Required(), [&](Device& device) {
        device.switchLiveTelevision(on);
        return e_pl_status_ok;
    });
}

int32_t pl_platform_GetLiveDTVStatus(uint8_t* on) {
    return answer(__func__, Required(on), [&](Device& device) {
        *on = device.liveTelevision().isOn() ? 1 : 0;
        return e_pl_status_ok;
    });
}

int32_t pl_platform_SetReferenceDate(uint32_t timestamp) {
    constexpr int64_t kMicroseconds = 1000000;
    return answer(__func__, Required(), [&](Device&) {
        quiravent::desktop::clock::setWallTime(timestamp * kMicroseconds);
        return e_pl_status_ok;
    });
}

void pl_EnableDTVEvents() {
    (void)answer("EnableDTVEvents", Required(), [](Device& device) {
        device.liveTelevision().enableEvents();
        return e_pl_status_ok;
    });
}
