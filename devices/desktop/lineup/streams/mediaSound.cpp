#include "lineup/streams/mediaSound.h"

#include <algorithm>
#include <cstdlib>

#include "media/audio/AudioFormat.h"
#include "media/audio/Resampler.h"

namespace quiravent::desktop::lineup {

namespace {

/// Gaps and overlaps up to this are those of rounded times: the sound goes on.
constexpr int64_t kJitter = kAudioRate / 50;

int64_t framesOf(const Sound& sound) { return static_cast<int64_t>(sound.size()) / kAudioChannels; }

/// Goes to a frame of the sound, by silence or by taking back what lies behind it.
void goTo(Sound& sound, int64_t frame) {
    sound.resize(static_cast<size_t>(std::max<int64_t>(frame, 0)) * kAudioChannels);
}

}  // namespace

Sound mediaSound(MediaTrack& track, int64_t frames) {
    DecodedTrack pieces(track);
    Resampler resampler;
    Sound sound;
    while (framesOf(sound) < frames) {
        const AvFrame piece = pieces.next();
        const int64_t start = av_rescale(piece->pts, kAudioRate, kSecond);
        if (std::abs(start - framesOf(sound)) > kJitter) goTo(sound, std::min(start, frames));
        const std::vector<float> samples = resampler.convert(*piece);
        sound.insert(sound.end(), samples.begin(), samples.end());
    }
    goTo(sound, frames);
    return sound;
}

}  // namespace quiravent::desktop::lineup
