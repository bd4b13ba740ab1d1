#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/Text.h"

namespace quiravent::desktop::lineup {

/// Where a value stands, as messages tell it: "FILE: services[0].name".
class Place {
  public:
    explicit Place(std::string file) : m_file(std::move(file)) {}

    Place at(const std::string& key) const {
        return {m_file, m_path.empty() ? key : joined(m_path, '.', key)};
    }
    Place at(size_t index) const { return {m_file, joined(m_path, '[', index, ']')}; }

    std::string text() const { return joined(m_file, ": ", m_path.empty() ? "the file" : m_path); }
    const std::string& file() const { return m_file; }
    const std::string& path() const { return m_path; }

  private:
    Place(std::string file, std::string path) : m_file(std::move(file)), m_path(std::move(path)) {}

    std::string m_file;
    std::string m_path;
};

/// Throws DeviceError: "PLACE is VALUE; allowed: ALLOWED".
[[noreturn]] void refuseValue(const Place& place, const nlohmann::json& value,
                              const std::string& allowed);
/// Throws DeviceError: "PLACE is missing; allowed: ALLOWED".
[[noreturn]] void refuseMissing(const Place& place, const std::string& allowed);
/// Throws DeviceError for a key that no field has.
[[noreturn]] void refuseKey(const Place& place, const nlohmann::json& value,
                            const std::vector<std::string>& known);

/// One value of an object: its name, what it may be, and where it goes.
template <class Target>
struct Field {
    std::string key;
    std::string description;
    std::string allowed;  ///< completes "allowed: "
    nlohmann::ordered_json schema;
    /// Stores the value; false when it isn't allowed. Throws DeviceError for what is wrong deeper
    /// inside.
    std::function<bool(Target&, const nlohmann::json&, const Place&)> store;
    bool isRequired = false;
};

template <class Target>
using Fields = std::vector<Field<Target>>;

template <class Target>
Field<Target> required(Field<Target> field) {
    field.isRequired = true;
    return field;
}

template <class Target>
std::vector<std::string> keysOf(const Fields<Target>& fields) {
    std::vector<std::string> keys;
    keys.reserve(fields.size());
    for (const Field<Target>& field : fields) keys.push_back(field.key);
    return keys;
}

/// What an object may hold, for messages.
template <class Target>
std::string objectRule(const Fields<Target>& fields) {
    return joined("an object with ", listed(keysOf(fields)));
}

/// Reads an object's values into the target; what isn't named stays as it is. Throws DeviceError,
/// with one line, at the first thing that is wrong.
template <class Target>
void readObject(const nlohmann::json& object, const Fields<Target>& fields, const Place& place,
                Target& target) {
    if (!object.is_object()) refuseValue(place, object, objectRule(fields));
    for (const auto& [key, value] : object.items()) {
        const auto isIt = [&name = key](const Field<Target>& field) { return field.key == name; };
        const auto field = std::find_if(fields.begin(), fields.end(), isIt);
        if (field == fields.end()) refuseKey(place.at(key), value, keysOf(fields));
        if (!field->store(target, value, place.at(key))) {
            refuseValue(place.at(key), value, field->allowed);
        }
    }
    for (const Field<Target>& field : fields) {
        if (field.isRequired && !object.contains(field.key)) {
            refuseMissing(place.at(field.key), field.allowed);
        }
    }
}

/// JSON schema of an object.
template <class Target>
nlohmann::ordered_json schemaOf(const Fields<Target>& fields) {
    nlohmann::ordered_json schema{{"type", "object"}, {"additionalProperties", false}};
    std::vector<std::string> needed;
    for (const Field<Target>& field : fields) {
        nlohmann::ordered_json& value = schema["properties"][field.key];
        value["description"] = field.description;
        value.update(field.schema);
        if (field.isRequired) needed.push_back(field.key);
    }
    if (!needed.empty()) schema["required"] = needed;
    return schema;
}

/// A whole number of a range.
template <class Target, class Number>
Field<Target> numberField(std::string key, std::string description, uint64_t least, uint64_t most,
                          Number Target::*member) {
    auto store = [least, most, member](Target& target, const nlohmann::json& value, const Place&) {
        if (!value.is_number_unsigned()) return false;
        const auto number = value.get<uint64_t>();
        if (number < least || number > most) return false;
        target.*member = static_cast<Number>(number);
        return true;
    };
    return {std::move(key), std::move(description),
            joined("a whole number from ", least, " to ", most),
            nlohmann::ordered_json{{"type", "integer"}, {"minimum", least}, {"maximum", most}},
            std::move(store)};
}

/// A value that a function reads from JSON; none when it isn't allowed.
template <class Target, class Value>
Field<Target> readField(std::string key, std::string description, std::string allowed,
                        nlohmann::ordered_json schema,
                        std::optional<Value> (*read)(const nlohmann::json&),
                        Value Target::*member) {
    auto store = [read, member](Target& target, const nlohmann::json& value, const Place&) {
        std::optional<Value> found = read(value);
        if (!found) return false;
        target.*member = std::move(*found);
        return true;
    };
    return {std::move(key), std::move(description), std::move(allowed), std::move(schema),
            std::move(store)};
}

/// One of an enumeration's values; names in their order.
template <class Target, class Enumeration>
Field<Target> choiceField(std::string key, std::string description,
                          const std::vector<std::string>& names, Enumeration Target::*member) {
    auto store = [names, member](Target& target, const nlohmann::json& value, const Place&) {
        const auto found = std::find(names.begin(), names.end(), value);
        if (found == names.end()) return false;
        target.*member = static_cast<Enumeration>(found - names.begin());
        return true;
    };
    std::vector<std::string> quoted;
    quoted.reserve(names.size());
    for (const std::string& name : names) quoted.push_back('"' + name + '"');
    return {std::move(key), std::move(description), listed(quoted),
            nlohmann::ordered_json{{"enum", names}}, std::move(store)};
}

template <class Target>
Field<Target> flagField(std::string key, std::string description, bool Target::*member) {
    auto store = [member](Target& target, const nlohmann::json& value, const Place&) {
        if (!value.is_boolean()) return false;
        target.*member = value.get<bool>();
        return true;
    };
    return {std::move(key), std::move(description), "true, false",
            nlohmann::ordered_json{{"type", "boolean"}}, std::move(store)};
}

/// An object inside of the object. nullText: what null means, beside an object; empty: null isn't
/// allowed.
template <class Target, class Part>
Field<Target> objectField(std::string key, std::string description, const std::string& nullText,
                          const Fields<Part>& fields, std::optional<Part> Target::*member) {
    const bool mayBeNull = !nullText.empty();
    auto store = [fields, mayBeNull, member](Target& target, const nlohmann::json& value,
                                             const Place& place) {
        if (value.is_null() && mayBeNull) {
            (target.*member).reset();
            return true;
        }
        if (!value.is_object()) return false;
        Part part;
        readObject(value, fields, place, part);
        target.*member = std::move(part);
        return true;
    };
    nlohmann::ordered_json schema = schemaOf(fields);
    if (mayBeNull) schema["type"] = {"object", "null"};
    return {std::move(key), std::move(description), objectRule(fields) + nullText,
            std::move(schema), std::move(store)};
}

/// A list of objects.
template <class Target, class Part>
Field<Target> listField(std::string key, std::string description, size_t least, size_t most,
                        const Fields<Part>& fields, std::vector<Part> Target::*member) {
    auto store = [fields, least, most, member](Target& target, const nlohmann::json& value,
                                               const Place& place) {
        if (!value.is_array() || value.size() < least || value.size() > most) return false;
        std::vector<Part> parts(value.size());
        for (size_t i = 0; i < parts.size(); ++i) {
            readObject(value[i], fields, place.at(i), parts[i]);
        }
        target.*member = std::move(parts);
        return true;
    };
    return {std::move(key), std::move(description),
            joined("a list of ", least, " to ", most, " objects"),
            nlohmann::ordered_json{{"type", "array"},
                                   {"minItems", least},
                                   {"maxItems", most},
                                   {"items", schemaOf(fields)}},
            std::move(store)};
}

}  // namespace quiravent::desktop::lineup
