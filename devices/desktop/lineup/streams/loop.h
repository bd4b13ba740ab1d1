#pragma once

#include <cstdint>

#include "lineup/description/Lineup.h"

namespace quiravent::desktop::lineup {

/// Durations and times of a multiplex are in ticks of its clock, kPcrRate in a second.
using Ticks = int64_t;

constexpr Ticks kTicksPerMillisecond = kPcrRate / 1000;
/// Ticks of the clock in one of presentation times, which are told at 90 kHz.
constexpr Ticks kTimeTicks = 300;

/// Samples of the sound that the device codes, in a second and in a coded frame.
constexpr int kSampleRate = 48000;
int samplesPerFrame(AudioCodec codec);

Ticks frameDuration(const Video& video);
Ticks frameDuration(const Audio& audio);

/// Length of the loop: the wanted one or a little more, so that it is a whole number of frames of
/// every stream, as far as these have a common multiple of at most two seconds. Where they have
/// none, streams that come later end with a gap of less than a frame.
Ticks loopDuration(const Lineup& lineup);

}  // namespace quiravent::desktop::lineup
