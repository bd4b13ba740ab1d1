#include "porting/pl_input.h"

#include "boundary.h"

using quiravent::desktop::answer;
using quiravent::desktop::Device;
using quiravent::desktop::Required;

/// The first function that the module calls: a device that can't start says so here.
int32_t pl_input_init() {
    return answer(__func__, Required(), [](Device&) { return e_pl_status_ok; });
}

int32_t pl_input_SetCallback_KeyPress(pl_input_key_callback callback) {
    return answer(__func__, Required(callback), [&](Device& device) {
        device.remote().setPressCallback(callback);
        return e_pl_status_ok;
    });
}

int32_t pl_input_SetCallback_KeyRelease(pl_input_key_callback callback) {
    return answer(__func__, Required(callback), [&](Device& device) {
        device.remote().setReleaseCallback(callback);
        return e_pl_status_ok;
    });
}

int32_t pl_input_UpdateKeyMask(uint32_t mask, uint32_t high, uint32_t attach) {
    return answer(__func__, Required(), [&](Device& device) {
        if (attach > 1) return e_pl_status_invalid_argument;
        device.remote().mask().set(uint64_t{high} << 32 | mask, attach == 1);
        return e_pl_status_ok;
    });
}
