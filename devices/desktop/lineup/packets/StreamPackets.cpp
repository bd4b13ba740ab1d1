#include "lineup/packets/StreamPackets.h"

#include <algorithm>

#include "lineup/tables/ByteWriter.h"

namespace quiravent::desktop::lineup {

namespace {

/// The head of a packetised unit and some of its content, which stay together.
constexpr size_t kLeastStart = 32;

void writeTime(ByteWriter& out, unsigned mark, Ticks ticks) {
    const auto time = static_cast<uint64_t>(ticks / kTimeTicks);
    out.byte(static_cast<unsigned>(mark << 4 | (time >> 30 & 7) << 1 | 1));
    out.word(static_cast<unsigned>((time >> 15 & 0x7FFF) << 1 | 1));
    out.word(static_cast<unsigned>((time & 0x7FFF) << 1 | 1));
}

/// A packet of the packetised elementary stream with one access unit.
Bytes packetisedUnit(StreamContent content, const AccessUnit& unit, Ticks delay) {
    constexpr unsigned kAligned = 0x84;
    constexpr unsigned kOnlyPts = 2;
    constexpr unsigned kPtsAndDts = 3;
    const bool hasDts = unit.dts != unit.pts;
    const unsigned headSize = hasDts ? 10 : 5;
    const size_t length = 3 + headSize + unit.data.size();
    ByteWriter out;
    out.word(0);
    out.byte(1);
    out.byte(static_cast<unsigned>(content));
    // Only video may leave its length open, which it has to where 16 bits don't hold it.
    out.word(content == StreamContent::video ? 0 : static_cast<unsigned>(length));
    out.byte(kAligned);
    out.byte((hasDts ? kPtsAndDts : kOnlyPts) << 6);
    out.byte(headSize);
    writeTime(out, hasDts ? kPtsAndDts : kOnlyPts, unit.pts + delay);
    if (hasDts) writeTime(out, 1, unit.dts + delay);
    out.append(unit.data);
    return out.take();
}

/// How a unit is divided among packets.
struct Division {
    bool isMarked;     ///< decoding can begin with it, which its first packet tells
    size_t extra = 0;  ///< packets beyond those that it needs
    size_t count(size_t bytes) const {
        const size_t marks = isMarked ? kMostPayload - kMostMarkedPayload : 0;
        return (bytes + marks + kMostPayload - 1) / kMostPayload + extra;
    }
};

Packets divide(const Bytes& unit, const Division& division, Pid pid, uint8_t& continuity) {
    const size_t count = division.count(unit.size());
    Packets packets;
    size_t done = 0;
    for (size_t i = 0; i < count; ++i) {
        PayloadPart part;
        part.pid = pid;
        part.continuity = continuity++;
        part.startsUnit = i == 0;
        part.isRandomAccess = i == 0 && division.isMarked;
        part.data = unit.data() + done;
        // At least a byte is left for each packet that follows.
        part.size = std::min(part.isRandomAccess ? kMostMarkedPayload : kMostPayload,
                             unit.size() - done - (count - 1 - i));
        done += part.size;
        packets.push_back(payloadPacket(part));
    }
    return packets;
}

}  // namespace

std::vector<UnitPackets> packetise(const CodedStream& stream, Ticks delay) {
    std::vector<Bytes> units;
    std::vector<Division> divisions;
    size_t count = 0;
    for (const AccessUnit& unit : stream.units) {
        units.push_back(packetisedUnit(stream.content, unit, delay));
        divisions.push_back({stream.content == StreamContent::video && unit.isKey});
        count += divisions.back().count(units.back().size());
    }
    const size_t missing = (kContinuityModulus - count % kContinuityModulus) % kContinuityModulus;
    for (size_t i = units.size(); missing != 0 && i-- > 0;) {
        if (units[i].size() < kLeastStart + kContinuityModulus) continue;
        divisions[i].extra = missing;
        break;
    }
    std::vector<UnitPackets> result;
    uint8_t continuity = 0;
    for (size_t i = 0; i < units.size(); ++i) {
        result.push_back(
            {stream.units[i].dts, divide(units[i], divisions[i], stream.pid, continuity)});
    }
    return result;
}

}  // namespace quiravent::desktop::lineup
