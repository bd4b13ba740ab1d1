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

TEST(Keys, AreFoundFromTextsAndWholeNumbersOfJson) {
    const std::map<std::string, std::optional<int32_t>> codes{
        {R"("arrowLEFT")", 37},
        {R"("vk_left")", 37},
        {R"("KEY_LEFT")", 37},
        {R"("37")", 37},
        {R"("Home")", 2},
        {R"("5")", 53},
        {R"("VK_5")", 53},
        {R"("999999")", 999999},
        {R"("-7")", -7},
        {R"("")", std::nullopt},
        {R"("Arrow")", std::nullopt},
        {R"(" Enter")", std::nullopt},
        {R"("37 ")", std::nullopt},
        {R"("+37")", std::nullopt},
        {R"("2147483648")", std::nullopt},
        {R"("0x25")", std::nullopt},
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
    for (const auto& [text, code] : codes)
        EXPECT_EQ(remoteKeyCodeFrom(nlohmann::json::parse(text)), code) << text;
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
}

TEST(KeyMap, ChangesTheBindingsThatAreNamed) {
    const KeyMap defaults{{}};
    const KeyMap changed{{{"escape", 27}, {"LEFT", std::nullopt}, {"F12", 1234}}};
    const struct {
        const char* key = "";
        std::optional<int32_t> before;
        std::optional<int32_t> after;
    } cases[] = {{"Left", 37, std::nullopt}, {"backspace", 461, 461}, {"AC Back", 461, 461},
                 {"Escape", 461, 27},        {",", 412, 412},         {"F12", std::nullopt, 1234}};
    for (const auto& one : cases) {
        EXPECT_EQ(defaults.codeOf(one.key), one.before) << one.key;
        EXPECT_EQ(changed.codeOf(one.key), one.after) << one.key;
    }
    EXPECT_EQ(changed.codes().size(), defaults.codes().size());
}

}  // namespace
}  // namespace quiravent::desktop
