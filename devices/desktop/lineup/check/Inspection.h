#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lineup/streams/loop.h"
#include "television/ByteReader.h"
#include "television/MultiplexDescription.h"

namespace quiravent::desktop::lineup {

/// What was seen of one packet identifier.
struct StreamFacts {
    uint64_t packets = 0;
    uint64_t gaps = 0;   ///< of its counter, the one from the end to the beginning included
    uint64_t units = 0;  ///< tables' sections, or coded pictures and the like
    /// Shortest time from the arrival of a unit's end to its decoding; only with hasLead.
    Ticks shortestLead = 0;
    bool hasLead = false;
};

/// What was seen of one clock.
struct ClockFacts {
    uint64_t references = 0;
    Ticks longestInterval = 0;   ///< the one from the end to the beginning included
    Ticks largestDeviation = 0;  ///< from a constant rate
};

/// What a file of a transport stream holds, taken as a loop.
struct Inspection {
    uint64_t packets = 0;
    uint64_t nullPackets = 0;
    uint64_t syncLosses = 0;
    uint64_t faultySections = 0;
    double bitRate = 0;  ///< per second, by the clock; 0 without one
    Ticks duration = 0;  ///< of the loop, by the clock
    MultiplexDescription description;
    std::map<Pid, StreamFacts> streams;
    std::map<Pid, ClockFacts> clocks;
    std::vector<std::string> problems;  ///< a line for each; empty: the file can be sent
};

Inspection inspect(ByteView bytes);

}  // namespace quiravent::desktop::lineup
