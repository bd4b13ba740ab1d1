#pragma once

#include "lineup/captions/CaptionCode.h"

namespace quiravent::desktop::lineup {

/// CEA-708 in service 1: a window at the bottom of the screen, which is shown once its text has
/// been sent. Windows 0 and 1 take turns.
class Cea708Coder : public CaptionCoder {
  public:
    const char* name() const override { return "CEA-708"; }
    double slotsPerPicture(double pictureRate) const override;
    std::optional<CaptionCode> encode(const std::vector<std::u32string>& lines) override;

    void finish(SlotPlan& plan) const override;

  private:
    unsigned m_window = 0;
};

}  // namespace quiravent::desktop::lineup
