#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "live/ProgramClock.h"
#include "television/StreamListener.h"

namespace quiravent::desktop {

/// The payload of one packet of a packetised elementary stream.
struct PesUnit {
    Pid pid = kNullPid;
    uint8_t streamId = 0;
    std::optional<int64_t> pts;  ///< 90 kHz, 33 bits
    std::optional<int64_t> dts;
    std::vector<uint8_t> data;
    int64_t arrival = 0;                  ///< of its beginning
    std::optional<ClockMapping> atBegin;  ///< of the programme's clock, when it began to come
    std::optional<ClockMapping> atEnd;    ///< ... and when it was complete
};

/// Puts the packets of one elementary stream (ISO/IEC 13818-1, 2.4.3.6) together. Safe with any
/// bytes; what is damaged or incomplete is left out as a whole.
class PesAssembler {
  public:
    explicit PesAssembler(Pid pid) : m_pid(pid) {}

    /// Takes the next packet of the stream and appends the units that it completes.
    void accept(const StreamPacket& packet, const std::optional<ClockMapping>& clock,
                std::vector<PesUnit>& units);

  private:
    void begin(const StreamPacket& packet, const std::optional<ClockMapping>& clock);
    void finish(const std::optional<ClockMapping>& clock, std::vector<PesUnit>& units);
    bool isComplete() const;
    void drop();

    const Pid m_pid;
    bool m_isOpen = false;  ///< a unit has begun
    int64_t m_arrival = 0;
    std::optional<ClockMapping> m_clock;
    std::vector<uint8_t> m_bytes;
};

}  // namespace quiravent::desktop
