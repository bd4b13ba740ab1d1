#include "platform/Properties.h"

#include <utility>

namespace quiravent::desktop {

Properties::Properties(std::map<std::string, std::string> properties)
    : m_properties(std::move(properties)) {
    for (const auto& [key, value] : m_properties) {
        m_keys.push_back(key.c_str());
        m_values.push_back(value.c_str());
    }
}

s_pl_platform_properties Properties::list() {
    return {static_cast<uint32_t>(m_keys.size()), m_keys.data(), m_values.data()};
}

}  // namespace quiravent::desktop
