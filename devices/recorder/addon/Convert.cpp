#include "Convert.h"

#include <algorithm>
#include <iterator>

namespace quiravent::recorder {
namespace {

v8::Local<v8::String> toScriptText(const std::string& text) {
    return Nan::New(text.data(), static_cast<int>(text.size())).ToLocalChecked();
}

/// Visits a value with its script counterpart as the result.
struct ToScript {
    v8::Local<v8::Value> operator()(std::nullptr_t) const { return Nan::Null(); }
    v8::Local<v8::Value> operator()(bool flag) const { return Nan::New(flag); }
    v8::Local<v8::Value> operator()(double number) const { return Nan::New(number); }
    v8::Local<v8::Value> operator()(const std::string& text) const { return toScriptText(text); }

    v8::Local<v8::Value> operator()(const List& list) const {
        const auto array = Nan::New<v8::Array>(static_cast<int>(list.size()));
        for (uint32_t index = 0; index < list.size(); ++index) {
            Nan::Set(array, index, toScript(list[index])).FromJust();
        }
        return array;
    }

    v8::Local<v8::Value> operator()(const Record& record) const {
        const auto object = Nan::New<v8::Object>();
        for (const auto& [name, value] : record) {
            Nan::Set(object, toScriptText(name), toScript(value)).FromJust();
        }
        return object;
    }
};

std::string fromScriptText(v8::Local<v8::Value> value) {
    const Nan::Utf8String text(value);
    return *text ? std::string(*text, static_cast<size_t>(text.length())) : std::string();
}

List fromScriptArray(v8::Local<v8::Array> array) {
    List list;
    for (uint32_t index = 0; index < array->Length(); ++index) {
        list.push_back(fromScript(Nan::Get(array, index).ToLocalChecked()));
    }
    return list;
}

Record fromScriptObject(v8::Local<v8::Object> object) {
    Record record;
    const auto names = Nan::GetOwnPropertyNames(object).ToLocalChecked();
    for (uint32_t index = 0; index < names->Length(); ++index) {
        const auto name = Nan::Get(names, index).ToLocalChecked();
        record.emplace_back(fromScriptText(name),
                            fromScript(Nan::Get(object, name).ToLocalChecked()));
    }
    return record;
}

Event toEvent(const Value& value) {
    Event event;
    if (const Value* callback = value.find("callback")) event.callback = callback->text();
    if (const Value* args = value.find("args")) {
        for (const Value& arg : args->list()) {
            event.args.push_back(static_cast<int64_t>(arg.number()));
        }
    }
    if (const Value* times = value.find("times")) {
        event.times = static_cast<uint32_t>(times->number());
    }
    return event;
}

}  // namespace

v8::Local<v8::Value> toScript(const Value& value) {
    return std::visit(ToScript(), static_cast<const Value::variant&>(value));
}

v8::Local<v8::Value> toScript(const Call& call) {
    return toScript(Record{{"seq", static_cast<double>(call.seq)},
                           {"fn", std::string(call.fn)},
                           {"args", call.args},
                           {"thread", call.thread}});
}

Value fromScript(v8::Local<v8::Value> value) {
    if (value->IsBoolean()) return Nan::To<bool>(value).FromJust();
    if (value->IsNumber()) return Nan::To<double>(value).FromJust();
    if (value->IsString()) return fromScriptText(value);
    if (value->IsArray()) return fromScriptArray(value.As<v8::Array>());
    if (value->IsObject()) return fromScriptObject(value.As<v8::Object>());
    return {};
}

Behaviour toBehaviour(const Value& value) {
    Behaviour behaviour;
    if (const Value* status = value.find("status")) {
        behaviour.status = static_cast<int32_t>(status->number());
    }
    if (const Value* outputs = value.find("outputs")) {
        if (const auto* record = std::get_if<Record>(outputs)) behaviour.outputs = *record;
    }
    if (const Value* gate = value.find("gate")) behaviour.gate = gate->text();
    if (const Value* opens = value.find("opens")) behaviour.opens = opens->text();
    if (const Value* patience = value.find("patience")) {
        behaviour.patience = std::chrono::milliseconds(static_cast<int64_t>(patience->number()));
    }
    if (const Value* inside = value.find("inside")) behaviour.inside = toEvents(*inside);
    return behaviour;
}

std::vector<Event> toEvents(const Value& value) {
    std::vector<Event> events;
    std::transform(value.list().begin(), value.list().end(), std::back_inserter(events), toEvent);
    return events;
}

}  // namespace quiravent::recorder
