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

/// Has a function called when the process exits in an orderly way, on the script thread.
inline void AtProcessExit(void (*hook)(void*)) {
#if NODE_MAJOR_VERSION >= 12
    node::AtExit(node::GetCurrentEnvironment(Nan::GetCurrentContext()), hook, nullptr);
#else
    node::AtExit(hook, nullptr);
#endif
}

}  // namespace quiravent
