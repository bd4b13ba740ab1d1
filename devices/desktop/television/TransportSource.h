#pragma once

#include <cstdint>
#include <optional>

#include "television/TransportPacket.h"
#include "television/adapter/FrontEnd.h"

namespace quiravent::desktop {

/// Takes what a source gives.
class PacketSink {
  public:
    virtual ~PacketSink() = default;

    /// arrival: by Clock.h. The packet is valid during the call.
    virtual void onPacket(const TransportPacket& packet, int64_t arrival) = 0;
    /// Counters and clocks begin anew with the next packet.
    virtual void onRestart() = 0;
};

/// Where a transport stream comes from. For one thread, and it never waits but for what the file
/// system and drivers do on their own; what goes wrong is thrown as TunerError.
class TransportSource {
  public:
    /// What there is to wait for before the next read.
    struct Awaited {
        int descriptor;  ///< below 0: none
        int64_t until;   ///< by Clock.h; INT64_MAX: only the descriptor counts
    };

    virtual ~TransportSource() = default;

    /// Begins, anew where it has begun before.
    virtual void open() = 0;

    virtual Awaited awaited() const = 0;

    /// Gives what has come by now.
    virtual void read(PacketSink& sink, int64_t now) = 0;

    /// How often packets stopped following one another in what came.
    virtual uint64_t syncLosses() const = 0;

    /// What the receiver of the signal tells of it; none where there is none.
    virtual std::optional<SignalQuality> quality() { return std::nullopt; }
};

}  // namespace quiravent::desktop
