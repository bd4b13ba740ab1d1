#include "live/PesAssembler.h"

#include <utility>

namespace quiravent::desktop {

namespace {

constexpr size_t kMaxPacketBytes = 8U << 20;
constexpr size_t kFixedHeader = 9;
constexpr size_t kLengthEnd = 6;
constexpr size_t kStampBytes = 5;

bool beginsPacket(const std::vector<uint8_t>& bytes) {
    return bytes.size() >= kFixedHeader && bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 1 &&
           (bytes[6] & 0xC0) == 0x80;
}

std::optional<int64_t> stampAt(const std::vector<uint8_t>& bytes, size_t at, size_t end) {
    if (at + kStampBytes > end) return std::nullopt;
    const uint8_t* const b = bytes.data() + at;
    const bool marked = (b[0] & 1) != 0 && (b[2] & 1) != 0 && (b[4] & 1) != 0;
    if (!marked) return std::nullopt;
    return int64_t{b[0] >> 1 & 7} << 30 | int64_t{b[1]} << 22 | int64_t{b[2] >> 1} << 15 |
           int64_t{b[3]} << 7 | b[4] >> 1;
}

/// Its data with its times, when the bytes are such a packet.
std::optional<PesUnit> parse(const std::vector<uint8_t>& bytes) {
    if (!beginsPacket(bytes)) return std::nullopt;
    const size_t payload = kFixedHeader + bytes[8];
    if (payload >= bytes.size()) return std::nullopt;
    PesUnit unit;
    unit.streamId = bytes[3];
    if ((bytes[7] & 0x80) != 0) unit.pts = stampAt(bytes, kFixedHeader, payload);
    const bool hasBoth = (bytes[7] & 0xC0) == 0xC0;
    unit.dts = hasBoth ? stampAt(bytes, kFixedHeader + kStampBytes, payload) : unit.pts;
    unit.data.assign(bytes.begin() + static_cast<std::ptrdiff_t>(payload), bytes.end());
    return unit;
}

}  // namespace

void PesAssembler::accept(const StreamPacket& packet, const std::optional<ClockMapping>& clock,
                          std::vector<PesUnit>& units) {
    const TransportPacket& bytes = packet.packet;
    if (bytes.isDamaged() || bytes.isScrambled()) return drop();
    m_hasGap |= packet.isDiscontinuous;
    if (!bytes.hasPayload()) return;
    // What lacks its end is useless; one that doesn't tell its length may well be whole.
    if (std::exchange(m_hasGap, false) && !bytes.startsUnit()) return drop();
    if (bytes.startsUnit()) {
        finish(clock, units);
        begin(packet, clock);
    }
    if (!m_isOpen) return;
    if (m_bytes.size() + bytes.payloadSize() > kMaxPacketBytes) return drop();
    m_bytes.insert(m_bytes.end(), bytes.payload(), bytes.payload() + bytes.payloadSize());
    if (isComplete()) finish(clock, units);
}

void PesAssembler::begin(const StreamPacket& packet, const std::optional<ClockMapping>& clock) {
    m_isOpen = true;
    m_arrival = packet.arrival;
    m_clock = clock;
}

bool PesAssembler::isComplete() const {
    if (m_bytes.size() < kLengthEnd) return false;
    const size_t length = size_t{m_bytes[4]} << 8 | m_bytes[5];
    return length != 0 && m_bytes.size() >= kLengthEnd + length;
}

void PesAssembler::finish(const std::optional<ClockMapping>& clock, std::vector<PesUnit>& units) {
    const bool tellsLength = m_bytes.size() >= kLengthEnd && (m_bytes[4] != 0 || m_bytes[5] != 0);
    if (m_isOpen && (!tellsLength || isComplete())) {
        if (tellsLength) m_bytes.resize(kLengthEnd + (size_t{m_bytes[4]} << 8 | m_bytes[5]));
        if (std::optional<PesUnit> unit = parse(m_bytes)) {
            unit->pid = m_pid;
            unit->arrival = m_arrival;
            unit->atBegin = m_clock;
            unit->atEnd = clock;
            units.push_back(std::move(*unit));
        }
    }
    drop();
}

void PesAssembler::drop() {
    m_isOpen = false;
    m_bytes.clear();
}

}  // namespace quiravent::desktop
