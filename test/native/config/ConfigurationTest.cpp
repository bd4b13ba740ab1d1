#include "config/readConfiguration.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "common/TemporaryFolder.h"
#include "common/pairsIn.h"
#include "config/settings.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {
namespace {

using Variables = std::map<std::string, std::string>;

Configuration read(const Variables& variables) {
    return readConfiguration([&](const char* name) {
        const auto found = variables.find(name);
        return found == variables.end() ? nullptr : found->second.c_str();
    });
}

std::string readingError(const Variables& variables) {
    try {
        read(variables);
        return "none";
    } catch (const DeviceError& error) {
        return error.what();
    }
}

/// A configuration file of that text, in a folder with a percent sign.
class ConfigurationFile {
  public:
    explicit ConfigurationFile(const std::string& text) {
        std::filesystem::create_directory(folder());
        std::ofstream(path()) << text;
    }
    std::string folder() const { return m_folder / "100%"; }
    std::string path() const { return folder() + "/device.json"; }
    Variables variables() const { return {{"QUIRAVENT_CONFIG", path()}}; }

  private:
    TemporaryFolder m_folder;
};

TEST(Configuration, HasDefaultsWithoutFileAndVariables) {
    const Configuration defaults = read({{"QUIRAVENT_LOG", ""}});
    EXPECT_EQ(defaults.screen.driver, "auto");
    EXPECT_EQ(defaults.screen.capture, "");
    EXPECT_EQ(defaults.storage.durability, Durability::process);
    EXPECT_EQ(defaults.graphics.videoMemory, 64U << 20);
    EXPECT_EQ(defaults.log.level, log::Level::warning);
}

TEST(Configuration, TakesEverySettingFromTheFile) {
    const ConfigurationFile file(R"({
        "$schema": "quiravent.schema.json",
        "screen": {"driver": "headless", "capture": "frame-%06d.png"},
        "storage": {"folder": "/var/store", "durability": "machine"},
        "graphics": {"videoMemory": "1 GiB"},
        "network": {"timeLimitSeconds": 1, "sizeLimitMiB": 4095},
        "input": {"keyMap": {"F9": "VK_RED", "Left": null, "F10": 5, "F11": "5"}},
        "platform": {"properties": {"system.model": "M", "app.key": "é"}},
        "control": {"path": "control"},
        "log": {"level": "silent"}
    })");
    const Configuration configuration = read(file.variables());
    EXPECT_EQ(configuration.screen.driver, "headless");
    EXPECT_EQ(configuration.screen.capture, file.folder() + "/frame-%06d.png");
    EXPECT_EQ(configuration.storage.folder, "/var/store");
    EXPECT_EQ(configuration.storage.durability, Durability::machine);
    EXPECT_EQ(configuration.graphics.videoMemory, 1U << 30);
    EXPECT_EQ(configuration.network.timeLimitSeconds, 1U);
    EXPECT_EQ(configuration.network.sizeLimitMiB, 4095U);
    EXPECT_EQ(configuration.input.keyMap,
              (KeyBindings{{"F9", 403}, {"Left", std::nullopt}, {"F10", 5}, {"F11", 53}}));
    const auto& properties = configuration.platform.properties;
    EXPECT_EQ(properties.at("system.model"), "M");
    EXPECT_EQ(properties.at("app.key"), "é");
    EXPECT_EQ(properties.size(), Configuration().platform.properties.size() + 1);
    EXPECT_EQ(configuration.control.path, file.folder() + "/control");
    EXPECT_EQ(configuration.log.level, log::Level::silent);
}

TEST(Configuration, VariablesOverrideTheFile) {
    const ConfigurationFile file(R"({"log": {"level": "silent"}, "screen": {"capture": "a.png"},
                                     "graphics": {"videoMemory": 9000000}})");
    Variables variables = file.variables();
    variables.insert({{"QUIRAVENT_LOG", "debug"},
                      {"QUIRAVENT_SCREENSHOT", "b.png"},
                      {"QUIRAVENT_VIDEO_MEMORY", "16MiB"},
                      {"QUIRAVENT_TIME_LIMIT", "7"},
                      {"QUIRAVENT_KEY_MAP", R"({"F9": "Enter"})"}});
    const Configuration configuration = read(variables);
    EXPECT_EQ(configuration.log.level, log::Level::debug);
    EXPECT_EQ(configuration.screen.capture, std::filesystem::current_path() / "b.png");
    EXPECT_EQ(configuration.graphics.videoMemory, 16U << 20);
    EXPECT_EQ(configuration.network.timeLimitSeconds, 7U);
    EXPECT_EQ(configuration.input.keyMap, (KeyBindings{{"F9", 13}}));
    EXPECT_EQ(read(file.variables()).graphics.videoMemory, 9000000U);
}

TEST(Configuration, WrongFileIsRefusedWithOneLine) {
    for (const auto& [text, reason] : test::pairsIn(TEST_DATA "/wrongFiles.txt")) {
        const ConfigurationFile file(text);
        EXPECT_EQ(readingError(file.variables()), joined(file.path(), ": ", reason));
    }
}

TEST(Configuration, WrongVariableIsRefusedWithOneLine) {
    const std::map<std::string, std::string> lines{
        {"QUIRAVENT_LOG", R"("loud"; allowed: "silent", "error", "warning", "info", "debug")"},
        {"QUIRAVENT_DISPLAY", R"("loud"; allowed: "auto", "window", "headless")"},
        {"QUIRAVENT_PROPERTIES",
         R"("loud"; allowed: an object, in which each value is a text without NUL)"},
        {"QUIRAVENT_TIME_LIMIT", R"("loud"; allowed: a whole number from 1 to 3600)"},
    };
    for (const auto& [name, line] : lines) {
        EXPECT_EQ(readingError({{name, "loud"}}),
                  joined("environment variable ", name, " is ", line));
    }
    EXPECT_EQ(
        readingError({{"QUIRAVENT_KEY_MAP", R"({"F1": "Entr"})"}}),
        "environment variable QUIRAVENT_KEY_MAP.F1 is \"Entr\"; allowed: the name of a remote "
        "key, as \"ArrowLeft\", \"VK_LEFT\" or \"KEY_LEFT\" (docs/keys.md has all), or a "
        "key's code, or null for none");
}

TEST(Configuration, WhatIsNestedTooDeeplyIsRefused) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    const ConfigurationFile file(R"({"platform": {"properties": {"a": )" + deep + "}}}");
    EXPECT_EQ(readingError(file.variables()),
              file.path() + ": nested too deeply; allowed: 32 levels");
    EXPECT_EQ(readingError({{"QUIRAVENT_PROPERTIES", deep}}),
              joined("environment variable QUIRAVENT_PROPERTIES is \"", std::string(59, '['),
                     "...; allowed: an object, in which each value is a text without NUL"));
}

TEST(Configuration, NamedFileHasToBeReadable) {
    const TemporaryFolder folder;
    EXPECT_EQ(readingError({{"QUIRAVENT_CONFIG", folder / "none.json"}}),
              folder / "none.json: the configuration can't be read: no such file");
    EXPECT_EQ(readingError({{"QUIRAVENT_CONFIG", folder.path()}}),
              folder.path() + ": the configuration can't be read: it is a directory");
}

TEST(Configuration, FileInTheWorkingDirectoryIsTaken) {
    const TemporaryFolder folder;
    std::ofstream(folder / "quiravent.config.json") << R"({"log": {"level": "info"}})";
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const Configuration configuration = read({});
    std::filesystem::current_path(before);
    EXPECT_EQ(configuration.log.level, log::Level::info);
}

TEST(Configuration, StorageFolderFollowsTheUsersFolders) {
    const auto folderFor = [](const Variables& variables) {
        return defaultStorageFolder([&](const char* name) {
            const auto found = variables.find(name);
            return found == variables.end() ? nullptr : found->second.c_str();
        });
    };
    EXPECT_EQ(folderFor({{"HOME", "/h"}, {"XDG_DATA_HOME", "/data"}}), "/data/quiravent");
    EXPECT_EQ(folderFor({{"HOME", "/h"}, {"XDG_DATA_HOME", "relative"}}),
              "/h/.local/share/quiravent");
    EXPECT_EQ(folderFor({{"HOME", "/h"}}), "/h/.local/share/quiravent");
}

TEST(Configuration, ShippedSchemaIsThatOfTheSettings) {
    std::ifstream file(QUIRAVENT_SCHEMA_FILE);
    const std::string shipped{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(shipped, configurationSchema().dump(2) + '\n')
        << "write it anew: cmake --build --preset release --target configuration-schema";
}

}  // namespace
}  // namespace quiravent::desktop
