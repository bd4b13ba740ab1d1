#pragma once

#include <nan.h>

/// The differences between script runtimes that Nan doesn't hide, in one place.
namespace quiravent {

/// Calls back with the UTF-8 form of any value; null where the value's own conversion threw.
template <class Use>
auto WithUtf8(v8::Local<v8::Value> value, Use use) {
#if NODE_MAJOR_VERSION >= 8
    const v8::String::Utf8Value text(v8::Isolate::GetCurrent(), value);
#else
    const v8::String::Utf8Value text(value);
#endif
    return use(*text);
}

}  // namespace quiravent
