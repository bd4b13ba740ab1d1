#include "lineup/captions/SlotPlan.h"

#include <algorithm>

namespace quiravent::desktop::lineup {

bool SlotPlan::isFree(size_t slot, size_t count) const {
    if (slot + count > m_slots.size()) return false;
    const auto first = m_slots.begin() + static_cast<ptrdiff_t>(slot);
    return std::none_of(first, first + static_cast<ptrdiff_t>(count),
                        [](const auto& taken) { return taken.has_value(); });
}

void SlotPlan::put(size_t slot, const CaptionRun& run) {
    std::copy(run.begin(), run.end(), m_slots.begin() + static_cast<ptrdiff_t>(slot));
}

std::optional<size_t> SlotPlan::putFrom(size_t slot, const CaptionRun& run) {
    for (; slot + run.size() <= m_slots.size(); ++slot) {
        if (!isFree(slot, run.size())) continue;
        put(slot, run);
        return slot + run.size();
    }
    return std::nullopt;
}

bool SlotPlan::putBefore(size_t end, size_t begin, const std::vector<CaptionRun>& runs) {
    std::vector<size_t> places(runs.size());
    for (size_t i = runs.size(); i-- > 0;) {
        const size_t size = runs[i].size();
        do {
            if (end < begin + size) return false;
            --end;
        } while (!isFree(end + 1 - size, size));
        end = end + 1 - size;
        places[i] = end;
    }
    for (size_t i = 0; i < runs.size(); ++i) put(places[i], runs[i]);
    return true;
}

}  // namespace quiravent::desktop::lineup
