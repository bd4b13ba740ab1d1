#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "lineup/captions/SlotPlan.h"
#include "lineup/description/Lineup.h"
#include "lineup/description/fields.h"

namespace quiravent::desktop::lineup {

/// The caption data of a service's pictures.
class CaptionTrack {
  public:
    /// count: of pictures in the loop. Throws DeviceError for a text that doesn't fit on the screen
    /// or into the time before it. place: of the captions, for the message.
    CaptionTrack(const Captions& captions, const FrameRate& rate, int64_t count,
                 const Place& place);

    /// The constructs that go with a picture (ATSC A/53, part 4, 6.2.3), one after the other.
    std::vector<uint8_t> dataOf(int64_t picture) const;

  private:
    std::optional<SlotPlan> m_cea608;
    std::optional<SlotPlan> m_cea708;
    double m_slots608 = 0;
    size_t m_slots708 = 0;
};

}  // namespace quiravent::desktop::lineup
