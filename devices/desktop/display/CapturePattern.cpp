#include "display/CapturePattern.h"

namespace quiravent::desktop {

bool CapturePattern::isValid(const std::string& path) {
    return path.empty() || CapturePattern("").parse(path);
}

CapturePattern::CapturePattern(const std::string& path) {
    if (!path.empty()) parse(path);
}

bool CapturePattern::parse(const std::string& path) {
    const size_t nameStart = path.rfind('/') + 1;  // 0 where there is no folder
    m_prefix = path.substr(0, nameStart);
    if (nameStart == path.size()) return false;
    size_t at = nameStart;
    while (at < path.size()) {
        if (path[at] == '%' && path.compare(at, 2, "%%") != 0) {
            if (!parseNumber(path, at)) return false;
            continue;
        }
        (m_perFrame ? m_suffix : m_prefix) += path[at];
        at += path[at] == '%' ? 2 : 1;
    }
    return true;
}

/// Reads %d or %0Nd at that place and moves behind it.
bool CapturePattern::parseNumber(const std::string& name, size_t& at) {
    if (m_perFrame) return false;
    m_perFrame = true;
    if (name.compare(at, 2, "%d") == 0) {
        at += 2;
        return true;
    }
    const bool padded = name.compare(at, 2, "%0") == 0 && name.size() > at + 3 &&
                        name[at + 2] >= '1' && name[at + 2] <= '9' && name[at + 3] == 'd';
    if (!padded) return false;
    m_digits = static_cast<size_t>(name[at + 2] - '0');
    at += 4;
    return true;
}

std::string CapturePattern::fileFor(uint64_t frame) const {
    if (!m_perFrame) return m_prefix;
    std::string number = std::to_string(frame);
    if (number.size() < m_digits) number.insert(0, m_digits - number.size(), '0');
    return m_prefix + number + m_suffix;
}

}  // namespace quiravent::desktop
