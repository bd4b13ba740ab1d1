#include "Arguments.h"

#include <limits>

namespace quiravent {

namespace {

/// What a conversion gives, or a value in its place when it threw.
template <class Value, class Convert>
Value Converted(Value otherwise, Convert convert) {
    const Nan::TryCatch caught;
    Value value = otherwise;
    if (!convert(Nan::GetCurrentContext(), value)) KeptException::Keep(caught);
    return value;
}

}  // namespace

uint32_t ConvertUint32(v8::Local<v8::Value> value) {
    return Converted(uint32_t{0}, [&](v8::Local<v8::Context> context, uint32_t& number) {
        return value->Uint32Value(context).To(&number);
    });
}

int32_t ConvertInt32(v8::Local<v8::Value> value) {
    return Converted(int32_t{0}, [&](v8::Local<v8::Context> context, int32_t& number) {
        return value->Int32Value(context).To(&number);
    });
}

double ConvertDouble(v8::Local<v8::Value> value) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    return Converted(none, [&](v8::Local<v8::Context> context, double& number) {
        return value->NumberValue(context).To(&number);
    });
}

std::string ReadText(v8::Local<v8::Value> value) {
    return WithUtf8(value, [](const char* text) {
        if (text == nullptr) throw std::logic_error("a text of null is not valid");
        return std::string(text);
    });
}

v8::Local<v8::Object> ReadObject(v8::Local<v8::Value> value) {
    if (value->IsObject()) return value.As<v8::Object>();
    if (value->IsNull() || value->IsUndefined()) EndByNullRead();
    return value->ToObject(Nan::GetCurrentContext()).ToLocalChecked();
}

v8::Local<v8::Value> ReadProperty(v8::Local<v8::Object> object, Property property) {
    v8::Local<v8::Value> value;
    if (object->Get(Nan::GetCurrentContext(), NameOf(property)).ToLocal(&value)) return value;
    return Nan::Undefined();
}

FourNumbers ReadFour(v8::Local<v8::Object> object, Property first, Property second, Property third,
                     Property fourth) {
    const PropertyReads reads;
    const uint32_t x = ReadUint32(object, first);
    const uint32_t y = ReadUint32(object, second);
    const uint32_t w = ReadUint32(object, third);
    const uint32_t h = ReadUint32(object, fourth);
    return {x, y, w, h};
}

namespace {

void ThrowNotAFunction(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    const v8::Local<v8::String> text = info.Data().As<v8::String>();
    Nan::ThrowTypeError(text);
}

/// A function in place of a value that is none; calling it throws.
v8::Local<v8::Function> StandInFor(v8::Local<v8::Value> value) {
    v8::Local<v8::String> text;
    {
        const Nan::TryCatch ignored;
        if (!value->ToDetailString(Nan::GetCurrentContext()).ToLocal(&text)) {
            text = Nan::New("the callback").ToLocalChecked();
        }
    }
    const Nan::Utf8String shown(text);
    const std::string message = std::string(*shown, shown.length()) + " is not a function";
    return Nan::New<v8::Function>(ThrowNotAFunction, Nan::New(message).ToLocalChecked());
}

}  // namespace

Nan::Callback* NewCallback(v8::Local<v8::Value> value) {
    const Nan::HandleScope scope;
    if (value->IsFunction()) return new Nan::Callback(value.As<v8::Function>());
    return new Nan::Callback(StandInFor(value));
}

}  // namespace quiravent
