#pragma once

#include "lineup/streams/MediaTrack.h"
#include "lineup/streams/encodeAudio.h"

namespace quiravent::desktop::lineup {

/// That many frames of a medium's sound, from its beginning, with silence where it has none. Throws
/// DeviceError when it can't be decoded.
Sound mediaSound(MediaTrack& track, int64_t frames);

}  // namespace quiravent::desktop::lineup
