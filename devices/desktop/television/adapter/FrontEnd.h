#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace quiravent::desktop {

enum class DeliverySystem { dvbT, dvbT2, dvbC, dvbS, dvbS2, isdbT };

enum class Modulation { qpsk, psk8, qam16, qam32, qam64, qam128, qam256 };

enum class Polarisation { horizontal, vertical };

/// How a multiplex is sent. What isn't given is found out by the front end.
struct Tuning {
    DeliverySystem system = DeliverySystem::isdbT;
    uint64_t frequency = 0;              ///< Hz; of a satellite: as it sends, not as its dish gives
    std::optional<uint32_t> bandwidth;   ///< Hz
    std::optional<uint32_t> symbolRate;  ///< baud
    std::optional<Modulation> modulation;
    std::optional<Polarisation> polarisation;  ///< of satellites
    std::optional<uint32_t> streamId;          ///< of several in one signal
};

/// What a front end tells of its signal; none where it can't tell.
struct SignalQuality {
    bool isLocked = false;
    std::optional<double> strength;  ///< dBm
    std::optional<double> ratio;     ///< of carrier to noise, dB
};

/// A receiver of broadcasts: makes a transport stream of what an antenna, cable or dish gives. It
/// is taken by tune() and free again at the end of its life. For one thread; what goes wrong is
/// thrown as TunerError. Functions may wait for the driver, which takes some milliseconds.
class FrontEnd {
  public:
    virtual ~FrontEnd() = default;

    /// Tunes, anew if it was tuned before. That it locks comes later, and shows by the stream.
    virtual void tune(const Tuning& tuning) = 0;

    /// Of the transport stream, which can be read without waiting; below 0 before tune().
    virtual int stream() const = 0;

    virtual SignalQuality quality() = 0;
};

}  // namespace quiravent::desktop
