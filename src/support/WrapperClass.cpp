#include "WrapperClass.h"

namespace quiravent {

void ExportClass(v8::Local<v8::Object> exports, const char* name, v8::FunctionCallback construct,
                 int internalFields, const Member* members, size_t count,
                 Nan::Persistent<v8::Function>& kept) {
    v8::Isolate* isolate = v8::Isolate::GetCurrent();
    const auto made = v8::FunctionTemplate::New(isolate, construct);
    made->SetClassName(Text(name));
    made->InstanceTemplate()->SetInternalFieldCount(internalFields);
    // The signature makes the runtime refuse a foreign receiver before a method is entered.
    const auto signature = v8::Signature::New(isolate, made);
    for (size_t index = 0; index < count; ++index) {
        const Member& member = members[index];
        const auto method =
            v8::FunctionTemplate::New(isolate, member.callback, v8::Local<v8::Value>(), signature);
        method->SetClassName(Text(member.name));
        made->PrototypeTemplate()->Set(Text(member.name), method);
    }
    kept.Reset(Nan::GetFunction(made).ToLocalChecked());
    SetMember(exports, name, Nan::GetFunction(made).ToLocalChecked());
}

}  // namespace quiravent
