#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace quiravent::desktop {

/// Packet identifiers, of 13 bits, that mean the same in every multiplex.
using Pid = uint16_t;
constexpr Pid kPidCount = 0x2000;
constexpr Pid kPatPid = 0x0000;
constexpr Pid kNitPid = 0x0010;
constexpr Pid kSdtPid = 0x0011;
constexpr Pid kEitPid = 0x0012;
/// Stuffing; where a packet identifier is asked for: none.
constexpr Pid kNullPid = 0x1FFF;

/// Ticks of clock references in a second.
constexpr int64_t kPcrRate = 27000000;
/// Clock references begin again at 0 here, after some 26.5 hours.
constexpr int64_t kPcrModulus = (int64_t{1} << 33) * 300;

/// Ticks from one clock reference to another, the shorter way round; below 0 when it lies before.
inline int64_t pcrDifference(int64_t from, int64_t to) {
    const int64_t ahead = (to - from + kPcrModulus) % kPcrModulus;
    return ahead > kPcrModulus / 2 ? ahead - kPcrModulus : ahead;
}

/// A packet of a transport stream, of 188 bytes that outlive this view; layout: ISO/IEC 13818-1,
/// 2.4.3. Safe with any bytes: lengths that lead outside of the packet count as no payload and no
/// adaptation field.
class TransportPacket {
  public:
    static constexpr size_t kSize = 188;
    static constexpr uint8_t kSync = 0x47;

    explicit TransportPacket(const uint8_t* bytes) : m_bytes(bytes) {}

    const uint8_t* bytes() const { return m_bytes; }

    Pid pid() const { return static_cast<Pid>((m_bytes[1] & 0x1F) << 8 | m_bytes[2]); }
    /// The receiver has found errors in it that it couldn't mend.
    bool isDamaged() const { return (m_bytes[1] & 0x80) != 0; }
    /// A packetised elementary stream's packet, or a section, begins in it.
    bool startsUnit() const { return (m_bytes[1] & 0x40) != 0; }
    bool isScrambled() const { return (m_bytes[3] & 0xC0) != 0; }
    uint8_t continuity() const { return m_bytes[3] & 0x0F; }

    bool hasPayload() const { return (m_bytes[3] & 0x10) != 0 && payloadStart() < kSize; }
    const uint8_t* payload() const { return m_bytes + payloadStart(); }
    size_t payloadSize() const { return hasPayload() ? kSize - payloadStart() : 0; }

    /// The counter and the clock of the stream begin anew here, and that's no error.
    bool announcesDiscontinuity() const { return (adaptationFlags() & 0x80) != 0; }
    bool isRandomAccess() const { return (adaptationFlags() & 0x40) != 0; }

    /// The clock reference in ticks of kPcrRate, below kPcrModulus.
    std::optional<int64_t> clockReference() const {
        constexpr size_t kFieldAt = 6;
        if ((adaptationFlags() & 0x10) == 0 || m_bytes[4] < 7) return std::nullopt;
        const uint8_t* const field = m_bytes + kFieldAt;
        const int64_t base = int64_t{field[0]} << 25 | int64_t{field[1]} << 17 |
                             int64_t{field[2]} << 9 | int64_t{field[3]} << 1 | field[4] >> 7;
        const int64_t extension = (field[4] & 1) << 8 | field[5];
        return (base * 300 + extension) % kPcrModulus;
    }

  private:
    bool hasAdaptation() const { return (m_bytes[3] & 0x20) != 0; }
    size_t payloadStart() const { return hasAdaptation() ? size_t{5} + m_bytes[4] : 4; }
    uint8_t adaptationFlags() const {
        const bool isThere = hasAdaptation() && m_bytes[4] != 0 && payloadStart() <= kSize;
        return isThere ? m_bytes[5] : 0;
    }

    const uint8_t* m_bytes;
};

}  // namespace quiravent::desktop
