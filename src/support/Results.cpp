#include "Results.h"

#include <string>

namespace quiravent {

v8::Local<v8::Object> MakeUnsigned(std::initializer_list<std::pair<Property, uint32_t>> values) {
    const v8::Local<v8::Object> result = Nan::New<v8::Object>();
    for (const auto& [property, value] : values) {
        (void)Nan::Set(result, NameOf(property), Nan::New(value));
    }
    return result;
}

namespace {

/// Sets the properties one by one, as this side would: also where Object.prototype has something to
/// say about it.
std::string SourceOf(const Property* properties, size_t count) {
    std::string parameters;
    std::string sets;
    for (size_t i = 0; i < count; ++i) {
        const std::string name = TextOf(properties[i]);
        if (i != 0) parameters += ',';
        parameters += name;
        sets.append("o.").append(name).append("=").append(name).append(";");
    }
    return "(function(" + parameters + "){var o={};" + sets + "return o})";
}

}  // namespace

bool ResultMaker::Compile(v8::Local<v8::Context> context) {
    if (!m_function.IsEmpty()) return true;
    const auto source = Nan::New(SourceOf(m_properties, m_count)).ToLocalChecked();
    v8::Local<v8::Script> script;
    v8::Local<v8::Value> function;
    if (!v8::Script::Compile(context, source).ToLocal(&script) ||
        !script->Run(context).ToLocal(&function) || !function->IsFunction())
        return false;
    m_function.Reset(function.As<v8::Function>());
    return true;
}

void ResultMaker::Return(const Info& info, v8::Local<v8::Value>* values, size_t count) {
    v8::Isolate* isolate = info.GetIsolate();
    const v8::Local<v8::Context> context = isolate->GetCurrentContext();
    if (!Compile(context)) return;
    const auto function = v8::Local<v8::Function>::New(isolate, m_function);
    v8::Local<v8::Value> result;
    if (function->Call(context, v8::Undefined(isolate), static_cast<int>(count), values)
            .ToLocal(&result)) {
        info.GetReturnValue().Set(result);
    }
}

}  // namespace quiravent
