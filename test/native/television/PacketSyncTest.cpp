#include "television/PacketSync.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::operator+;

constexpr size_t kPackets = 40;

/// Packets that carry their number, each between other bytes of the given sizes.
Bytes numbered(size_t before, size_t behind) {
    Bytes stream;
    for (size_t number = 0; number < kPackets; ++number) {
        stream.insert(stream.end(), before, 0x33);
        Bytes packet(TransportPacket::kSize, 0x55);
        packet[0] = TransportPacket::kSync;
        packet[4] = static_cast<uint8_t>(number);
        stream = stream + packet;
        stream.insert(stream.end(), behind, 0x44);
    }
    return stream;
}

/// The numbers of the packets that are found in bytes which come in pieces of that size.
std::vector<size_t> found(const Bytes& stream, size_t pieces) {
    PacketSync sync;
    std::vector<size_t> numbers;
    ByteView rest(stream.data(), stream.size());
    while (!rest.empty()) {
        sync.add(rest.substr(0, pieces), [&](const TransportPacket& packet, uint64_t offset) {
            numbers.push_back(packet.bytes()[4]);
            EXPECT_EQ(stream[offset + 4], packet.bytes()[4]);
        });
        rest.remove_prefix(std::min(rest.size(), pieces));
    }
    return numbers;
}

std::vector<size_t> allBut(const std::vector<size_t>& left) {
    std::vector<size_t> numbers(kPackets);
    std::iota(numbers.begin(), numbers.end(), 0);
    for (const size_t number : left)
        numbers.erase(std::find(numbers.begin(), numbers.end(), number));
    return numbers;
}

TEST(PacketSync, FindsPacketsOfEachSizeInAnyPieces) {
    const Bytes noise(777, 0x00);
    for (const size_t piece : {1, 100, 1316, 100000}) {
        SCOPED_TRACE(piece);
        EXPECT_EQ(found(noise + numbered(0, 0), piece), allBut({}));
        EXPECT_EQ(found(numbered(4, 0), piece), allBut({}));
        EXPECT_EQ(found(numbered(0, 16), piece), allBut({}));
    }
}

TEST(PacketSync, GoesOnAfterDamage) {
    const Bytes whole = numbered(0, 0);
    const auto without = [&](size_t from, size_t count) {
        Bytes cut = whole;
        const auto first = cut.begin() + static_cast<std::ptrdiff_t>(from);
        cut.erase(first, first + static_cast<std::ptrdiff_t>(count));
        return cut;
    };
    Bytes wrongByte = whole;
    wrongByte[size_t{5} * 188] = 0x46;
    EXPECT_EQ(found(wrongByte, 100000), allBut({5})) << "only that packet";
    for (const size_t piece : {188, 1316, 100000}) {
        SCOPED_TRACE(piece);
        EXPECT_EQ(found(without(5 * 188 - 20, 1000), piece), allBut({5, 6, 7, 8, 9, 10}));
        EXPECT_EQ(found(without(4 * 188 + 20, 40), piece), allBut({}))
            << "the next one begins within the one that is too short";
        EXPECT_EQ(found(whole + Bytes(5000, 0x12) + whole, piece).size(), 2 * kPackets);
    }
}

TEST(PacketSync, GivesNothingForNoise) {
    EXPECT_TRUE(found(test::readMultiplex("garbage.ts"), 65536).empty());
}

}  // namespace
}  // namespace quiravent::desktop
