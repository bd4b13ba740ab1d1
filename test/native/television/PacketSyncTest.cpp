#include "television/PacketSync.h"

#include <gtest/gtest.h>

#include <algorithm>

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
        Bytes packet(TransportPacket::kSize, 0x55);
        packet[0] = TransportPacket::kSync;
        packet[4] = static_cast<uint8_t>(number);
        stream = stream + Bytes(before, 0x33) + packet + Bytes(behind, 0x44);
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

/// All numbers but those from one up to another, in each of so many rounds.
std::vector<size_t> allBut(size_t from, size_t to, int rounds = 1) {
    std::vector<size_t> numbers;
    for (; rounds > 0; --rounds)
        for (size_t number = 0; number < kPackets; ++number)
            if (number < from || number >= to) numbers.push_back(number);
    return numbers;
}

TEST(PacketSync, FindsPacketsOfEachSizeInAnyPiecesAndGoesOnAfterDamage) {
    const Bytes whole = numbered(0, 0);
    const auto without = [&](size_t from, size_t count) {
        return Bytes(&whole[0], &whole[from]) + Bytes(&whole[from + count], &whole.back() + 1);
    };
    Bytes wrongByte = whole;
    wrongByte[size_t{5} * 188] = 0x46;
    struct Case {
        const char* what = "";
        Bytes stream;
        std::vector<size_t> found;
        size_t smallestPiece = 0;
    };
    const Case cases[] = {
        {"behind noise", Bytes(777, 0x00) + whole, allBut(0, 0), 1},
        {"with a time before each", numbered(4, 0), allBut(0, 0), 1},
        {"with a check behind each", numbered(0, 16), allBut(0, 0), 1},
        {"a wrong byte", wrongByte, allBut(5, 6), 100000},
        {"some are missing", without(5 * 188 - 20, 1000), allBut(5, 11), 188},
        {"the next one begins within the one that is too short", without(4 * 188 + 20, 40),
         allBut(0, 0), 188},
        {"others in between", whole + Bytes(5000, 0x12) + whole, allBut(0, 0, 2), 188},
        {"nothing else", test::readMultiplex("garbage.ts"), {}, 65536},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        for (const size_t piece : {1, 100, 188, 1316, 65536, 100000}) {
            if (piece < one.smallestPiece) continue;
            EXPECT_EQ(found(one.stream, piece), one.found) << piece;
        }
    }
}

}  // namespace
}  // namespace quiravent::desktop
