#include "Results.h"

namespace quiravent {

namespace {

template <class Values>
void ReturnObject(const Info& info, const Values& values) {
    const v8::Local<v8::Object> result = Nan::New<v8::Object>();
    for (const auto& [property, value] : values) {
        (void)Nan::Set(result, NameOf(property), Nan::New(value));
    }
    info.GetReturnValue().Set(result);
}

}  // namespace

void ReturnIntegers(const Info& info, std::initializer_list<std::pair<Property, int32_t>> values) {
    ReturnObject(info, values);
}

void ReturnUnsigned(const Info& info, std::initializer_list<std::pair<Property, uint32_t>> values) {
    ReturnObject(info, values);
}

}  // namespace quiravent
