#pragma once

#include <cstdint>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// A packet on its way to one who listens.
struct StreamPacket {
    TransportPacket packet;  ///< valid during the call only
    /// When it came, by Clock.h, in microseconds. Of a file: when it was due by the clock
    /// references, so free of jitter. (arrival - clock reference) of the packets with the clock is
    /// what decoding and presentation times have to be moved by.
    int64_t arrival;
    /// Packets of this identifier before this one are missing, or its counter and the clock begin
    /// anew, as where a file begins again: what is half put together is of no use any more.
    bool isDiscontinuous;
    /// Came before the subscription; see Multiplex::subscribe.
    bool isReplayed;
};

/// One who listens to some packet identifiers of what is tuned, over all selections.
///
/// Called by the thread that receives, or by the one that subscribes, one call at a time. What is
/// called here holds up the reception of all: it puts aside and wakes others, and never waits. It
/// may ask the multiplex for its description, and mustn't subscribe or end a subscription. Whoever
/// subscribes, changes or ends a subscription mustn't hold a lock that these functions take.
class StreamListener {
  public:
    virtual ~StreamListener() = default;

    /// A selection begins: nothing of what was before belongs to it.
    virtual void onTuned() = 0;
    /// It ends; no packets follow until the next.
    virtual void onUntuned() = 0;

    virtual void onPacket(const StreamPacket& packet) = 0;

    /// The association of identifiers to services and codecs is another; see
    /// Multiplex::description().
    virtual void onTablesChanged() = 0;

    /// The signal is lost, or is there (again).
    virtual void onSignal(bool isPresent) = 0;
};

}  // namespace quiravent::desktop
