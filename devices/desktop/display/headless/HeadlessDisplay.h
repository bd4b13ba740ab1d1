#pragma once

#include "display/DisplayDriver.h"

namespace quiravent::desktop {

/// A screen without a window: nobody looks on, so the picture stays where captures and whoever
/// asks the screen find it, in its planes. Works everywhere.
class HeadlessDisplay : public DisplayDriver {
  public:
    static constexpr const char* kName = "headless";

    const char* name() const override { return kName; }
    void show(const Screen&, uint64_t, const Box&) override {}
};

}  // namespace quiravent::desktop
