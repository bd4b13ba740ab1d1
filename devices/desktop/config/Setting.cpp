#include "config/Setting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "support/Text.h"
#include "support/jsonDepth.h"

namespace quiravent::desktop {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

json asText(const std::string& text) { return text; }

/// The number that makes up the whole text.
std::optional<uint64_t> wholeNumber(std::string_view text) {
    uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || rest != end) return std::nullopt;
    return number;
}

/// The value that the text is in JSON, or else, as where it is nested too deeply, the text.
json asJson(const std::string& text) {
    bool isTooDeep = false;
    const auto watch = [&](int depth, json::parse_event_t, json&) {
        isTooDeep = isTooDeep || depth > kMaxJsonDepth;
        return !isTooDeep;
    };
    json value = json::parse(text, watch, false);
    return isTooDeep || value.is_discarded() ? json(text) : value;
}

/// A number where the text is one, or else the text.
json asNumber(const std::string& text) {
    if (const auto number = wholeNumber(text)) return *number;
    return text;
}

bool isInRange(uint64_t number, uint64_t least, uint64_t most) {
    return number >= least && number <= most;
}

constexpr uint64_t kMiB = 1U << 20;

struct Unit {
    std::string_view name;
    uint64_t bytes;
};
constexpr std::array<Unit, 3> kUnits{{{"KiB", 1U << 10}, {"MiB", kMiB}, {"GiB", 1U << 30}}};

/// The bytes of a text like "64 MiB" or "64MiB"; none when it isn't one or is beyond `most`.
std::optional<uint64_t> bytesOf(std::string_view text, uint64_t most) {
    for (const Unit& unit : kUnits) {
        if (text.size() <= unit.name.size()) continue;
        const size_t numberSize = text.size() - unit.name.size();
        if (text.substr(numberSize) != unit.name) continue;
        std::string_view number = text.substr(0, numberSize);
        if (number.back() == ' ') number.remove_suffix(1);
        const auto count = wholeNumber(number);
        if (!count || *count > most / unit.bytes) return std::nullopt;
        return *count * unit.bytes;
    }
    return std::nullopt;
}

std::optional<uint64_t> sizeOf(const json& value, uint64_t most) {
    if (value.is_number_unsigned()) return value.get<uint64_t>();
    if (value.is_string()) return bytesOf(value.get_ref<const std::string&>(), most);
    return std::nullopt;
}

}  // namespace

Setting choiceSetting(SettingPlace place, const std::vector<std::string>& names,
                      size_t defaultIndex,
                      std::function<void(Configuration&, size_t index)> choose) {
    std::vector<std::string> quoted;
    quoted.reserve(names.size());
    for (const std::string& name : names) quoted.push_back('"' + name + '"');
    ordered_json schema{{"enum", names}, {"default", names.at(defaultIndex)}};
    auto store = [names, choose = std::move(choose)](Configuration& configuration,
                                                     const json& value,
                                                     const std::filesystem::path&) {
        const auto found = std::find(names.begin(), names.end(), value);
        if (found == names.end()) return false;
        choose(configuration, static_cast<size_t>(found - names.begin()));
        return true;
    };
    return {std::move(place), listed(quoted), std::move(schema), asText, std::move(store)};
}

Setting numberSetting(SettingPlace place, uint64_t least, uint64_t most, Field<uint64_t> field) {
    Configuration defaults;
    ordered_json schema{
        {"type", "integer"}, {"minimum", least}, {"maximum", most}, {"default", field(defaults)}};
    auto store = [least, most, field = std::move(field)](Configuration& configuration,
                                                         const json& value,
                                                         const std::filesystem::path&) {
        if (!value.is_number_unsigned()) return false;
        if (!isInRange(value.get<uint64_t>(), least, most)) return false;
        field(configuration) = value.get<uint64_t>();
        return true;
    };
    return {std::move(place), joined("a whole number from ", least, " to ", most),
            std::move(schema), asNumber, std::move(store)};
}

Setting sizeSetting(SettingPlace place, uint64_t leastMiB, uint64_t mostMiB,
                    Field<uint64_t> field) {
    const uint64_t least = leastMiB * kMiB;
    const uint64_t most = mostMiB * kMiB;
    Configuration defaults;
    ordered_json schema{{"anyOf",
                         {{{"type", "integer"}, {"minimum", least}, {"maximum", most}},
                          {{"type", "string"}, {"pattern", "^[0-9]+ ?(KiB|MiB|GiB)$"}}}},
                        {"default", joined(field(defaults) / kMiB, " MiB")}};
    auto store = [least, most, field = std::move(field)](Configuration& configuration,
                                                         const json& value,
                                                         const std::filesystem::path&) {
        const auto bytes = sizeOf(value, most);
        if (!bytes || !isInRange(*bytes, least, most)) return false;
        field(configuration) = *bytes;
        return true;
    };
    return {std::move(place),
            joined("a number of bytes, or a text as \"64 MiB\", from ", leastMiB, " MiB to ",
                   mostMiB, " MiB"),
            std::move(schema), asNumber, std::move(store)};
}

Setting textSetting(SettingPlace place, std::string allowed,
                    std::function<bool(const std::string&)> check, Field<std::string> field) {
    Configuration defaults;
    ordered_json schema{{"type", "string"}, {"default", field(defaults)}};
    auto store = [check = std::move(check), field = std::move(field)](
                     Configuration& configuration, const json& value,
                     const std::filesystem::path&) {
        if (!value.is_string() || !check(value.get_ref<const std::string&>())) return false;
        field(configuration) = value.get<std::string>();
        return true;
    };
    return {std::move(place), std::move(allowed), std::move(schema), asText, std::move(store)};
}

Setting pathSetting(SettingPlace place, std::string allowed,
                    std::function<bool(const std::string&)> check, Field<std::string> field) {
    Configuration defaults;
    ordered_json schema{{"type", "string"}, {"default", field(defaults)}};
    auto store = [check = std::move(check), field = std::move(field)](
                     Configuration& configuration, const json& value,
                     const std::filesystem::path& base) {
        if (!value.is_string()) return false;
        const auto& path = value.get_ref<const std::string&>();
        if (path.find('\0') != std::string::npos || !check(path)) return false;
        field(configuration) = path.empty() ? path : (base / path).string();
        return true;
    };
    return {std::move(place), std::move(allowed), std::move(schema), asText, std::move(store)};
}

Setting objectSetting(SettingPlace place, const EntryRule& rule, ordered_json defaults) {
    return {std::move(place),
            "an object, in which each value is " + rule.allowed,
            {{"type", "object"},
             {"additionalProperties", rule.schema},
             {"default", std::move(defaults)}},
            asJson,
            {}};
}

}  // namespace quiravent::desktop
