#pragma once

#include <nan.h>

#include <cstdlib>

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

/// Has a function called, once or twice, when the process exits in an orderly way. It runs on the
/// script thread, before the runtime waits for the threads of its pool: those since 14 wait when
/// their environment ends, the earlier ones when the process does.
inline void AtProcessExit(void (*hook)()) {
    static void (*const kept)() = hook;
    std::atexit(kept);
#if NODE_MAJOR_VERSION >= 12
    node::AtExit(
        node::GetCurrentEnvironment(Nan::GetCurrentContext()), [](void*) { kept(); }, nullptr);
#endif
}

}  // namespace quiravent
