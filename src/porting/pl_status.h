#pragma once

#include "porting/pl_api.h"

/// The statuses that the porting layers of this project give. The module asks only whether a
/// status is 0, and treats all others alike, but for e_pl_status_unavailable, to which
/// pl_gfx_GetVRAMStats and pl_platform_GetRuntimeState give a meaning of its own. A vendor's layer
/// is free to use other values.
enum e_pl_status : int32_t {
    e_pl_status_ok = 0,
    e_pl_status_invalid_handle = 1,    ///< no such object, or one of another kind
    e_pl_status_invalid_argument = 2,  ///< a value outside what the function takes
    e_pl_status_not_supported = 3,     ///< sound, but this device can't
    e_pl_status_no_memory = 4,         ///< no memory, handle or other resource of the kind left
    e_pl_status_not_found = 5,         ///< no such file, key, track or service
    e_pl_status_io_error = 6,          ///< reading, writing, decoding or the network failed
    e_pl_status_wrong_state = 7,       ///< not in the object's present state
    e_pl_status_unavailable = 0xFFFF,  ///< the whole function is absent on this device
};
