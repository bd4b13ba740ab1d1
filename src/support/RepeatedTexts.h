#pragma once

#include <nan.h>

#include <string_view>

namespace quiravent {

/// The script string of a text (UTF-8 without zero bytes), for texts of which many come again, such
/// as names of events and codes of keys: that of a short text is kept from its second coming on, as
/// making it anew costs more than all else of an event but its listener's call. Script thread,
/// within a handle scope.
v8::Local<v8::String> RepeatedText(std::string_view text);

}  // namespace quiravent
