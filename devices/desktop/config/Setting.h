#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/Configuration.h"

namespace quiravent::desktop {

/// Where a setting stands and what it is for.
struct SettingPlace {
    std::string section;      ///< object of the file
    std::string key;          ///< within the section
    std::string environment;  ///< variable that overrides the file
    std::string description;
};

/// Thrown by Setting::store for an entry of an object that isn't allowed.
struct RefusedEntry {
    std::string key;
    nlohmann::json value;
    std::string allowed;  ///< completes "allowed: "
};

/// One setting: its names, the values that it takes, and where the value goes.
struct Setting {
    SettingPlace place;

    /// Completes "allowed: ".
    std::string allowed;

    /// JSON schema of the value, with the default.
    nlohmann::ordered_json schema;

    /// A text of the environment as the value that would stand in the file.
    std::function<nlohmann::json(const std::string&)> fromText;

    /// Stores the value; false, with nothing stored, when it isn't allowed. Where one entry of an
    /// object isn't, throws RefusedEntry. base: the folder that relative paths start from.
    std::function<bool(Configuration&, const nlohmann::json&, const std::filesystem::path& base)>
        store;
};

/// A setting's place in the configuration.
template <class Value>
using Field = std::function<Value&(Configuration&)>;

/// One of some names, which stand for their index.
Setting choiceSetting(SettingPlace place, const std::vector<std::string>& names,
                      size_t defaultIndex,
                      std::function<void(Configuration&, size_t index)> choose);

/// One of an enumeration's values; names in their order.
template <class Enumeration>
Setting enumerationSetting(SettingPlace place, const std::vector<std::string>& names,
                           Field<Enumeration> field) {
    Configuration defaults;
    const auto defaultIndex = static_cast<size_t>(field(defaults));
    return choiceSetting(std::move(place), names, defaultIndex,
                         [field = std::move(field)](Configuration& configuration, size_t index) {
                             field(configuration) = static_cast<Enumeration>(index);
                         });
}

/// A whole number of a range.
Setting numberSetting(SettingPlace place, uint64_t least, uint64_t most, Field<uint64_t> field);

/// A number of bytes, or a text with a number and a unit, as "64 MiB". The range is in MiB.
Setting sizeSetting(SettingPlace place, uint64_t leastMiB, uint64_t mostMiB, Field<uint64_t> field);

/// A text that has to pass the check, whose rule `allowed` tells.
Setting textSetting(SettingPlace place, std::string allowed,
                    std::function<bool(const std::string&)> check, Field<std::string> field);

/// A path, absolute or relative to the configuration file's folder; in the environment, to the
/// working directory. It has to pass the check, whose rule `allowed` tells. Empty: as if not set.
Setting pathSetting(SettingPlace place, std::string allowed,
                    std::function<bool(const std::string&)> check, Field<std::string> field);

/// What the entries of an object have to be.
struct EntryRule {
    std::string allowed;  ///< completes "allowed: " for one entry
    nlohmann::ordered_json schema;
};

/// The setting's schema and environment form for an object whose keys are free.
Setting objectSetting(SettingPlace place, const EntryRule& rule, nlohmann::ordered_json defaults);

/// An object whose keys are free, read into a map, in which what it doesn't name stays as it is.
/// In the environment: as JSON. read: the map's value for an entry's; none when it isn't allowed.
template <class Entries>
Setting entriesSetting(
    SettingPlace place, const EntryRule& rule, nlohmann::ordered_json defaults,
    std::function<std::optional<typename Entries::mapped_type>(const nlohmann::json&)> read,
    Field<Entries> field) {
    Setting setting = objectSetting(std::move(place), rule, std::move(defaults));
    setting.store = [allowed = rule.allowed, read = std::move(read), field = std::move(field)](
                        Configuration& configuration, const nlohmann::json& value,
                        const std::filesystem::path&) {
        if (!value.is_object()) return false;
        for (const auto& [key, entry] : value.items()) {
            const auto stored = read(entry);
            if (!stored || key.empty() || key.find('\0') != std::string::npos) {
                throw RefusedEntry{key, entry, allowed};
            }
            field(configuration)[key] = *stored;
        }
        return true;
    };
    return setting;
}

}  // namespace quiravent::desktop
