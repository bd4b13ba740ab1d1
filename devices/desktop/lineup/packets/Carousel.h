#pragma once

#include <functional>
#include <vector>

#include "lineup/packets/Packet.h"
#include "lineup/tables/sections.h"

namespace quiravent::desktop::lineup {

/// A packet that is to be sent at a time of the loop.
struct TimedPacket {
    Ticks time;
    Packet packet;
};

/// The tables of one packet identifier, sent again and again: at the beginning of the loop, and
/// then evenly spaced, at most that far apart, so often that continuity counters go round with the
/// loop. tables: what they are at a time of the loop, always of the same number of packets.
std::vector<TimedPacket> carousel(Pid pid, Ticks interval, Ticks loop,
                                  const std::function<Sections(Ticks)>& tables);

}  // namespace quiravent::desktop::lineup
