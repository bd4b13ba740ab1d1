#pragma once

#include <string>
#include <vector>

#include "lineup/streams/AccessUnit.h"

namespace quiravent::desktop::lineup {

/// Sound of the device's form (media/audio/AudioFormat.h) that goes round: its end is followed by
/// its beginning.
using Sound = std::vector<float>;

/// A sine of about that frequency: of the nearest one that fits into the loop a whole number of
/// times. frames: its length.
Sound makeTone(double frequency, int64_t frames);

/// Codes a sound whose length is that many coded frames, such that it also goes round when coded.
/// AAC gets ADTS headers. subject: what it is of, for messages. Throws DeviceError.
AccessUnits encodeAudio(const Audio& audio, const std::string& subject, const Sound& sound,
                        int64_t count);

}  // namespace quiravent::desktop::lineup
