#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace quiravent::desktop::lineup {

using Bytes = std::vector<uint8_t>;

/// Writes bytes and numbers, the higher bits first, and lengths of what follows them.
class ByteWriter {
  public:
    void byte(unsigned value) { m_bytes.push_back(static_cast<uint8_t>(value)); }
    void word(unsigned value) {
        byte(value >> 8);
        byte(value & 0xFF);
    }
    void doubleWord(uint32_t value) {
        word(value >> 16);
        word(value & 0xFFFF);
    }
    template <class Sequence>
    void append(const Sequence& bytes) {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }

    /// A byte with the number of bytes that write() then writes, at most 255.
    template <class Write>
    void counted(Write write) {
        const size_t place = m_bytes.size();
        byte(0);
        write();
        m_bytes[place] = static_cast<uint8_t>(m_bytes.size() - place - 1);
    }

    /// A word whose lower 12 bits are the number of bytes that write() then writes. highBits: the
    /// upper 4 bits.
    template <class Write>
    void countedLoop(unsigned highBits, Write write) {
        const size_t place = m_bytes.size();
        word(0);
        write();
        const size_t length = m_bytes.size() - place - 2;
        m_bytes[place] = static_cast<uint8_t>(highBits << 4 | length >> 8);
        m_bytes[place + 1] = static_cast<uint8_t>(length & 0xFF);
    }

    const Bytes& bytes() const { return m_bytes; }
    Bytes take() { return std::move(m_bytes); }

  private:
    Bytes m_bytes;
};

}  // namespace quiravent::desktop::lineup
