#include "television/KeyPicture.h"

#include "television/ByteReader.h"

namespace quiravent::desktop {

namespace {

/// Whether the byte behind a start code begins what precedes, or is, a picture that needs no other.
bool isOfKeyPicture(uint8_t byte, StreamCodec codec) {
    constexpr uint8_t kSequenceHeader = 0xB3;
    switch (codec) {
        case StreamCodec::mpeg1Video:
        case StreamCodec::mpeg2Video:
            return byte == kSequenceHeader;
        case StreamCodec::h264: {
            const int type = byte & 0x1F;
            return type == 5 || type == 7;  // a picture of its own, or the parameters before one
        }
        case StreamCodec::hevc: {
            const int type = byte >> 1 & 0x3F;
            return (type >= 16 && type <= 21) || type == 32 || type == 33;
        }
        default:
            return false;
    }
}

/// What follows the header of a packetised elementary stream's packet, as far as it is here.
ByteView pictureBytes(const TransportPacket& packet) {
    constexpr size_t kFixedHeader = 8;
    ByteReader reader(ByteView(packet.payload(), packet.payloadSize()));
    const ByteView start = reader.take(3);
    const bool isStart = start.size() == 3 && start[0] == 0 && start[1] == 0 && start[2] == 1;
    if (!isStart) return {};
    reader.skip(kFixedHeader - start.size());
    reader.takeCounted();
    return reader.take(reader.left());
}

}  // namespace

bool startsKeyPicture(const TransportPacket& packet, StreamCodec codec) {
    if (!packet.startsUnit()) return false;
    if (packet.isRandomAccess()) return true;
    const ByteView bytes = pictureBytes(packet);
    for (size_t at = 3; at < bytes.size(); ++at) {
        const bool isStartCode = bytes[at - 3] == 0 && bytes[at - 2] == 0 && bytes[at - 1] == 1;
        if (isStartCode && isOfKeyPicture(bytes[at], codec)) return true;
    }
    return false;
}

}  // namespace quiravent::desktop
