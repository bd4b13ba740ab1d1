#include "support/shownValue.h"

#include <nlohmann/json.hpp>

namespace quiravent::desktop {

std::string shownValue(const nlohmann::json& value) {
    constexpr size_t kMost = 60;
    std::string text = value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    if (text.size() <= kMost) return text;
    size_t end = kMost;
    while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return text.substr(0, end) + "...";
}

}  // namespace quiravent::desktop
