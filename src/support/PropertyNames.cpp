#include "PropertyNames.h"

#include <array>

namespace quiravent {

namespace {

using Names = std::array<Nan::Persistent<v8::String>, static_cast<size_t>(Property::count)>;

constexpr const char* kTexts[] = {
#define NAME(name) #name,
    QUIRAVENT_PROPERTY_NAMES(NAME)
#undef NAME
};

// Never destroyed: at process end the runtime that owns the strings may be gone already.
Names& KeptNames() {
    static Names& names = *new Names;
    return names;
}

}  // namespace

void InitPropertyNames() {
    v8::Isolate* isolate = v8::Isolate::GetCurrent();
    size_t index = 0;
    for (auto& name : KeptNames()) {
        name.Reset(
            v8::String::NewFromUtf8(isolate, kTexts[index++], v8::NewStringType::kInternalized)
                .ToLocalChecked());
    }
}

const char* TextOf(Property property) { return kTexts[static_cast<size_t>(property)]; }

v8::Local<v8::String> NameOf(Property property) {
    return Nan::New(KeptNames()[static_cast<size_t>(property)]);
}

}  // namespace quiravent
