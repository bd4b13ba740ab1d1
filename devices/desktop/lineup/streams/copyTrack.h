#pragma once

#include "lineup/streams/AccessUnit.h"
#include "lineup/streams/MediaTrack.h"

namespace quiravent::desktop::lineup {

/// The coded pictures of a medium from its first key picture on, for a loop of that length, in the
/// form that a transport stream carries. Throws DeviceError when they are coded in another way than
/// the description says. copy: the place of that word, for the message.
AccessUnits copyVideo(const Video& video, MediaTrack& track, Ticks loop, const Place& copy);

/// The same for sound; AAC gets ADTS headers.
AccessUnits copyAudio(const Audio& audio, MediaTrack& track, Ticks loop, const Place& copy);

}  // namespace quiravent::desktop::lineup
