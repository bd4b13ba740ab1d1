#include <nan.h>

// The least that an engine callback of the same task can do: no wrapper class, no registry, no
// device. Results go to a volatile, so that the reads are not optimised away.

namespace {

volatile uint32_t sink;
Nan::Persistent<v8::String> names[4];

uint32_t Number(v8::Local<v8::Value> value) {
    return value->Uint32Value(Nan::GetCurrentContext()).FromJust();
}

void ReadFieldOf(v8::Local<v8::Object> object) {
    sink = *static_cast<uint32_t*>(Nan::GetInternalFieldPointer(object, 0));
}

void ReadField(const v8::FunctionCallbackInfo<v8::Value>& info) { ReadFieldOf(info.This()); }

/// Four numbers and one internal field.
void FourNumbers(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    for (int index = 0; index < 4; ++index) sink = Number(info[index]);
}

/// Four properties by kept names and one internal field.
void FourProperties(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    const auto context = Nan::GetCurrentContext();
    const auto object = info[0].As<v8::Object>();
    for (const auto& name : names) {
        sink = Number(object->Get(context, Nan::New(name)).ToLocalChecked());
    }
}

/// A text, and one internal field.
void Text(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    const Nan::Utf8String text(info[0]);
    sink = static_cast<uint32_t>(text.length());
}

/// Two texts, and one internal field.
void TwoTexts(const v8::FunctionCallbackInfo<v8::Value>& info) {
    Text(info);
    const Nan::Utf8String text(info[1]);
    sink = static_cast<uint32_t>(text.length());
}

/// A text, and one internal field, and a text as result.
void TextAndText(const v8::FunctionCallbackInfo<v8::Value>& info) {
    Text(info);
    info.GetReturnValue().Set(Nan::New("value").ToLocalChecked());
}

/// Another object's internal field, two numbers and one internal field.
void ObjectAndPlace(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    ReadFieldOf(info[0].As<v8::Object>());
    sink = Number(info[1]);
    sink = Number(info[2]);
}

/// A text, two numbers and one internal field.
void TextAndPlace(const v8::FunctionCallbackInfo<v8::Value>& info) {
    Text(info);
    sink = Number(info[1]);
    sink = Number(info[2]);
}

template <int count>
void ReturnObject(const v8::FunctionCallbackInfo<v8::Value>& info) {
    const auto context = Nan::GetCurrentContext();
    const auto object = Nan::New<v8::Object>();
    for (int index = 0; index < count; ++index) {
        object->Set(context, Nan::New(names[index]), Nan::New(sink)).Check();
    }
    info.GetReturnValue().Set(object);
}

/// One internal field, and an object of numbers as result.
template <int count>
void Results(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    ReturnObject<count>(info);
}

/// A text, and an object of two numbers as result.
void TextAndTwoResults(const v8::FunctionCallbackInfo<v8::Value>& info) {
    Text(info);
    ReturnObject<2>(info);
}

/// One internal field, and a boolean as result.
void Answer(const v8::FunctionCallbackInfo<v8::Value>& info) {
    ReadField(info);
    info.GetReturnValue().Set(sink != 0);
}

void New(const v8::FunctionCallbackInfo<v8::Value>& info) {
    static uint32_t native = 1;
    Nan::SetInternalFieldPointer(info.This(), 0, &native);
}

void AddMethod(v8::Local<v8::FunctionTemplate> made, const char* name,
               v8::FunctionCallback callback) {
    v8::Isolate* isolate = v8::Isolate::GetCurrent();
    made->PrototypeTemplate()->Set(
        Nan::New(name).ToLocalChecked(),
        v8::FunctionTemplate::New(isolate, callback, v8::Local<v8::Value>(),
                                  v8::Signature::New(isolate, made)));
}

void Init(v8::Local<v8::Object> exports) {
    v8::Isolate* isolate = v8::Isolate::GetCurrent();
    const char* texts[] = {"x", "y", "w", "h"};
    for (int index = 0; index < 4; ++index) {
        names[index].Reset(
            v8::String::NewFromUtf8(isolate, texts[index], v8::NewStringType::kInternalized)
                .ToLocalChecked());
    }
    const auto made = v8::FunctionTemplate::New(isolate, New);
    made->InstanceTemplate()->SetInternalFieldCount(1);
    AddMethod(made, "fourNumbers", FourNumbers);
    AddMethod(made, "fourProperties", FourProperties);
    AddMethod(made, "text", Text);
    AddMethod(made, "textAndPlace", TextAndPlace);
    AddMethod(made, "twoTexts", TwoTexts);
    AddMethod(made, "textAndText", TextAndText);
    AddMethod(made, "objectAndPlace", ObjectAndPlace);
    AddMethod(made, "threeResults", Results<3>);
    AddMethod(made, "fourResults", Results<4>);
    AddMethod(made, "textAndTwoResults", TextAndTwoResults);
    AddMethod(made, "answer", Answer);
    Nan::Set(exports, Nan::New("Bare").ToLocalChecked(), Nan::GetFunction(made).ToLocalChecked())
        .Check();
}

}  // namespace

NAN_MODULE_WORKER_ENABLED(bare_callbacks, Init)
