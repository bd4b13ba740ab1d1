#pragma once

#include <vector>

#include "lineup/description/fields.h"
#include "lineup/packets/StreamPackets.h"

namespace quiravent::desktop::lineup {

/// The streams of a service, coded, in the order of its map. place: of the service, for
/// messages. Throws DeviceError.
std::vector<CodedStream> serviceStreams(const Lineup& lineup, const Service& service,
                                        const Place& place);

}  // namespace quiravent::desktop::lineup
