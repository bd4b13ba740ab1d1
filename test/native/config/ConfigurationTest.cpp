#include "config/readConfiguration.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <tuple>

#include "common/TemporaryFolder.h"
#include "common/errorOf.h"
#include "common/pairsIn.h"
#include "config/settings.h"
#include "support/Text.h"

namespace quiravent::desktop {
namespace {

using Variables = std::map<std::string, std::string>;

/// As getenv() of a process with such variables.
Environment readerOf(const Variables& variables) {
    return [&](const char* name) {
        const auto found = variables.find(name);
        return found == variables.end() ? nullptr : found->second.c_str();
    };
}

Configuration read(const Variables& variables) { return readConfiguration(readerOf(variables)); }

/// Expects a configuration to be refused in one line.
void expectError(const Variables& variables, const std::string& error) {
    EXPECT_EQ(test::errorOf([&] { read(variables); }), error);
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

TEST(Configuration, VariablesOverrideTheFileAndItTheDefaults) {
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
    const Configuration defaults = read({{"QUIRAVENT_LOG", ""}});
    EXPECT_EQ(defaults.screen.driver, "auto");
    EXPECT_EQ(defaults.storage.durability, Durability::process);
    EXPECT_EQ(defaults.log.level, log::Level::warning);
}

TEST(Configuration, WrongFileIsRefusedWithOneLine) {
    for (const auto& [text, reason] : test::pairsIn(TEST_DATA "/wrongFiles.txt")) {
        const ConfigurationFile file(text);
        expectError(file.variables(), joined(file.path(), ": ", reason));
    }
}

TEST(Configuration, WrongVariableIsRefusedWithOneLine) {
    const TemporaryFolder folder;
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    const ConfigurationFile nested(R"({"platform": {"properties": {"a": )" + deep + "}}}");
    const std::string properties = "allowed: an object, in which each value is a text without NUL";
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"LOG", "loud", R"( is "loud"; allowed: "silent", "error", "warning", "info", "debug")"},
        {"DISPLAY", "loud", R"( is "loud"; allowed: "auto", "window", "headless")"},
        {"PROPERTIES", "loud", R"( is "loud"; )" + properties},
        {"PROPERTIES", deep, joined(" is \"", std::string(59, '['), "...; ", properties)},
        {"TIME_LIMIT", "loud", R"( is "loud"; allowed: a whole number from 1 to 3600)"},
        {"KEY_MAP", R"({"F1": "Entr"})",
         R"(.F1 is "Entr"; allowed: the name of a remote key, as "ArrowLeft", "VK_LEFT" or )"
         R"("KEY_LEFT" (docs/keys.md has all), or a key's code, or null for none)"},
        {"CONFIG", nested.path(), ": nested too deeply; allowed: 32 levels"},
        {"CONFIG", folder / "none.json", ": the configuration can't be read: no such file"},
        {"CONFIG", folder.path(), ": the configuration can't be read: it is a directory"},
    };
    for (const auto& [setting, value, error] : cases) {
        const std::string name = "QUIRAVENT_" + setting;
        const std::string place = setting == "CONFIG" ? value : "environment variable " + name;
        expectError({{name, value}}, place + error);
    }
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
        return defaultStorageFolder(readerOf(variables));
    };
    EXPECT_EQ(folderFor({{"HOME", "/h"}, {"XDG_DATA_HOME", "/data"}}), "/data/quiravent");
    for (const char* const none : {"relative", ""})
        EXPECT_EQ(folderFor({{"HOME", "/h"}, {"XDG_DATA_HOME", none}}),
                  "/h/.local/share/quiravent");
}

TEST(Configuration, ShippedSchemaIsThatOfTheSettings) {
    std::ifstream file(QUIRAVENT_SCHEMA_FILE);
    const std::string shipped{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(shipped, configurationSchema().dump(2) + '\n')
        << "write it anew: cmake --build --preset release --target configuration-schema";
}

}  // namespace
}  // namespace quiravent::desktop
