#pragma once

#include <nan.h>

#include "KeptException.h"

namespace quiravent {

using Info = Nan::FunctionCallbackInfo<v8::Value>;
using Entry = void (*)(const Info&);

/// What the runtime calls for a script function. The entry is a template argument, so that a call
/// from script costs no look-up of where it goes.
template <Entry entry>
void Dispatch(const v8::FunctionCallbackInfo<v8::Value>& info) {
    const bool outer = KeptException::Begin();
    entry(Info(info, v8::Local<v8::Value>()));
    KeptException::End(outer);
}

/// One row of a class's or namespace's table: a script name and the entry behind it.
struct Member {
    const char* name;
    v8::FunctionCallback callback;
};

template <Entry entry>
constexpr Member MemberOf(const char* name) {
    return {name, Dispatch<entry>};
}

inline v8::Local<v8::String> Text(const char* text) { return Nan::New(text).ToLocalChecked(); }

/// Sets a property of the exports object or of a namespace object; the result is of no interest,
/// since these objects are fresh and plain.
inline void SetMember(v8::Local<v8::Object> object, const char* name, v8::Local<v8::Value> value) {
    (void)Nan::Set(object, Text(name), value);
}

/// Makes a namespace object from its table and sets it on the exports object.
template <size_t count>
void ExportNamespace(v8::Local<v8::Object> exports, const char* name,
                     const Member (&members)[count]) {
    const v8::Local<v8::Object> space = Nan::New<v8::Object>();
    for (const Member& member : members) {
        v8::Isolate* isolate = v8::Isolate::GetCurrent();
        const auto function = v8::FunctionTemplate::New(isolate, member.callback);
        SetMember(space, member.name, Nan::GetFunction(function).ToLocalChecked());
    }
    SetMember(exports, name, space);
}

}  // namespace quiravent
