#pragma once

#include "television/MultiplexDescription.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Whether a picture begins in the packet with which decoding of its stream can begin: where the
/// packet says so, or the first bytes of the picture show it.
bool startsKeyPicture(const TransportPacket& packet, StreamCodec codec);

}  // namespace quiravent::desktop
