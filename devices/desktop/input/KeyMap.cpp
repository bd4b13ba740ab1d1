#include "input/KeyMap.h"

#include "input/Keys.h"

namespace quiravent::desktop {

KeyMap::KeyMap(const KeyBindings& changes) {
    for (const RemoteKeyNames& key : remoteKeys()) {
        for (const std::string& name : key.keyboard) m_codes.emplace(name, key.code);
    }
    for (const auto& [name, code] : changes) {
        m_codes.erase(name);
        if (code) m_codes.emplace(name, *code);
    }
}

std::optional<int32_t> KeyMap::codeOf(std::string_view keyboardKey) const {
    const auto found = m_codes.find(keyboardKey);
    if (found == m_codes.end()) return std::nullopt;
    return found->second;
}

}  // namespace quiravent::desktop
