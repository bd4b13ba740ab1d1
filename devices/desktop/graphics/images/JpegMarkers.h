#pragma once

#include "graphics/images/Decoders.h"

namespace quiravent::desktop {

/// Whether an "Adobe" segment (APP14) stands before the scan data: its writers store the inks of a
/// CMYK picture inverted, which the decoder leaves as it is.
bool hasAdobeMarker(const EncodedImage& jpeg);

}  // namespace quiravent::desktop
