#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quiravent::desktop::lineup {

/// A construct of caption data as ATSC A/53 carries it: a byte with marks, and two of data.
using CaptionTriplet = std::array<uint8_t, 3>;
/// Some that have to follow each other without a gap.
using CaptionRun = std::vector<CaptionTriplet>;

/// The places for one kind of caption data over the loop, which are taken once each.
class SlotPlan {
  public:
    explicit SlotPlan(size_t count) : m_slots(count) {}

    size_t size() const { return m_slots.size(); }
    std::optional<CaptionTriplet>& at(size_t slot) { return m_slots.at(slot); }
    const std::optional<CaptionTriplet>& at(size_t slot) const { return m_slots.at(slot); }

    /// Puts a run at the first free places from `slot` on. Gives the place after it; none, with
    /// nothing put, when there is no room until the end of the loop.
    std::optional<size_t> putFrom(size_t slot, const CaptionRun& run);

    /// Puts runs in their order at the last free places before `end`, none of them before `begin`.
    /// False, with nothing put, when there is no room.
    bool putBefore(size_t end, size_t begin, const std::vector<CaptionRun>& runs);

  private:
    bool isFree(size_t slot, size_t count) const;
    void put(size_t slot, const CaptionRun& run);

    std::vector<std::optional<CaptionTriplet>> m_slots;
};

}  // namespace quiravent::desktop::lineup
