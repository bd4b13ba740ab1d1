#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The keys of the remote control; what they are stands in Keys.def.
namespace quiravent::desktop {

/// Keys that have a name, by it. Others are known by their codes alone.
enum class RemoteKey : int32_t {
#define REMOTE_KEY(code, name, aliases, keyboard) k##name = (code),
#include "input/Keys.def"
};

struct RemoteKeyNames {
    int32_t code;
    std::string name;
    std::vector<std::string> aliases;
    std::vector<std::string> keyboard;  ///< keys of a keyboard, as SDL names them
};

/// All keys that have a name, in the order of the list.
const std::vector<RemoteKeyNames>& remoteKeys();

/// The code of the key that is called so, whatever the case of the letters, or else the code that
/// the text spells as a decimal number (so "5" is the digit, of code 53); none when it is neither.
std::optional<int32_t> remoteKeyCode(std::string_view text);

/// The same for a text, and the number itself for a whole number that fits a code.
std::optional<int32_t> remoteKeyCodeFrom(const nlohmann::json& value);

/// Completes "allowed: " where a key is asked for.
inline constexpr const char* kRemoteKeyRule =
    "the name of a remote key, as \"ArrowLeft\", \"VK_LEFT\" or \"KEY_LEFT\" (docs/keys.md has "
    "all), or a key's code";

}  // namespace quiravent::desktop
