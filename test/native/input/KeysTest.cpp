#include "input/Keys.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

#include "input/KeyMap.h"

namespace quiravent::desktop {
namespace {

TEST(Keys, AreFoundByNameAliasAndCode) {
    const std::map<std::string, std::optional<int32_t>> codes{
        {"ArrowLeft", 37},
        {"arrowLEFT", 37},
        {"VK_LEFT", 37},
        {"vk_left", 37},
        {"KEY_LEFT", 37},
        {"37", 37},
        {"GoHome", 2},
        {"Home", 2},
        {"GoBack", 461},
        {"ColorF3Blue", 406},
        {"5", 53},
        {"VK_5", 53},
        {"999999", 999999},
        {"-7", -7},
        {"", std::nullopt},
        {"Arrow", std::nullopt},
        {" Enter", std::nullopt},
        {"37 ", std::nullopt},
        {"+37", std::nullopt},
        {"2147483648", std::nullopt},
        {"0x25", std::nullopt},
    };
    for (const auto& [text, code] : codes) EXPECT_EQ(remoteKeyCode(text), code) << text;
}

TEST(Keys, AreFoundFromJsonTextsAndWholeNumbers) {
    const std::map<std::string, std::optional<int32_t>> codes{
        {R"("Enter")", 13},
        {"5", 5},
        {"-1", -1},
        {"2147483647", 2147483647},
        {"4e1", std::nullopt},
        {"1.5", std::nullopt},
        {"2147483648", std::nullopt},
        {"true", std::nullopt},
        {"null", std::nullopt},
        {"[13]", std::nullopt},
    };
    for (const auto& [text, code] : codes) {
        EXPECT_EQ(remoteKeyCodeFrom(nlohmann::json::parse(text)), code) << text;
    }
}

TEST(Keys, NoNameCodeOrKeyboardKeyStandsTwiceInTheList) {
    std::set<int32_t> codes;
    std::set<std::string, IgnoringCase> names;
    std::set<std::string, IgnoringCase> keyboard;
    for (const RemoteKeyNames& key : remoteKeys()) {
        EXPECT_TRUE(codes.insert(key.code).second) << key.code;
        EXPECT_TRUE(names.insert(key.name).second) << key.name;
        for (const auto& alias : key.aliases) EXPECT_TRUE(names.insert(alias).second) << alias;
        for (const auto& name : key.keyboard) EXPECT_TRUE(keyboard.insert(name).second) << name;
    }
    EXPECT_EQ(static_cast<int32_t>(RemoteKey::kColorF0Red), 403);
    EXPECT_GT(codes.size(), 40U);
}

TEST(KeyMap, ChangesTheBindingsThatAreNamed) {
    const KeyMap defaults{{}};
    EXPECT_EQ(defaults.codeOf("Left"), 37);
    EXPECT_EQ(defaults.codeOf("backspace"), 461);
    EXPECT_EQ(defaults.codeOf("AC Back"), 461);
    EXPECT_EQ(defaults.codeOf("Escape"), 461);
    EXPECT_EQ(defaults.codeOf(","), 412);
    EXPECT_EQ(defaults.codeOf("F12"), std::nullopt);

    const KeyMap changed{{{"escape", 27}, {"LEFT", std::nullopt}, {"F12", 1234}}};
    EXPECT_EQ(changed.codeOf("Escape"), 27);
    EXPECT_EQ(changed.codeOf("Left"), std::nullopt);
    EXPECT_EQ(changed.codeOf("F12"), 1234);
    EXPECT_EQ(changed.codeOf("Backspace"), 461);
    EXPECT_EQ(changed.codes().size(), defaults.codes().size());
}

}  // namespace
}  // namespace quiravent::desktop
