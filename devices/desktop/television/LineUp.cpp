#include "television/LineUp.h"

#include <nlohmann/json.hpp>
#include <set>

#include "resources/jsonFile.h"
#include "support/DeviceError.h"
#include "support/Text.h"
#include "support/shownValue.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

using nlohmann::json;

constexpr const char* kList = "multiplexes";

[[noreturn]] void refuse(const std::string& file, const std::string& reason) {
    throw TunerError(e_pl_dtv_error_data_unavailable, joined(file, ": ", reason));
}

json readFile(const std::string& file) {
    try {
        return readJsonFile(file, "the line-up");
    } catch (const DeviceError& error) {
        throw TunerError(e_pl_dtv_error_data_unavailable, error.what());
    }
}

void expectKeys(const std::string& file, const std::string& what, const json& object,
                const std::set<std::string>& allowed) {
    if (!object.is_object()) {
        refuse(file, joined(what, " is ", shownValue(object), "; allowed: an object with ",
                            listed(allowed)));
    }
    for (const auto& [key, value] : object.items()) {
        if (allowed.count(key) != 0) continue;
        refuse(file, joined("unknown key ", key, " of ", what, " with the value ",
                            shownValue(value), "; allowed: ", listed(allowed)));
    }
}

std::string textOf(const std::string& file, const json& entry, const char* key) {
    const json value = entry.value(key, json());
    const bool isText = value.is_string() && !value.get_ref<const std::string&>().empty();
    if (isText) return value.get<std::string>();
    refuse(file, joined(key, " of ", shownValue(entry), " is ", shownValue(value),
                        "; allowed: a text that isn't empty"));
}

/// A scalar as it stands in the text of an option.
std::string optionValue(const std::string& file, const std::string& key, const json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number_unsigned() || value.is_boolean()) return value.dump();
    refuse(file, joined(key, " is ", shownValue(value), "; allowed: a text or a whole number"));
}

SelectionOptions optionsOf(const std::string& file, const json& entry) {
    const json options = entry.value("options", json::object());
    if (!options.is_object()) {
        refuse(file, joined("options is ", shownValue(options), "; allowed: an object"));
    }
    SelectionOptions result;
    for (const auto& [key, value] : options.items()) {
        result.set(key, optionValue(file, key, value));
    }
    return result;
}

LineUpEntry entryOf(const std::string& file, const json& entry) {
    return {textOf(file, entry, "source"), optionsOf(file, entry)};
}

}  // namespace

std::optional<LineUpEntry> findInLineUp(const std::string& file, const std::string& name) {
    const json all = readFile(file);
    expectKeys(file, "the file", all, {"$schema", kList});
    const json list = all.value(kList, json());
    if (!list.is_array()) {
        refuse(file, joined(kList, " is ", shownValue(list), "; allowed: a list of objects"));
    }
    std::optional<LineUpEntry> found;
    std::set<std::string> names;
    for (const json& entry : list) {
        expectKeys(file, "an entry", entry, {"name", "source", "options"});
        const std::string entryName = textOf(file, entry, "name");
        if (!names.insert(entryName).second) {
            refuse(file, joined("the name ", shownValue(entryName), " stands twice"));
        }
        LineUpEntry one = entryOf(file, entry);
        if (entryName == name) found = std::move(one);
    }
    return found;
}

}  // namespace quiravent::desktop
