#include "television/Section.h"

#include "television/Crc32.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kHeaderBytes = 8;
constexpr size_t kChecksumBytes = 4;

}  // namespace

std::optional<Section> Section::parse(ByteView bytes) {
    if (bytes.size() < kHeaderBytes + kChecksumBytes) return std::nullopt;
    ByteReader reader(bytes);
    Section section{};
    section.tableId = reader.byte();
    const uint16_t lengthAndForm = reader.word();
    const bool isLongForm = (lengthAndForm & 0x8000) != 0;
    if (!isLongForm || (lengthAndForm & 0x0FFFU) != reader.left()) return std::nullopt;
    if (crc32(bytes.data(), bytes.size()) != 0) return std::nullopt;
    section.extension = reader.word();
    const uint8_t flags = reader.byte();
    section.version = flags >> 1 & 0x1F;
    section.isCurrent = (flags & 1) != 0;
    section.number = reader.byte();
    section.lastNumber = reader.byte();
    section.body = reader.take(reader.left() - kChecksumBytes);
    const uint32_t high = reader.word();
    section.checksum = high << 16 | reader.word();
    return section;
}

}  // namespace quiravent::desktop
