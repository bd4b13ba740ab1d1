#pragma once

#include <array>
#include <string>

#include "porting/pl_media.h"

namespace quiravent {

/// The texts for kinds of track, in the order of their codes. Both player classes have such a
/// table.
using ComponentNames = std::array<std::string, 4>;

inline ComponentNames MakeComponentNames() { return {"video", "audio", "subtitle", "unknown"}; }

/// The code of a text, compared whole and by case; 65535, which the device has to refuse, for any
/// other.
inline e_pl_media_component_type ComponentTypeOf(const ComponentNames& names,
                                                 const std::string& text) {
    for (uint32_t code = 0; code < names.size(); ++code) {
        if (text == names[code]) return e_pl_media_component_type(code);
    }
    return e_pl_media_component_type_invalid;
}

}  // namespace quiravent
