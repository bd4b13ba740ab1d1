#include "config/readConfiguration.h"

#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "config/settings.h"
#include "resources/jsonFile.h"
#include "support/DeviceError.h"
#include "support/Text.h"
#include "support/shownValue.h"

namespace quiravent::desktop {

namespace {

using nlohmann::json;
namespace filesystem = std::filesystem;

constexpr const char* kFileVariable = "QUIRAVENT_CONFIG";
constexpr const char* kFileName = "quiravent.config.json";

[[noreturn]] void refuse(const std::string& reason) {
    throw DeviceError(e_pl_status_invalid_argument, reason);
}

const char* nonEmpty(const Environment& environment, const char* name) {
    const char* const value = environment(name);
    return value == nullptr || *value == '\0' ? nullptr : value;
}

std::vector<std::string> sectionNames() {
    std::vector<std::string> names;
    for (const Setting& setting : settings()) {
        if (names.empty() || names.back() != setting.place.section) {
            names.push_back(setting.place.section);
        }
    }
    return names;
}

std::vector<std::string> keysOf(const std::string& section) {
    std::vector<std::string> keys;
    for (const Setting& setting : settings()) {
        if (setting.place.section == section) keys.push_back(setting.place.key);
    }
    return keys;
}

const Setting* findSetting(const std::string& section, const std::string& key) {
    for (const Setting& setting : settings()) {
        if (setting.place.section == section && setting.place.key == key) return &setting;
    }
    return nullptr;
}

/// subject: what the value was read from, for the message.
[[noreturn]] void refuseValue(const std::string& subject, const json& value,
                              const std::string& allowed) {
    refuse(joined(subject, " is ", shownValue(value), "; allowed: ", allowed));
}

/// Stores a value or refuses it.
void store(const Setting& setting, Configuration& configuration, const json& value,
           const filesystem::path& base, const std::string& subject) {
    try {
        if (setting.store(configuration, value, base)) return;
    } catch (const RefusedEntry& entry) {
        refuseValue(joined(subject, '.', entry.key), entry.value, entry.allowed);
    }
    refuseValue(subject, value, setting.allowed);
}

/// One configuration file on its way into the configuration.
class File {
  public:
    File(std::string path, Configuration& configuration)
        : m_path(std::move(path)),
          m_folder(filesystem::absolute(m_path).parent_path()),
          m_configuration(configuration) {}

    void read() {
        const json file = readJsonFile(m_path, "the configuration");
        if (!file.is_object()) refuseValue(about("the file"), file, "an object of sections");
        for (const auto& [name, section] : file.items()) {
            if (name != "$schema") readSection(name, section);
        }
    }

  private:
    void readSection(const std::string& name, const json& section) {
        const std::vector<std::string> keys = keysOf(name);
        if (keys.empty()) refuseKey(name, section, sectionNames());
        if (!section.is_object()) {
            refuseValue(about(name), section, joined("an object with ", listed(keys)));
        }
        for (const auto& [key, value] : section.items()) {
            const Setting* const setting = findSetting(name, key);
            const std::string fullKey = joined(name, '.', key);
            if (setting == nullptr) refuseKey(fullKey, value, keys);
            store(*setting, m_configuration, value, m_folder, about(fullKey));
        }
    }

    [[noreturn]] void refuseKey(const std::string& key, const json& value,
                                const std::vector<std::string>& known) const {
        refuse(joined(m_path, ": unknown key ", key, " with the value ", shownValue(value),
                      "; allowed: ", listed(known)));
    }

    std::string about(const std::string& what) const { return joined(m_path, ": ", what); }

    std::string m_path;
    filesystem::path m_folder;
    Configuration& m_configuration;
};

void readFileSettings(const Environment& environment, Configuration& configuration) {
    const char* const named = nonEmpty(environment, kFileVariable);
    if (named == nullptr && !filesystem::exists(kFileName)) return;
    const std::string path = named != nullptr ? named : filesystem::absolute(kFileName).string();
    File(path, configuration).read();
}

void readVariables(const Environment& environment, Configuration& configuration) {
    for (const Setting& setting : settings()) {
        const char* const name = setting.place.environment.c_str();
        const char* const text = nonEmpty(environment, name);
        if (text == nullptr) continue;
        store(setting, configuration, setting.fromText(text), filesystem::current_path(),
              joined("environment variable ", name));
    }
}

std::string homeFolder(const Environment& environment) {
    if (const char* const home = nonEmpty(environment, "HOME")) return home;
    const passwd* const user = getpwuid(getuid());
    if (user != nullptr && user->pw_dir != nullptr) return user->pw_dir;
    refuse("there is no home folder to store values in; set storage.folder, or QUIRAVENT_STORAGE");
}

}  // namespace

Configuration readConfiguration(const Environment& environment) {
    Configuration configuration;
    readFileSettings(environment, configuration);
    readVariables(environment, configuration);
    return configuration;
}

std::string defaultStorageFolder(const Environment& environment) {
    constexpr const char* kFolder = "quiravent";
    const char* const data = nonEmpty(environment, "XDG_DATA_HOME");
    // The standard of the variable says to ignore a relative path.
    if (data != nullptr && *data == '/') return filesystem::path(data) / kFolder;
    return filesystem::path(homeFolder(environment)) / ".local" / "share" / kFolder;
}

}  // namespace quiravent::desktop
