#include "television/Section.h"

#include <array>

namespace quiravent::desktop {

namespace {

constexpr size_t kHeaderBytes = 8;
constexpr size_t kChecksumBytes = 4;

constexpr std::array<uint32_t, 256> checksumTable() {
    std::array<uint32_t, 256> table{};
    for (uint32_t index = 0; index < table.size(); ++index) {
        uint32_t value = index << 24;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 0x80000000U) != 0 ? value << 1 ^ 0x04C11DB7U : value << 1;
        }
        table[index] = value;
    }
    return table;
}

}  // namespace

uint32_t sectionChecksum(ByteView bytes) {
    static constexpr std::array<uint32_t, 256> kTable = checksumTable();
    uint32_t value = 0xFFFFFFFFU;
    for (const uint8_t byte : bytes) value = value << 8 ^ kTable[(value >> 24 ^ byte) & 0xFF];
    return value;
}

std::optional<Section> Section::parse(ByteView bytes) {
    if (bytes.size() < kHeaderBytes + kChecksumBytes) return std::nullopt;
    ByteReader reader(bytes);
    Section section{};
    section.tableId = reader.byte();
    const uint16_t lengthAndForm = reader.word();
    const bool isLongForm = (lengthAndForm & 0x8000) != 0;
    if (!isLongForm || (lengthAndForm & 0x0FFFU) != reader.left()) return std::nullopt;
    if (sectionChecksum(bytes) != 0) return std::nullopt;
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
