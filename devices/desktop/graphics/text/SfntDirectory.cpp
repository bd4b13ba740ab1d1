#include "SfntDirectory.h"

#include <string>

namespace quiravent::desktop {

namespace {

constexpr uint32_t tag(const char (&name)[5]) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<uint8_t>(name[i]);
    return value;
}

constexpr uint32_t kTrueType = 0x00010000;
constexpr size_t kDirectoryHeaderSize = 12;
constexpr size_t kRecordSize = 16;
constexpr size_t kCollectionHeaderSize = 16;  // with the offset of the first face

class BigEndianFile {
  public:
    BigEndianFile(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    bool holds(size_t offset, size_t count) const {
        return offset <= m_size && count <= m_size - offset;
    }
    uint32_t u16(size_t offset) const {
        return static_cast<uint32_t>(m_data[offset] << 8 | m_data[offset + 1]);
    }
    uint32_t u32(size_t offset) const { return u16(offset) << 16 | u16(offset + 2); }

  private:
    const uint8_t* m_data;
    size_t m_size;
};

std::string tableName(uint32_t tableTag) {
    std::string name;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto character = static_cast<char>(tableTag >> shift & 0xFF);
        name += character >= ' ' && character <= '~' ? character : '?';
    }
    return name;
}

bool holdsOutlines(uint32_t tableTag) {
    return tableTag == tag("glyf") || tableTag == tag("CFF ") || tableTag == tag("CFF2");
}

std::optional<Failure> findDirectoryFault(const BigEndianFile& file, size_t directory) {
    const uint32_t kind = file.u32(directory);
    if (kind != kTrueType && kind != tag("OTTO") && kind != tag("true"))
        return Failure{"it is neither a TrueType nor an OpenType font"};
    if (!file.holds(directory, kDirectoryHeaderSize)) return Failure{"truncated font data"};
    const uint32_t tables = file.u16(directory + 4);
    if (!file.holds(directory + kDirectoryHeaderSize, tables * kRecordSize))
        return Failure{"truncated font data"};
    bool outlines = false;
    for (uint32_t i = 0; i < tables; ++i) {
        const size_t record = directory + kDirectoryHeaderSize + i * kRecordSize;
        const uint32_t name = file.u32(record);
        if (!file.holds(file.u32(record + 8), file.u32(record + 12)))
            return Failure{"truncated font data: table '" + tableName(name) + "' is not whole"};
        outlines = outlines || holdsOutlines(name);
    }
    if (!outlines) return Failure{"the font has no outlines"};
    return std::nullopt;
}

}  // namespace

std::optional<Failure> findSfntFault(const uint8_t* data, size_t size) {
    const BigEndianFile file(data, size);
    if (!file.holds(0, 4)) return Failure{"truncated font data"};
    if (file.u32(0) != tag("ttcf")) return findDirectoryFault(file, 0);
    if (!file.holds(0, kCollectionHeaderSize) || !file.holds(file.u32(12), 4))
        return Failure{"truncated font data"};
    return findDirectoryFault(file, file.u32(12));
}

}  // namespace quiravent::desktop
