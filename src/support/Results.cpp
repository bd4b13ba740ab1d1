#include "Results.h"

namespace quiravent {

namespace {

template <class Values>
v8::Local<v8::Object> MakeObject(const Values& values) {
    const v8::Local<v8::Object> result = Nan::New<v8::Object>();
    for (const auto& [property, value] : values) {
        (void)Nan::Set(result, NameOf(property), Nan::New(value));
    }
    return result;
}

}  // namespace

void ReturnIntegers(const Info& info, std::initializer_list<std::pair<Property, int32_t>> values) {
    info.GetReturnValue().Set(MakeObject(values));
}

v8::Local<v8::Object> MakeUnsigned(std::initializer_list<std::pair<Property, uint32_t>> values) {
    return MakeObject(values);
}

void ReturnUnsigned(const Info& info, std::initializer_list<std::pair<Property, uint32_t>> values) {
    info.GetReturnValue().Set(MakeObject(values));
}

}  // namespace quiravent
