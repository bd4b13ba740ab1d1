#pragma once

#include <nan.h>

namespace quiravent {

/// Property names that scripts and the module exchange again and again. They are made once, when
/// the module is loaded, and kept: making a string anew costs more than the call it is for.
// clang-format off
#define QUIRAVENT_PROPERTY_NAMES(NAME) \
    NAME(x) NAME(y) NAME(w) NAME(h) NAME(x1) NAME(y1) NAME(x2) NAME(y2) NAME(r) NAME(g) NAME(b) \
    NAME(a) NAME(width) NAME(height) NAME(mode) NAME(xc) NAME(yc) NAME(radiusx) NAME(radiusy) \
    NAME(ang_start) NAME(ang_end) NAME(used) NAME(free) NAME(message) NAME(now) NAME(begin) \
    NAME(end) NAME(id) NAME(language)
// clang-format on

enum class Property {
#define NAME(name) name,
    QUIRAVENT_PROPERTY_NAMES(NAME)
#undef NAME
        count
};

/// Makes the names; called first of all when the module is set up.
void InitPropertyNames();

const char* TextOf(Property property);

/// The kept script string; valid on the script thread, within a handle scope.
v8::Local<v8::String> NameOf(Property property);

}  // namespace quiravent
