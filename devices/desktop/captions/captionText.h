#pragma once

#include <string>
#include <vector>

#include "media/SubtitleCue.h"

namespace quiravent::desktop {

/// What can be read of a cue, line by line, without blanks about the lines. Bitmaps have no text.
std::vector<std::string> captionText(const SubtitleCue& cue);

}  // namespace quiravent::desktop
