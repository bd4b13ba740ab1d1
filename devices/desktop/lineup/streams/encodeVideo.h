#pragma once

#include <functional>
#include <string>

#include "lineup/streams/AccessUnit.h"
#include "lineup/streams/Pictures.h"

namespace quiravent::desktop::lineup {

/// The caption data (triplets as in ATSC A/53) that go with a picture; may be empty.
using CaptionData = std::function<std::vector<uint8_t>(int64_t number)>;

/// Codes that many pictures, without B pictures, each group of half a second by itself. subject:
/// what they are of, for messages. captions may be empty. Throws DeviceError.
AccessUnits encodeVideo(const Video& video, const std::string& subject, Pictures& pictures,
                        int64_t count, const CaptionData& captions);

}  // namespace quiravent::desktop::lineup
