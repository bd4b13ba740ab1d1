#pragma once

#include <cstdint>

#include "media/PacketSource.h"

namespace quiravent::desktop {

/// So many packets in a row without anything decoded mean that there will be nothing.
inline constexpr uint32_t kMaxFruitlessPackets = 60;

/// What a decoder's thread does until the source is closed: gives each segment to `begin`, each
/// reading of a packet to `decode`, and calls `finish` at the end. current: the decoder's segment,
/// which `begin` replaces.
template <class Begin, class Decode, class Finish>
void followSource(PacketSource& source, TrackKind kind, const Segment& current, Begin begin,
                  Decode decode, Finish finish) {
    while (true) {
        const PacketSource::Read read = source.next(kind, current.serial);
        switch (read.state) {
            case PacketSource::Read::State::closed:
                return;
            case PacketSource::Read::State::newSegment:
                begin(read.segment);
                break;
            case PacketSource::Read::State::packet:
                decode(read);
                break;
            case PacketSource::Read::State::end:
                finish();
                break;
        }
    }
}

}  // namespace quiravent::desktop
