#include "ServiceSelectorMessage.h"

#include <cstring>

namespace quiravent {

std::optional<ServiceSelectorMessage> ParseServiceSelectorMessage(char* bytes) {
    constexpr const char* kSeparator = "\n";
    char* rest = nullptr;
    const char* name = strtok_r(bytes, kSeparator, &rest);
    if (name == nullptr) return std::nullopt;
    const char* value = strtok_r(nullptr, kSeparator, &rest);
    if (value == nullptr) return std::nullopt;
    return ServiceSelectorMessage{name, value};
}

}  // namespace quiravent
