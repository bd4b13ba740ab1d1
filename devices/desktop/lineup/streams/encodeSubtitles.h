#pragma once

#include <string>

#include "lineup/streams/AccessUnit.h"

namespace quiravent::desktop::lineup {

/// The subtitles of a service as DVB's pages with pictures (ETSI EN 300 743), one to show each text
/// and one to take it away where no other follows at once. Throws DeviceError when the font can't
/// be read. subject: what they are of, for messages.
AccessUnits encodeSubtitles(const Service& service, const std::string& fontFile, Ticks loop,
                            const std::string& subject);

}  // namespace quiravent::desktop::lineup
