#include "lineup/streams/loop.h"

#include <numeric>
#include <vector>

namespace quiravent::desktop::lineup {

namespace {

constexpr Ticks kLongestUnit = 2 * kPcrRate;

/// Durations of the frames: first those of the pictures, whose gaps would be seen.
std::vector<Ticks> frameDurations(const Lineup& lineup) {
    std::vector<Ticks> durations;
    for (const Service& service : lineup.services) {
        if (service.video) durations.push_back(frameDuration(*service.video));
    }
    for (const Service& service : lineup.services) {
        for (const Audio& audio : service.audio) durations.push_back(frameDuration(audio));
    }
    return durations;
}

}  // namespace

int samplesPerFrame(AudioCodec codec) { return codec == AudioCodec::aac ? 1024 : 1152; }

Ticks frameDuration(const Video& video) {
    return kPcrRate * video.rate.denominator / video.rate.numerator;
}

Ticks frameDuration(const Audio& audio) {
    return kPcrRate * samplesPerFrame(audio.codec) / kSampleRate;
}

Ticks loopDuration(const Lineup& lineup) {
    Ticks unit = 1;
    for (const Ticks duration : frameDurations(lineup)) {
        const Ticks common = std::lcm(unit, duration);
        if (common <= kLongestUnit) unit = common;
    }
    const Ticks wanted = lineup.duration * kTicksPerMillisecond;
    return (wanted + unit - 1) / unit * unit;
}

}  // namespace quiravent::desktop::lineup
