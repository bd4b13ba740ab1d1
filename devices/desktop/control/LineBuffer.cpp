#include "control/LineBuffer.h"

#include <utility>

namespace quiravent::desktop {

std::optional<LineBuffer::Line> LineBuffer::take() {
    while (true) {
        const size_t length = m_bytes.find('\n');
        if (length == std::string::npos) return takeRest();
        std::string text = m_bytes.substr(0, length);
        m_bytes.erase(0, length + 1);
        if (std::exchange(m_skipping, false)) continue;
        if (length > kMaxLine) return Line{{}, true};
        return Line{std::move(text), false};
    }
}

std::optional<LineBuffer::Line> LineBuffer::takeRest() {
    if (m_skipping) {
        m_bytes.clear();
        return std::nullopt;
    }
    if (m_bytes.size() > kMaxLine) {
        m_bytes.clear();
        m_skipping = true;
        return Line{{}, true};
    }
    if (!m_ended || m_bytes.empty()) return std::nullopt;
    return Line{std::exchange(m_bytes, {}), false};
}

}  // namespace quiravent::desktop
