#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

/// All sound inside of the device: interleaved stereo of 32-bit floats at one rate; full scale is
/// -1 to 1. A frame is one sample of each channel.
constexpr int kAudioRate = 48000;
constexpr int kAudioChannels = 2;

constexpr int64_t audioDuration(size_t frames) {
    return static_cast<int64_t>(frames) * 1000000 / kAudioRate;
}

}  // namespace quiravent::desktop
