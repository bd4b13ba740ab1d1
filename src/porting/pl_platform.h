#pragma once

#include <cstddef>

#include "porting/pl_api.h"

// The platform around the application: its properties, the application's runtime state, the end of
// it, live television. Called on the script thread where nothing else is said.

/// The platform's properties: `count` keys, and the value of each under the same index, as
/// NUL-terminated texts. Of two equal keys the later counts. The memory is the layer's, and stays
/// as it is at least until the next call.
struct s_pl_platform_properties {
    uint32_t count;
    const char** keys;
    const char** values;
};
static_assert(sizeof(s_pl_platform_properties) == 3 * sizeof(void*) &&
                  offsetof(s_pl_platform_properties, keys) == sizeof(void*) &&
                  offsetof(s_pl_platform_properties, values) == 2 * sizeof(void*),
              "a count and two pointers, each in a machine word's place");

/// How much of the device the application has. Which state may follow which is the platform's
/// business.
enum e_pl_platform_runtime_state : uint32_t {
    e_pl_platform_runtime_state_paused = 0,
    e_pl_platform_runtime_state_running = 1,      ///< in the foreground, with all of the screen
    e_pl_platform_runtime_state_low_profile = 2,  ///< in the background, with little memory
    e_pl_platform_runtime_state_overlay = 3,      ///< above another service's video
    e_pl_platform_runtime_state_suspended = 4,
    e_pl_platform_runtime_state_advertising = 5,
};

using pl_platform_runtime_state_callback = void (*)(e_pl_platform_runtime_state state);

/// Gives the properties. *properties is not initialised by the caller. May be called again.
PL_API int32_t pl_platform_InitProperties(s_pl_platform_properties* properties);

/// Gives the present state. With e_pl_status_unavailable, and that status alone, the application
/// counts as running. Called on the script thread and on one more thread of the module.
PL_API int32_t pl_platform_GetRuntimeState(e_pl_platform_runtime_state* state);

/// Asks for a state. A change that comes of it is told by the callback like any other, afterwards.
/// Called on the script thread, on one more thread of the module, and from inside the callback of
/// pl_input_SetCallback_KeyPress.
PL_API int32_t pl_platform_SetRuntimeState(e_pl_platform_runtime_state state);

/// Registers who is told of each change of the state. The present one isn't told on registration.
PL_API int32_t
pl_platform_SetCallback_RuntimeStateChange(pl_platform_runtime_state_callback callback);

/// Ends the application. Need not return.
PL_API int32_t pl_platform_Exit();

/// Starts the application anew. Need not return.
PL_API int32_t pl_platform_Restart();

/// Switches the device's own live television service on or off, below the application's graphics.
PL_API int32_t pl_platform_ToggleLiveDTV(bool on);

/// Tells whether live television is on: 0 no, any other value yes. The module doesn't look at the
/// status, so *on should be written in any case.
PL_API int32_t pl_platform_GetLiveDTVStatus(uint8_t* on);

/// Sets the time that the application takes as the present. timestamp: seconds since the beginning
/// of 1970, UTC.
PL_API int32_t pl_platform_SetReferenceDate(uint32_t timestamp);
