#include "Value.h"

#include <algorithm>

namespace quiravent::recorder {

double Value::number() const {
    const auto* held = std::get_if<double>(this);
    return held ? *held : 0;
}

const std::string& Value::text() const {
    static const std::string empty;
    const auto* held = std::get_if<std::string>(this);
    return held ? *held : empty;
}

const List& Value::list() const {
    static const List empty;
    const auto* held = std::get_if<List>(this);
    return held ? *held : empty;
}

const Value* Value::find(const std::string& name) const {
    const auto* record = std::get_if<Record>(this);
    return record ? recorder::find(*record, name) : nullptr;
}

const Value* find(const Record& record, const std::string& name) {
    const auto found = std::find_if(record.begin(), record.end(),
                                    [&](const auto& entry) { return entry.first == name; });
    return found == record.end() ? nullptr : &found->second;
}

uint32_t wordOr(const Value& record, const std::string& name, uint32_t fallback) {
    const Value* value = record.find(name);
    return value ? static_cast<uint32_t>(static_cast<int64_t>(value->number())) : fallback;
}

}  // namespace quiravent::recorder
