#include "media/FetchProgress.h"

#include <algorithm>

namespace quiravent::desktop {

std::optional<uint8_t> FetchProgress::observe(int64_t have, int64_t need, int64_t now) {
    const auto percent = static_cast<int>(std::clamp<int64_t>(have, 0, need) * 100 / need);
    if (percent <= m_told) return std::nullopt;
    if (percent < 100 && m_told >= 0 && now < m_toldAt + kInterval) return std::nullopt;
    m_told = percent;
    m_toldAt = now;
    return static_cast<uint8_t>(percent);
}

}  // namespace quiravent::desktop
