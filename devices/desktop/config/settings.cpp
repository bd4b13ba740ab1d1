#include "config/settings.h"

#include <string>

#include "display/CapturePattern.h"
#include "display/drivers.h"

namespace quiravent::desktop {

namespace {

bool isAnything(const std::string&) { return true; }

std::vector<std::string> driverChoices() {
    std::vector<std::string> names{kAutomaticDriver};
    for (const std::string& name : displayDriverNames()) names.push_back(name);
    return names;
}

std::vector<Setting> makeSettings() {
    const std::vector<std::string> drivers = driverChoices();
    return {
        choiceSetting({"screen", "driver", "QUIRAVENT_SCREEN",
                       "What shows the screen; \"auto\" takes the first that works here."},
                      drivers, 0,
                      [drivers](Configuration& configuration, size_t index) {
                          configuration.screen.driver = drivers[index];
                      }),
        pathSetting({"screen", "capture", "QUIRAVENT_SCREENSHOT",
                     "PNG file for a picture of the screen: written when the process ends or, "
                     "where the name holds %d or %06d, for each frame under its number."},
                    "a file name with at most one %d or %06d for the number of the frame, and %% "
                    "for a percent sign",
                    CapturePattern::isValid,
                    [](Configuration& all) -> std::string& { return all.screen.capture; }),
        pathSetting({"storage", "folder", "QUIRAVENT_STORAGE",
                     "Folder of the stored values; quiravent in the user's data folder where it "
                     "is empty."},
                    "the path of a folder", isAnything,
                    [](Configuration& all) -> std::string& { return all.storage.folder; }),
        enumerationSetting<Durability>(
            {"storage", "durability", "QUIRAVENT_DURABILITY",
             "What a stored value survives: the end of the process, or also that of the machine."},
            {"process", "machine"},
            [](Configuration& all) -> Durability& { return all.storage.durability; }),
        sizeSetting({"graphics", "videoMemory", "QUIRAVENT_VIDEO_MEMORY",
                     "Memory for canvases and images, in bytes or with a unit."},
                    8, 4095,
                    [](Configuration& all) -> uint64_t& { return all.graphics.videoMemory; }),
        numberSetting({"network", "timeLimitSeconds", "QUIRAVENT_TIME_LIMIT",
                       "How long the load of a picture or font may take, in seconds."},
                      1, 3600,
                      [](Configuration& all) -> uint64_t& { return all.network.timeLimitSeconds; }),
        numberSetting({"network", "sizeLimitMiB", "QUIRAVENT_SIZE_LIMIT",
                       "How large a loaded picture or font may be, in MiB."},
                      1, 4095,
                      [](Configuration& all) -> uint64_t& { return all.network.sizeLimitMiB; }),
        enumerationSetting<log::Level>(
            {"log", "level", "QUIRAVENT_LOG",
             "The device's own messages on standard error: up to which level they are written."},
            {log::kLevelNames.begin(), log::kLevelNames.end()},
            [](Configuration& all) -> log::Level& { return all.log.level; }),
    };
}

}  // namespace

const std::vector<Setting>& settings() {
    static const std::vector<Setting> table = makeSettings();
    return table;
}

nlohmann::ordered_json configurationSchema() {
    using nlohmann::ordered_json;
    const ordered_json object{{"type", "object"}, {"additionalProperties", false}};
    ordered_json sections;
    sections["$schema"] = {{"type", "string"}};
    for (const Setting& setting : settings()) {
        const SettingPlace& place = setting.place;
        ordered_json& section = sections[place.section];
        if (section.is_null()) section = object;
        ordered_json& value = section["properties"][place.key];
        value["description"] =
            joined(place.description, " Overridden by the environment's ", place.environment, ".");
        value.update(setting.schema);
    }
    ordered_json schema{{"$schema", "http://json-schema.org/draft-07/schema#"},
                        {"title", "Configuration of Quiravent's desktop device"}};
    schema.update(object);
    schema["properties"] = std::move(sections);
    return schema;
}

}  // namespace quiravent::desktop
