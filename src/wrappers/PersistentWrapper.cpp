#include "PersistentWrapper.h"

#include <map>
#include <string>

#include "support/Arguments.h"
#include "support/InitOrder.h"

using namespace quiravent;

Nan::Persistent<v8::Function> PersistentWrapper::constructor
    __attribute__((init_priority(quiravent::kPersistentConstructor)));

namespace {

/// Texts that stand for no value; in the store and in "getAll" they remain what they are.
bool StandsForNothing(const std::string& value) {
    return value.empty() || value == "null" || value == "undefined";
}

void Get(Persistent* store, const Info& info) {
    std::string value;
    if (info[0]->IsString()) store->Get(ReadText(info[0]), value);
    if (StandsForNothing(value)) return;
    info.GetReturnValue().Set(Text(value.c_str()));
}

void Set(Persistent* store, const Info& info) {
    if (!info[0]->IsString()) return;
    const std::string key = ReadText(info[0]);
    // The empty text is the only way to clear a value: a key is never removed.
    store->Set(key, IsMissing(info[1]) ? std::string() : ReadText(info[1]));
}

void GetAll(Persistent* store, const Info& info) {
    std::map<std::string, std::string> values;
    store->GetAll(values);
    const v8::Local<v8::Object> result = Nan::New<v8::Object>();
    for (const auto& [key, value] : values) {
        SetMember(result, key.c_str(), Text(value.c_str()));
    }
    info.GetReturnValue().Set(result);
}

}  // namespace

void PersistentWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, {MethodOf<Get>("get"), MethodOf<Set>("set"), MethodOf<GetAll>("getAll")});
}
