#pragma once

#include <string>
#include <vector>

#include "lineup/packets/StreamPackets.h"

namespace quiravent::desktop::lineup {

/// The streams of a service, coded, in the order of its map. subject: the service's place, for
/// messages. Throws DeviceError.
std::vector<CodedStream> serviceStreams(const Lineup& lineup, const Service& service,
                                        const std::string& subject);

}  // namespace quiravent::desktop::lineup
