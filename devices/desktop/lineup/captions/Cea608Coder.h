#pragma once

#include "lineup/captions/CaptionCode.h"

namespace quiravent::desktop::lineup {

/// CEA-608 in channel CC1, as pop-on captions at the bottom of the screen.
class Cea608Coder : public CaptionCoder {
  public:
    const char* name() const override { return "CEA-608"; }
    double slotsPerPicture(double pictureRate) const override;
    std::optional<CaptionCode> encode(const std::vector<std::u32string>& lines) override;
};

}  // namespace quiravent::desktop::lineup
