#pragma once

#include "porting/pl_api.h"

// The remote control.

/// Number of a key. Which key has which number is the layer's affair, but for one.
enum pl_input_keycode : int32_t {
    /// Takes the application to the background: a press becomes a request for the runtime state
    /// low_profile, and only the release is told to the application.
    pl_input_keycode_home = 2,
};

using pl_input_key_callback = void (*)(pl_input_keycode code);

/// Makes the keys ready. Called once, on the script thread, when the module is loaded.
PL_API int32_t pl_input_init();

/// Register who is told of keys, instead of the one before. A key that is held down repeats its
/// press, and is released once. Presses and releases are told in the order in which they happen,
/// by one thread at a time. Called on a pool thread.
///
/// From inside the press callback the module may call pl_platform_SetRuntimeState.
PL_API int32_t pl_input_SetCallback_KeyPress(pl_input_key_callback callback);
PL_API int32_t pl_input_SetCallback_KeyRelease(pl_input_key_callback callback);

/// Says which keys the application wants: bit n of mask stands for key n, bit n of high for key
/// 32 + n; attach is 1 to have these keys delivered, 0 to have them withheld. Keys beyond 63 and
/// below 0 are always delivered, and before the first call all are.
PL_API int32_t pl_input_UpdateKeyMask(uint32_t mask, uint32_t high, uint32_t attach);
