#include "config/settings.h"

#include <string>

#include "display/CapturePattern.h"
#include "display/drivers.h"
#include "graphics/KernelSets.h"
#include "input/Keys.h"
#include "media/FaultList.h"
#include "media/audio/audioSinks.h"
#include "television/SignalFaults.h"

namespace quiravent::desktop {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

bool isAnything(const std::string&) { return true; }

bool isSignalFaultList(const std::string& text) {
    return static_cast<bool>(parseSignalFaults(text));
}

bool isFaultList(const std::string& text) { return static_cast<bool>(parseFaults(text)); }

std::vector<std::string> driverChoices() {
    std::vector<std::string> names{kAutomaticDriver};
    for (const std::string& name : displayDriverNames()) names.push_back(name);
    return names;
}

/// A text that C functions can be given.
std::optional<std::string> plainText(const json& value) {
    if (!value.is_string()) return std::nullopt;
    auto text = value.get<std::string>();
    return text.find('\0') == std::string::npos ? std::optional(std::move(text)) : std::nullopt;
}

/// The code of a remote key, or none for null; no answer when it is neither.
std::optional<std::optional<int32_t>> remoteKeyOrNone(const json& value) {
    if (value.is_null()) return std::optional<int32_t>();
    if (const auto code = remoteKeyCodeFrom(value)) return code;
    return std::nullopt;
}

ordered_json remoteKeySchema() {
    std::vector<std::string> names;
    for (const RemoteKeyNames& key : remoteKeys()) names.push_back(key.name);
    return {{"anyOf", {{{"enum", names}}, {{"type", {"string", "integer", "null"}}}}}};
}

std::vector<Setting> graphicsSettings() {
    std::vector<std::string> kernels = kernelSetNames();
    kernels.insert(kernels.begin(), Configuration().graphics.kernels);
    return {
        sizeSetting({"graphics", "videoMemory", "QUIRAVENT_VIDEO_MEMORY",
                     "Memory for canvases and images, in bytes or with a unit."},
                    8, 4095,
                    [](Configuration& all) -> uint64_t& { return all.graphics.videoMemory; }),
        sizeSetting(
            {"graphics", "scaledImages", "QUIRAVENT_SCALED_IMAGES",
             "Memory, beside that for canvases and images, for pictures as they were scaled "
             "when they were drawn, in bytes or with a unit; 0: they are scaled each time."},
            0, 4095, [](Configuration& all) -> uint64_t& { return all.graphics.scaledImages; }),
        numberSetting({"graphics", "threads", "QUIRAVENT_DRAWING_THREADS",
                       "How many threads draw what is large; never more than the machine has "
                       "processors."},
                      1, 2, [](Configuration& all) -> uint64_t& { return all.graphics.threads; }),
        choiceSetting({"graphics", "kernels", "QUIRAVENT_KERNELS",
                       "The processor's vector unit to draw with, for tests and measurements; "
                       "\"auto\": the best that there is."},
                      kernels, 0,
                      [kernels](Configuration& configuration, size_t index) {
                          configuration.graphics.kernels = kernels[index];
                      }),
    };
}

std::vector<Setting> inputAndPlatformSettings() {
    return {
        entriesSetting<KeyBindings>(
            {"input", "keyMap", "QUIRAVENT_KEY_MAP",
             "Keys of the keyboard, as SDL names them, and the remote key that each stands for; "
             "null: none. What isn't named is as docs/keys.md tells."},
            {joined(kRemoteKeyRule, ", or null for none"), remoteKeySchema()},
            ordered_json::object(), remoteKeyOrNone,
            [](Configuration& all) -> KeyBindings& { return all.input.keyMap; }),
        entriesSetting<std::map<std::string, std::string>>(
            {"platform", "properties", "QUIRAVENT_PROPERTIES",
             "Properties that the application is told, beside the default ones or in their place."},
            {"a text without NUL", {{"type", "string"}}}, Configuration().platform.properties,
            plainText,
            [](Configuration& all) -> std::map<std::string, std::string>& {
                return all.platform.properties;
            }),
        pathSetting({"control", "path", "QUIRAVENT_CONTROL",
                     "Socket of the control channel; none where it is empty."},
                    "the path of a socket", isAnything,
                    [](Configuration& all) -> std::string& { return all.control.path; }),
    };
}

std::vector<Setting> mediaSettings() {
    const std::vector<std::string> sinks = audioSinkNames();
    return {
        numberSetting({"media", "bandwidthKbit", "QUIRAVENT_BANDWIDTH",
                       "What the network is taken to carry, in kbit/s: of a medium that is offered "
                       "in variants, the best one that fits is played."},
                      1, 10000000,
                      [](Configuration& all) -> uint64_t& { return all.media.bandwidthKbit; }),
        sizeSetting({"media", "cache", "QUIRAVENT_MEDIA_CACHE",
                     "Memory of a player for what is read of its medium, in bytes or with a unit."},
                    1, 4095, [](Configuration& all) -> uint64_t& { return all.media.cache; }),
        numberSetting({"media", "timeLimitSeconds", "QUIRAVENT_MEDIA_TIME_LIMIT",
                       "How long a player waits for a server that doesn't answer, in seconds."},
                      1, 3600,
                      [](Configuration& all) -> uint64_t& { return all.media.timeLimitSeconds; }),
        choiceSetting(
            {"media", "audioSink", "QUIRAVENT_AUDIO",
             "Where sound goes: to the sound card, where there is one (\"device\" warns where "
             "there is none), nowhere, or to a WAV file."},
            sinks, 0,
            [sinks](Configuration& configuration, size_t index) {
                configuration.media.audioSink = sinks[index];
            }),
        pathSetting(
            {"media", "audioFile", "QUIRAVENT_AUDIO_FILE", "The file of the audio sink \"wav\"."},
            "the path of a file", isAnything,
            [](Configuration& all) -> std::string& { return all.media.audioFile; }),
        pathSetting({"media", "subtitleFont", "QUIRAVENT_SUBTITLE_FONT",
                     "TrueType or OpenType font of subtitles that are text."},
                    "the path of a file", isAnything,
                    [](Configuration& all) -> std::string& { return all.media.subtitleFont; }),
        textSetting(
            {"media", "faults", "QUIRAVENT_FAULTS",
             "Faults of reading media, for development, separated by semicolons: \"slow\", "
             "\"stalled\", \"dropped\" or \"unavailable\", the seconds since reading began "
             "as 2-10, for \"slow\" the bytes per second, and \"off\" for one that is to be "
             "switched on later."},
            "a list of faults as \"slow 2-10 50000; stalled 12-20\"", isFaultList,
            [](Configuration& all) -> std::string& { return all.media.faults; }),
    };
}

std::vector<Setting> televisionSettings() {
    return {
        pathSetting({"television", "lineup", "QUIRAVENT_LINEUP",
                     "File with the names of multiplexes that can be tuned; none where it is "
                     "empty."},
                    "the path of a file", isAnything,
                    [](Configuration& all) -> std::string& { return all.television.lineUp; }),
        textSetting({"television", "live", "QUIRAVENT_LIVE_TELEVISION",
                     "What the device's own television tunes where the application has selected "
                     "nothing, as an application would name it; nothing where it is empty."},
                    "a text", isAnything,
                    [](Configuration& all) -> std::string& { return all.television.live; }),
        sizeSetting({"television", "replay", "QUIRAVENT_TELEVISION_REPLAY",
                     "Memory for the last packets that are received, with which a live player "
                     "begins, in bytes or with a unit; two groups of pictures should fit."},
                    1, 1024, [](Configuration& all) -> uint64_t& { return all.television.replay; }),
        textSetting(
            {"television", "faults", "QUIRAVENT_SIGNAL_FAULTS",
             "Faults of the signal, for development, separated by semicolons: \"lost\" or "
             "\"errors\", the seconds since the selection as 2-10, for \"errors\" the part of the "
             "bits that are wrong, and \"off\" for one that is to be switched on later; \"delay\" "
             "with the seconds by which a signal comes later; \"seed\" with a number that decides "
             "which bits are wrong."},
            "a list of faults as \"lost 5-8; errors 10-20 1e-5; delay 0.7; seed 3\"",
            isSignalFaultList,
            [](Configuration& all) -> std::string& { return all.television.faults; }),
    };
}

std::vector<Setting> makeSettings() {
    const std::vector<std::string> drivers = driverChoices();
    std::vector<Setting> table{
        choiceSetting({"screen", "driver", "QUIRAVENT_DISPLAY",
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
        numberSetting({"network", "timeLimitSeconds", "QUIRAVENT_TIME_LIMIT",
                       "How long the load of a picture or font may take, in seconds."},
                      1, 3600,
                      [](Configuration& all) -> uint64_t& { return all.network.timeLimitSeconds; }),
        numberSetting({"network", "sizeLimitMiB", "QUIRAVENT_SIZE_LIMIT",
                       "How large a loaded picture or font may be, in MiB."},
                      1, 4095,
                      [](Configuration& all) -> uint64_t& { return all.network.sizeLimitMiB; }),
        pathSetting({"network", "authorities", "QUIRAVENT_CA_FILE",
                     "PEM file with the certificates of who certifies servers; where it is empty, "
                     "whom the system trusts."},
                    "the path of a file", isAnything,
                    [](Configuration& all) -> std::string& { return all.network.authorities; }),
    };
    for (Setting& setting : graphicsSettings()) table.push_back(std::move(setting));
    for (Setting& setting : mediaSettings()) table.push_back(std::move(setting));
    for (Setting& setting : televisionSettings()) table.push_back(std::move(setting));
    for (Setting& setting : inputAndPlatformSettings()) table.push_back(std::move(setting));
    table.push_back(enumerationSetting<log::Level>(
        {"log", "level", "QUIRAVENT_LOG",
         "The device's own messages on standard error: up to which level they are written."},
        {log::kLevelNames.begin(), log::kLevelNames.end()},
        [](Configuration& all) -> log::Level& { return all.log.level; }));
    return table;
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
