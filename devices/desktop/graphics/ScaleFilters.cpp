#include "graphics/ScaleFilters.h"

#include <algorithm>

namespace quiravent::desktop {

namespace {

/// Two axes of each of four kinds of pictures; a filter is 200 KB at most.
constexpr size_t kMost = 8;

}  // namespace

std::shared_ptr<const ScaleFilter> ScaleFilters::find(const ScaleAxis& axis,
                                                      const Extent& visible) {
    const auto entry =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& candidate) {
            return candidate.axis == axis && candidate.visible == visible;
        });
    if (entry != m_entries.end()) {
        m_entries.splice(m_entries.begin(), m_entries, entry);
        return m_entries.front().filter;
    }
    m_entries.push_front({axis, visible, std::make_shared<const ScaleFilter>(axis, visible)});
    if (m_entries.size() > kMost) m_entries.pop_back();
    return m_entries.front().filter;
}

}  // namespace quiravent::desktop
