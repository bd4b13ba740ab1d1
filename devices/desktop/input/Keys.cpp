#include "input/Keys.h"

#include <charconv>
#include <map>
#include <nlohmann/json.hpp>

#include "support/IgnoringCase.h"
#include "support/Lasting.h"

namespace quiravent::desktop {

namespace {

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const size_t length = std::min(text.find(separator), text.size());
        parts.emplace_back(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return parts;
}

using CodesByName = std::map<std::string, int32_t, IgnoringCase>;

CodesByName codesByName() {
    CodesByName codes;
    for (const RemoteKeyNames& key : remoteKeys()) {
        codes.emplace(key.name, key.code);
        for (const std::string& alias : key.aliases) codes.emplace(alias, key.code);
    }
    return codes;
}

std::optional<int32_t> decimalCode(std::string_view text) {
    int32_t code = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, code);
    if (error != std::errc{} || rest != end) return std::nullopt;
    return code;
}

}  // namespace

const std::vector<RemoteKeyNames>& remoteKeys() {
    static const Lasting<std::vector<RemoteKeyNames>> keys({
#define REMOTE_KEY(code, name, aliases, keyboard) \
    {code, #name, split(aliases, ' '), split(keyboard, '|')},
#include "input/Keys.def"
    });
    return *keys;
}

std::optional<int32_t> remoteKeyCode(std::string_view text) {
    static const Lasting<CodesByName> codes(codesByName());
    const auto found = (*codes).find(text);
    return found == (*codes).end() ? decimalCode(text) : std::optional(found->second);
}

std::optional<int32_t> remoteKeyCodeFrom(const nlohmann::json& value) {
    if (value.is_string()) {
        return remoteKeyCode(value.get_ref<const std::string&>());
    }
    // A number in the form in which it came, which of other numbers is no decimal code.
    return value.is_number() ? decimalCode(value.dump()) : std::nullopt;
}

}  // namespace quiravent::desktop
