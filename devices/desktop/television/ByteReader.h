#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quiravent::desktop {

/// Bytes that belong to somebody else.
using ByteView = std::basic_string_view<uint8_t>;

/// Reads bytes from the first to the last. What would lie behind the end reads as 0 or as fewer
/// bytes, so that tables which say wrong lengths can be read without a test at each step.
class ByteReader {
  public:
    explicit ByteReader(ByteView bytes) : m_bytes(bytes) {}

    bool isAtEnd() const { return m_bytes.empty(); }
    size_t left() const { return m_bytes.size(); }

    uint8_t byte() {
        if (m_bytes.empty()) return 0;
        const uint8_t value = m_bytes.front();
        m_bytes.remove_prefix(1);
        return value;
    }
    /// Two bytes, the higher one first.
    uint16_t word() {
        const unsigned high = byte();
        return static_cast<uint16_t>(high << 8 | byte());
    }
    /// The lower 12 bits of a word, as lengths of loops stand.
    uint16_t length() { return word() & 0x0FFF; }
    /// The lower 13 bits of a word.
    uint16_t pid() { return word() & 0x1FFF; }

    ByteView take(size_t count) {
        const ByteView part = m_bytes.substr(0, count);
        m_bytes.remove_prefix(part.size());
        return part;
    }
    /// As many bytes as the next byte says.
    ByteView takeCounted() { return take(byte()); }
    void skip(size_t count) { take(count); }

  private:
    ByteView m_bytes;
};

}  // namespace quiravent::desktop
