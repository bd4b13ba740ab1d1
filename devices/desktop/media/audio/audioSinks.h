#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media/audio/AudioSink.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// Names of the sinks, that of choice first: "auto" is the sound card, where there is one; "device"
/// too, but the lack of one is a warning; "null" drops the sound, "wav" writes it to a file.
std::vector<std::string> audioSinkNames();

/// Makes the sink of that name. target: the file of "wav", else unused.
Result<std::unique_ptr<AudioSink>> createAudioSink(const std::string& name,
                                                   const std::string& target);

}  // namespace quiravent::desktop
