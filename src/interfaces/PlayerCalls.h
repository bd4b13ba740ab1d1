#pragma once

#include <cstdint>

#include "porting/pl_media.h"

namespace quiravent {

/// Calls a player's function of the porting layer, unless the handle is 0.
template <class Function, class... Arguments>
int32_t CallPlayer(Function function, uint32_t handle, Arguments... arguments) {
    return handle == 0 ? 0 : function(handle, arguments...);
}

template <class Function>
int32_t GetPlayerTime(Function function, uint32_t handle, unsigned* now, unsigned* begin,
                      unsigned* end) {
    if (handle == 0) return 0;
    s_pl_media_timeref time = {*begin, *now, *end};
    const int32_t status = function(handle, &time);
    *now = time.now;
    *begin = time.begin;
    *end = time.end;
    return status;
}

}  // namespace quiravent
