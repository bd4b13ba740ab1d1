#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lineup/captions/SlotPlan.h"

namespace quiravent::desktop::lineup {

/// What has to be sent for one caption.
struct CaptionCode {
    std::vector<CaptionRun> load;  ///< before it is seen; while another one may be seen
    CaptionRun show;               ///< takes away what was seen before, too
    CaptionRun hide;
};

/// A standard of captions: CEA-608 or CEA-708.
class CaptionCoder {
  public:
    virtual ~CaptionCoder() = default;

    virtual const char* name() const = 0;

    /// How many places it has in a picture, at that many pictures per second. A place may stand for
    /// several pictures: then it is below 1.
    virtual double slotsPerPicture(double pictureRate) const = 0;

    /// Captions are given in their order; none when the standard lacks a character.
    virtual std::optional<CaptionCode> encode(const std::vector<std::u32string>& lines) = 0;

    /// Completes the plan of a loop once everything has its place.
    virtual void finish(SlotPlan& plan) const { static_cast<void>(plan); }
};

}  // namespace quiravent::desktop::lineup
